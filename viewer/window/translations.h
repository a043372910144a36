// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Tables of translations, which bind keys and buttons of the mouse to actions of the toolkit. Nothing here uses the
// display.
#pragma once

#include <string>

namespace viewer {

/// The lines of a table so that none is in force while a modifier is held that it does not mention: Ctrl+P, Alt+Left
/// and AltGr+P are other keys than P and Left. After a ':' Shift is a part of the key. The locks are ignored.
std::string withoutOtherModifiers(const std::string &lines);

} // namespace viewer
