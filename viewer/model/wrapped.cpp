// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/wrapped.h"

#include "viewer/model/onelinetext.h"

namespace viewer {

std::string wrapped(const std::string &text) {
  std::string result, line;
  size_t length = 0;
  const auto breakAfter = [&](size_t end) {
    const std::string rest = line.substr(end);
    line.erase(end);
    if (line.ends_with(' ')) line.pop_back();
    result += line + '\n';
    line = rest;
    length = characters(rest).size();
  };
  for (const std::string &character : characters(text)) {
    line += character;
    if (character == "\n") {
      result += line;
      line.clear();
      length = 0;
    } else if (++length > longestLine) {
      const size_t last = line.size() - character.size(), space = line.rfind(' ', last),
                   slash = line.rfind('/', last - 1);
      breakAfter(space != std::string::npos ? space + 1 : slash != std::string::npos && slash > 0 ? slash + 1 : last);
    }
  }
  return result + line;
}

} // namespace viewer
