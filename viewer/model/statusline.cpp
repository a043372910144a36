// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/statusline.h"

#include <cstdio>
#include <utility>

namespace viewer {

void StatusLine::set(std::string line) {
  message_ = std::move(line);
  changes_.note(partStatus);
}

void StatusLine::report(std::string line) {
  if (line != printed_) { // a page that cannot be read fails at each size
    std::fprintf(stderr, "tavrel: %s\n", line.c_str());
    printed_ = line;
  }
  if (listener) listener(line);
  set(std::move(line));
}

void StatusLine::remove(const std::string &line) {
  if (message_ == line) set({});
}

} // namespace viewer
