// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Binds commands to menus, to keys and the mouse on the page, and to buttons of the tool bar. The keys of the menus'
// entries are resources: share/Tavrel.ad.
#pragma once

#include <X11/Intrinsic.h>

#include <span>
#include <string>

#include "viewer/model/commands.h"

namespace viewer {

struct Action {
  const char *name; ///< of the command: in translations, do(NextPage), and of the menu's entry, whose key is a resource
  const char *menu; ///< null: none
  /// Translations of the page area that invoke it, each ending in a line feed, with %s for the action; null: none. With
  /// modifiers that one does not mention it invokes nothing.
  const char *keys;
  const char *button;     ///< on the tool bar; null: none
  bool separated = false; ///< after a separator in the menu

  const Command &command() const { return *findCommand(name); }
};

/// In the order of the menus.
std::span<const Action> actions();

/// The names of the menus, from left to right.
std::span<const char *const> menuNames();
inline constexpr const char *pluginMenu = "Tools", *windowMenu = "Window";

/// The translations of keys and mouse on the page; a user's resource overrides them.
std::string pageTranslations();
/// A translation's key as it is shown to users: "Ctrl+Shift+G" for "Ctrl Shift<Key>g", "Wheel up" for "<Btn4Down>".
std::string keyName(const std::string &translation);
/// The text of a plug-in's button in the menu: "Next Page" for "Plugin:NextPage". A button has no other short text.
std::string shortLabel(const std::string &button);
/// The widget's name for a tool button's: names in resources cannot contain a colon.
std::string widgetName(const std::string &button);

} // namespace viewer
