// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/translations.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace viewer {
namespace {

// Mod1 is Alt, Mod4 the key with the system's sign, Mod5 AltGr. The others are Num Lock and, rarely, Scroll Lock.
constexpr const char *allModifiers[] = {"Ctrl", "Shift", "Mod1", "Mod4", "Mod5"};

std::string trimmed(const std::string &text) {
  const size_t first = text.find_first_not_of(" \t"), last = text.find_last_not_of(" \t");
  return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

Translation parsed(const std::string &line) {
  Translation result;
  const size_t open = line.find('<'), end = line.find(':', std::min(line.find('>'), line.size()));
  if (open == std::string::npos || end == std::string::npos) return result;
  result.event = trimmed(line.substr(0, end));
  result.key = trimmed(line.substr(open, end - open));
  std::istringstream modifiers(line.substr(line[0] == ':' ? 1 : 0, open - (line[0] == ':' ? 1 : 0)));
  for (std::string modifier; modifiers >> modifier;)
    if (modifier[0] == '~')
      result.forbidden.insert(modifier.substr(1));
    else
      result.held.insert(modifier);
  const std::string call = trimmed(line.substr(end + 1));
  const size_t bracket = call.find('('), close = call.find(')'), comma = std::min(call.find(','), close);
  result.action = call;
  if (call.starts_with("do(") && close != std::string::npos) {
    result.action = trimmed(call.substr(bracket + 1, comma - bracket - 1));
    if (comma < close) result.argument = trimmed(call.substr(comma + 1, close - comma - 1));
  }
  return result;
}

} // namespace

std::string withoutOtherModifiers(const std::string &lines) {
  std::string result;
  std::istringstream all(lines);
  for (std::string line; std::getline(all, line);) {
    const size_t event = line.find('<');
    if (event == std::string::npos) continue;
    std::string held = line.substr(0, event);
    for (const std::string modifier : allModifiers) {
      const bool isPart = held.starts_with(':') && modifier == "Shift";
      if (isPart || held.find(modifier) != std::string::npos) continue;
      if (!held.empty() && held.back() != ':') held += ' ';
      held += "~" + modifier;
    }
    result += held + line.substr(event) + "\n";
  }
  return result;
}

std::vector<Translation> parsedTranslations(const std::string &table) {
  std::vector<Translation> result;
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    line = trimmed(line);
    if (line.starts_with('#')) // "#override", and perhaps a translation after it
      line = trimmed(line.substr(std::min(line.find_first_of(" \t"), line.size())));
    if (Translation one = parsed(line); !one.event.empty()) result.push_back(std::move(one));
  }
  return result;
}

} // namespace viewer
