// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Draws characters that the interface's font does not have from other fonts of the system: names of files, searched
// texts and pages' titles come in every script.
//
// The toolkit draws a text from one font, and its text fields cannot do otherwise. So fallbackfonts.cpp defines the
// functions of Xft by which the toolkit measures and draws: those of the program take precedence over the library's.
#pragma once

#include <X11/Xlib.h>

namespace viewer {

/// Closes the fonts that have been opened for a display. Must be called before the display is closed.
void closeFallbackFonts(Display *display);

} // namespace viewer
