// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Alerts of plug-ins.
#pragma once

#include <cstdint>

#include "host/view/alerts.h"

namespace viewer {

class MainWindow;

/// Shows an alert, handles the window's events until it is answered, and returns the number of the button, from 1; 0 if
/// it has none. If it is closed without an answer, its last button is the answer.
int32_t showAlert(MainWindow &window, const host::Alert &alert);

} // namespace viewer
