// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What a page is made of: its size, its words, their boxes.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace host {

/// A rectangle in page space: points, origin at the lower left of the page as shown, y upwards; left <= right and
/// bottom <= top.
struct Box {
  double left = 0, top = 0, right = 0, bottom = 0;
  bool operator==(const Box &) const = default;
};

/// Whether it can be computed with: its edges are in order, and none is a number that a file has made infinite, or far
/// beyond any page.
inline bool isUsable(const Box &box) {
  constexpr double farthest = 1e9;
  for (const double points : {box.left, box.top, box.right, box.bottom})
    if (!(std::abs(points) <= farthest)) return false;
  return box.left <= box.right && box.bottom <= box.top;
}

/// Points, of the page as shown (rotated and cropped).
struct PageSize {
  double width = 0, height = 0;
};

/// A word of a page.
struct WordText {
  std::u32string text = {};
  uint32_t offset = 0;              ///< of its first character in the page's text
  Box bounds = {};                  ///< of the word
  std::vector<Box> characters = {}; ///< as many as the text has code points; some have no area
  int quarterTurns = 0;             ///< clockwise, of its line: 1 runs down the page
};

/// The words of a page.
struct PageText {
  std::vector<WordText> words = {}; ///< in reading order (word-extraction version 2)
  /// The words joined by one space.
  std::u32string text() const;
};

} // namespace host
