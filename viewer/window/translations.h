// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Tables of translations, which bind keys and buttons of the mouse to actions of the toolkit. Nothing here uses the
// display.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace viewer {

/// The lines of a table so that none is in force while a modifier is held that it does not mention: Ctrl+P, Alt+Left
/// and AltGr+P are other keys than P and Left. After a ':' Shift is a part of the key. The locks are ignored.
std::string withoutOtherModifiers(const std::string &lines);

/// A line of such a table.
struct Translation {
  std::string event;                     ///< "Ctrl ~Shift<Key>x"
  std::string key;                       ///< "<Key>x"
  std::set<std::string> held, forbidden; ///< modifiers; others are ignored
  std::string action, argument;          ///< of the call of "do": the command, and what follows; else all calls
};
/// Of all lines that are translations, also after "#override".
std::vector<Translation> parsedTranslations(const std::string &table);

} // namespace viewer
