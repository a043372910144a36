// Everything that a person can do, in one table: its name, where it stands in the menus, its keys on the page, its
// button on the tool bar, and what it does. The keys of the menus' entries are resources: share/Tavrel.ad.
#pragma once

#include <X11/Intrinsic.h>

#include <span>
#include <string>

namespace viewer {

class MainWindow;

struct Action {
  const char *name;  ///< in translations, do(NextPage), and of the menu's entry in resources, which give it its key
  const char *menu;  ///< in which menu it stands; null: in none
  const char *label; ///< there
  /// Translations of the page area that do it, each ending in a line feed, with %s for the deed; null: none.
  const char *keys;
  const char *button; ///< on the tool bar; null: none
  void (*run)(MainWindow &window);
  bool (*possible)(const MainWindow &window); ///< null: always
  bool separated = false;                     ///< a line stands above it in the menu
};

/// In the order of the menus.
std::span<const Action> actions();
/// Null for an unknown name.
const Action *findAction(const std::string &name);

/// The names of the menus, from left to right.
std::span<const char *const> menuNames();
inline constexpr const char *pluginMenu = "Tools", *windowMenu = "Window";

/// The keys and the mouse on the page, as translations; those of a user's resource come on top of them.
std::string pageTranslations();
/// How a translation's key is written for people: "Ctrl+Shift+G" for "Ctrl Shift<Key>g".
std::string keyName(const std::string &translation);
/// A widget's name for a tool button's: resources cannot have a colon in it.
std::string widgetName(const std::string &button);

} // namespace viewer
