// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The symbols of message boxes, drawn in the size of the interface: the toolkit's are bitmaps for old screens.
#pragma once

#include <Xm/Xm.h>

#include <cstdint>

namespace viewer {

/// Shows the symbol of an alert (tavrel::AlertIcon) in a message box, whose own it replaces. The box must have its
/// dialog type already. Nothing for an alert without a symbol.
/// @param scale 1 at 96 dots per inch
void showSymbol(Widget messageBox, int32_t icon, double scale);

} // namespace viewer
