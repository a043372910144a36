// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/line.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>

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
  std::array<utf8proc_uint8_t, 4> bytes{};
  const utf8proc_ssize_t count = utf8proc_encode_char(static_cast<utf8proc_int32_t>(c), bytes.data());
  text.append(bytes.begin(), bytes.begin() + count);
}

} // namespace

TextLine lineAround(const PageText &page, const Box &box) {
  const auto word = std::max_element(page.words.begin(), page.words.end(), [&](const WordText &a, const WordText &b) {
    return overlap(a.bounds, box) < overlap(b.bounds, box);
  });
  TextLine line;
  if (word == page.words.end() || overlap(word->bounds, box) == 0) return line;
  auto first = word, end = word + 1;
  while (first != page.words.begin() && onOneLine(*(first - 1), *first))
    --first;
  while (end != page.words.end() && onOneLine(*(end - 1), *end))
    ++end;
  for (auto one = first; one != end; ++one) {
    if (one != first) line.text += ' ';
    if (one == word) line.start = line.text.size();
    for (const char32_t c : one->text)
      append(line.text, c);
  }
  return line;
}

} // namespace host
