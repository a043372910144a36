// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The table, and the translations made from it.
#include "viewer/window/actions.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <sstream>

#include "viewer/window/translations.h"

namespace viewer {
namespace {

constexpr const char *menus[] = {"File", "Edit", "View", "Go", pluginMenu, windowMenu, "Help"};

// clang-format off
constexpr Action table[] = {
    {"Open", "File", nullptr, "Open"},
    {"Reload", "File", nullptr, nullptr},
    {"Close", "File", nullptr, nullptr, true},
    {"Quit", "File", nullptr, nullptr},
    {"FindDialog", "Edit", ":<Key>slash: %s\n", "FindDialog"},
    {"FindAgainDialog", "Edit", nullptr, "FindAgainDialog"},
    {"FindPrevious", "Edit", nullptr, nullptr},
    {"ZoomIn", "View", ":<Key>plus: %s\n:Ctrl<Key>plus: %s\n<Key>KP_Add: %s\n:Ctrl<Key>equal: %s\n:<Key>equal: %s\nCtrl<Btn4Down>: %s\n", "ZoomIn"},
    {"ZoomOut", "View", ":<Key>minus: %s\n:Ctrl<Key>minus: %s\n<Key>KP_Subtract: %s\nCtrl<Btn5Down>: %s\n", "ZoomOut"},
    {"ActualSize", "View", nullptr, nullptr, true},
    {"FitWidth", "View", "<Key>w: %s\n", "FitWidth"},
    {"FitPage", "View", "<Key>p: %s\n", "FitPage"},
    {"SidePanel", "View", nullptr, nullptr, true},
    {"PreviousPage", "Go", nullptr, "PreviousPage"},
    {"NextPage", "Go", nullptr, "NextPage"},
    {"FirstPage", "Go", "<Key>Home: %s\n<Key>osfBeginLine: %s\n", nullptr, true},
    {"LastPage", "Go", "<Key>End: %s\n<Key>osfEndLine: %s\n", nullptr},
    {"GoToPage", "Go", nullptr, nullptr, true},
    {"Keys", "Help", nullptr, nullptr},
    {"AboutPlugIns", "Help", nullptr, nullptr, true},
    {"About", "Help", nullptr, nullptr},
    {"PageDown", nullptr, "<Key>osfPageDown: %s\n<Key>space: %s\n", nullptr},
    {"PageUp", nullptr, "<Key>osfPageUp: %s\nShift<Key>space: %s\n<Key>osfBackSpace: %s\n", nullptr},
    {"LineDown", nullptr, "<Key>osfDown: %s\n", nullptr},
    {"LineUp", nullptr, "<Key>osfUp: %s\n", nullptr},
    {"Right", nullptr, "<Key>osfRight: %s\n", nullptr},
    {"Left", nullptr, "<Key>osfLeft: %s\n", nullptr},
    {"WheelDown", nullptr, "<Btn5Down>: %s\n", nullptr},
    {"WheelUp", nullptr, "<Btn4Down>: %s\n", nullptr},
    {"ScrollRight", nullptr, "Shift<Btn5Down>: %s\n", nullptr},
    {"ScrollLeft", nullptr, "Shift<Btn4Down>: %s\n", nullptr},
    {"Escape", nullptr, "<Key>osfCancel: %s\n", nullptr},
};
// clang-format on

std::string with(std::string text, const std::string &mark, const std::string &value) {
  for (size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + value.size()))
    text.replace(at, mark.size(), value);
  return text;
}

// A key without its modifiers.
std::string shown(const std::string &key) {
  constexpr struct {
    const char *key, *shown;
  } names[] = {{"plus", "+"},
               {"minus", "-"},
               {"Prior", "Page Up"},
               {"Next", "Page Down"},
               {"slash", "/"},
               {"equal", "="},
               {"space", "Space"},
               {"KP_Add", "Keypad +"},
               {"KP_Subtract", "Keypad -"},
               {"KP_Enter", "Keypad Enter"},
               {"Activate", "Keypad Enter"},
               {"Cancel", "Esc"},
               {"BackSpace", "Backspace"},
               {"BeginLine", "Home"},
               {"EndLine", "End"},
               {"PageUp", "Page Up"},
               {"PageDown", "Page Down"}};
  const std::string plain = key.starts_with("osf") ? key.substr(3) : key; // the toolkit's names for keys
  const auto *const known =
      std::find_if(std::begin(names), std::end(names), [&](const auto &one) { return plain == one.key; });
  if (known != std::end(names)) return known->shown;
  std::string name = plain;
  if (name.size() == 1) name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
  return name;
}

} // namespace

std::span<const Action> actions() { return table; }

std::span<const char *const> menuNames() { return menus; }

std::string pageTranslations() {
  std::string keys;
  for (const Action &action : table) {
    if (action.keys != nullptr)
      keys += with(withoutOtherModifiers(action.keys), "%s", std::string("do(") + action.name + ")");
  }
  return keys + "<Btn1Down>: drag(begin)\n<Btn1Motion>: drag(move)\n<Btn1Up>: drag(end)\n";
}

std::string keyName(const std::string &translation) {
  const size_t open = translation.find('<'), close = translation.find('>');
  if (open == std::string::npos || close == std::string::npos) return translation;
  std::string name;
  std::istringstream modifiers(translation.substr(0, open));
  for (std::string modifier; modifiers >> modifier;) {
    if (modifier[0] == ':' || modifier[0] == '!') modifier.erase(0, 1);
    if (modifier.empty() || modifier[0] == '~') continue;
    name += (modifier == "Mod1" ? "Alt" : modifier == "Mod4" ? "Super" : modifier) + "+";
  }
  constexpr struct {
    const char *event, *shown;
  } buttons[] = {{"Btn1Down", "Left button"},
                 {"Btn2Down", "Middle button"},
                 {"Btn3Down", "Right button"},
                 {"Btn4Down", "Wheel up"},
                 {"Btn5Down", "Wheel down"}};
  for (const auto &button : buttons)
    if (translation.compare(open + 1, close - open - 1, button.event) == 0) return name + button.shown;
  return name + shown(translation.substr(close + 1));
}

std::string shortLabel(const std::string &button) {
  const auto is = [](int (*kind)(int), char c) { return kind(static_cast<unsigned char>(c)) != 0; };
  std::string label;
  for (const char c : button.substr(button.rfind(':') + 1)) {
    if (is(std::isupper, c) && !label.empty() && is(std::islower, label.back())) label += ' ';
    label += c;
  }
  return label.empty() ? button : label;
}

std::string widgetName(const std::string &button) {
  std::string name = button;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
  return name;
}

} // namespace viewer
