// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Arranges the list of keys in columns of lines. Nothing here uses the display.
#pragma once

#include <string>
#include <vector>

#include "viewer/window/keylist.h"

namespace viewer {

/// The lines of two labels side by side: the keys, and what they do.
struct KeyColumn {
  std::vector<std::string> keys, sentences;

  void add(const std::string &left, const std::string &right) {
    keys.push_back(left);
    sentences.push_back(right);
  }
};

/// At most so many columns, of the same height. Groups stay together under their heading, with an empty line between
/// them; one begins the next column if more than half of it would be below the middle.
std::vector<KeyColumn> keyColumns(const std::vector<KeyRow> &rows, size_t count);

} // namespace viewer
