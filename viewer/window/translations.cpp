// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/translations.h"

#include <sstream>

namespace viewer {
namespace {

// Mod1 is Alt, Mod4 the key with the system's sign, Mod5 AltGr. The others are Num Lock and, rarely, Scroll Lock.
constexpr const char *modifiers[] = {"Ctrl", "Shift", "Mod1", "Mod4", "Mod5"};

} // namespace

std::string withoutOtherModifiers(const std::string &lines) {
  std::string result;
  std::istringstream all(lines);
  for (std::string line; std::getline(all, line);) {
    const size_t event = line.find('<');
    if (event == std::string::npos) continue;
    std::string held = line.substr(0, event);
    for (const std::string modifier : modifiers) {
      const bool isPart = held.starts_with(':') && modifier == "Shift";
      if (isPart || held.find(modifier) != std::string::npos) continue;
      if (!held.empty() && held.back() != ':') held += ' ';
      held += "~" + modifier;
    }
    result += held + line.substr(event) + "\n";
  }
  return result;
}

} // namespace viewer
