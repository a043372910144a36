// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The tables of the host without a window.
#pragma once

#include "host/kernel/runtime.h"

namespace host {

/// Registers the tables "DocModel", "TavrelView" and "Desktop" with a runtime.
void addHostTables(Runtime &runtime);
/// The "TavrelView" table; its operations work on the current application.
tavrel::HFT viewTable();
/// The "Desktop" table; its operations work on the current window system (desktop.h).
tavrel::HFT desktopTable();

} // namespace host
