// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// All keys in force, as users read them: from the table of commands, the keys of the menus' entries, the page's
// translations with those of a user, and the translations of the side panel, of text fields and of the dialogs.
// Nothing here uses the display.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace viewer {

struct KeyRow {
  std::string group;    ///< the menu's name; that of other rows is pageGroup
  std::string keys;     ///< "Ctrl+Home, Home"
  std::string sentence; ///< what they do
  std::string command;  ///< its name; empty: something else than a command
};
inline constexpr const char *pageGroup = "Page";

/// The rows in the order of the menus, then those of pageGroup and of other parts of the window; commands without a key
/// have none.
/// @param accelerator gives the key of a menu's entry as keyName does; empty: none
/// @param usersTranslations of the page, as in a resource; each hides those of the program that it matches
/// @param others further rows, such as those of plug-ins
std::vector<KeyRow> keyRows(const std::function<std::string(const std::string &command)> &accelerator,
                            const std::string &usersTranslations, const std::vector<KeyRow> &others = {});

} // namespace viewer
