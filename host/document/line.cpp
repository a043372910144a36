// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/line.h"

#include <algorithm>

namespace host {
namespace {

double overlap(const Box &a, const Box &b) {
  const double width = std::min(a.right, b.right) - std::max(a.left, b.left);
  const double height = std::min(a.top, b.top) - std::max(a.bottom, b.bottom);
  return width <= 0 || height <= 0 ? 0 : width * height;
}

// How far a word reaches across its line's direction.
struct Extent {
  double low, high;
};
Extent across(const WordText &word) {
  const Box &box = word.bounds;
  return word.quarterTurns % 2 == 0 ? Extent{box.bottom, box.top} : Extent{box.left, box.right};
}

bool onOneLine(const WordText &a, const WordText &b) {
  if (a.quarterTurns != b.quarterTurns) return false;
  const Extent one = across(a), other = across(b);
  const double shared = std::min(one.high, other.high) - std::max(one.low, other.low);
  return shared > std::min(one.high - one.low, other.high - other.low) / 2;
}

void append(std::string &text, char32_t c) {
  const auto byte = [&text](char32_t value) { text += static_cast<char>(value); };
  if (c < 0x80) return byte(c);
  if (c < 0x800) {
    byte(0xC0 | c >> 6);
  } else if (c < 0x10000) {
    byte(0xE0 | c >> 12);
    byte(0x80 | (c >> 6 & 0x3F));
  } else {
    byte(0xF0 | c >> 18);
    byte(0x80 | (c >> 12 & 0x3F));
    byte(0x80 | (c >> 6 & 0x3F));
  }
  byte(0x80 | (c & 0x3F));
}

} // namespace

TextLine lineAround(const PageText &page, const Box &box) {
  const auto word = std::max_element(page.words.begin(), page.words.end(), [&](const WordText &a, const WordText &b) {
    return overlap(a.bounds, box) < overlap(b.bounds, box);
  });
  TextLine line;
  if (word == page.words.end() || overlap(word->bounds, box) == 0) return line;
  auto first = word, last = word;
  while (first != page.words.begin() && onOneLine(*(first - 1), *first))
    --first;
  while (last + 1 != page.words.end() && onOneLine(*last, *(last + 1)))
    ++last;
  for (auto one = first; one != last + 1; ++one) {
    if (one != first) line.text += ' ';
    if (one == word) line.start = line.text.size();
    for (const char32_t c : one->text)
      append(line.text, c);
  }
  return line;
}

} // namespace host
