// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Corrects boxes in the frame of the word's line, so that one rule holds for every direction of writing.
//
// Vertical writing: the PDF library takes the origin of a vertical glyph, the middle of its upper edge, for the lower
// left corner of its box.
//
// Fonts without usable metrics: where the widths of a font are missing or zero, the library draws all characters of a
// word at one position and the word's box has no width. Where ascent and descent are missing, it has no height.
#include "document/boxes.h"

#include <algorithm>
#include <cmath>

#include "host/document/linebox.h"

namespace document {
namespace {

using host::Box;
using host::LineBox;
using host::onLine;
using host::onPage;
using host::WordText;

constexpr double smallestSide = 2; // points, of a box that is made here

double width(const LineBox &box) { return box.end - box.start; }
double height(const LineBox &box) { return box.above - box.below; }

LineBox onLine(const WordText &word) { return onLine(word.bounds, word.quarterTurns); }

// Smaller than any font that is read, and far narrower than "i" or "|".
bool isNarrow(const LineBox &box) { return !(width(box) >= std::max(0.5, 0.08 * height(box))); }

// `em` is the font size, or the mean width of a character where the size is not known.
bool isFlat(const LineBox &box, double em) { return !(height(box) >= std::max(0.5, 0.3 * em)); }

double meanWidth(const WordText &word) {
  return word.text.empty() ? 0 : width(onLine(word)) / static_cast<double>(word.text.size());
}

bool isDegenerate(const WordText &word) {
  const LineBox box = onLine(word);
  return isNarrow(box) || isFlat(box, meanWidth(word));
}

bool isMissing(const Box &box) { return !(box.left < box.right && box.bottom < box.top); }

// The library's boxes of vertical glyphs are squares, the last of a word always.
bool mayBeVertical(const WordText &word) {
  if (word.characters.empty() || isMissing(word.characters.back())) return false;
  const LineBox last = onLine(word.characters.back(), word.quarterTurns);
  return std::abs(width(last) - height(last)) <= 1e-5 * height(last);
}

void moveToGlyphs(WordText &word, double em) {
  const auto moved = [&](const Box &box) {
    LineBox result = onLine(box, word.quarterTurns);
    result.start += em;
    result.end += em;
    result.below -= em / 2;
    result.above -= em / 2;
    return onPage(result, word.quarterTurns);
  };
  word.bounds = moved(word.bounds);
  for (Box &character : word.characters)
    if (!isMissing(character)) character = moved(character);
}

double emOf(const WordFont &font) {
  constexpr double usual = 10, largest = 500;
  return std::isfinite(font.size) && font.size > 0 ? std::clamp(font.size, smallestSide, largest) : usual;
}

bool isOnLine(const LineBox &box, const WordText &other, int quarterTurns) {
  const double middle = (box.below + box.above) / 2;
  const LineBox line = onLine(other);
  return other.quarterTurns == quarterTurns && middle >= line.below && middle <= line.above;
}

// Words near one with a degenerate box.
struct Neighbours {
  const WordText *before, *after;      // the nearest ones whose boxes are usable; each may be null
  std::span<const WordText> following; // all after it
};

void giveHeight(LineBox &box, const Neighbours &neighbours, int quarterTurns, double em) {
  for (const WordText *other : {neighbours.before, neighbours.after})
    if (other != nullptr && isOnLine(box, *other, quarterTurns)) {
      const LineBox line = onLine(*other);
      box.below = line.below;
      box.above = line.above;
      return;
    }
  const double base = (box.below + box.above) / 2;
  box.below = base - 0.25 * em;
  box.above = base + 0.75 * em;
}

// All characters lie at the start of the box: it is made as wide as one of them may be.
void giveWidth(LineBox &box, std::span<const WordText> following, int quarterTurns, double em) {
  box.end = box.start + em;
  if (!following.empty() && isOnLine(box, following.front(), quarterTurns)) {
    const double limit = onLine(following.front()).start;
    if (limit >= box.start + smallestSide) box.end = std::min(box.end, limit);
  }
}

void giveArea(WordText &word, const Neighbours &neighbours, double em) {
  LineBox box = onLine(word);
  const bool narrow = isNarrow(box);
  if (isFlat(box, em)) giveHeight(box, neighbours, word.quarterTurns, em);
  if (narrow) giveWidth(box, neighbours.following, word.quarterTurns, em);
  word.bounds = onPage(box, word.quarterTurns);
  for (Box &character : word.characters) {
    LineBox part = onLine(character, word.quarterTurns);
    part.below = box.below;
    part.above = box.above;
    character = narrow ? word.bounds : isNarrow(part) ? Box{} : onPage(part, word.quarterTurns);
  }
}

// Of each word the nearest one before or after it whose box is usable, or null.
std::vector<const WordText *> nearestUsable(std::span<const WordText> words, bool after) {
  std::vector<const WordText *> result(words.size());
  const WordText *last = nullptr;
  for (size_t n = 0; n < words.size(); ++n) {
    const size_t i = after ? words.size() - 1 - n : n;
    result[i] = last;
    if (!isDegenerate(words[i])) last = &words[i];
  }
  return result;
}

} // namespace

bool needsFont(const WordText &word) { return mayBeVertical(word) || isDegenerate(word); }

void correctBoxes(std::vector<WordText> &words, std::span<const WordFont> fonts) {
  for (size_t i = 0; i < words.size(); ++i)
    if (fonts[i].vertical && fonts[i].size > 0) moveToGlyphs(words[i], fonts[i].size);
  const auto before = nearestUsable(words, false), after = nearestUsable(words, true);
  for (size_t i = 0; i < words.size(); ++i)
    if (isDegenerate(words[i]))
      giveArea(words[i], {before[i], after[i], std::span(words).subspan(i + 1)}, emOf(fonts[i]));
}

} // namespace document
