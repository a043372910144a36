// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The state of dialogs, read from their widgets, so that tests see what users see.
#pragma once

#include <X11/Intrinsic.h>

#include <vector>

#include "viewer/model/state.h"

namespace viewer {

/// The dialogs of a shell that are on the screen.
std::vector<DialogState> dialogsBelow(::Widget shell);

} // namespace viewer
