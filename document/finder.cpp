// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Finds a text on a page. The page's words, joined by spaces, are folded to one string; for every unit of it the offset
// of its character is stored. The text to find is folded in the same way and compared at every unit.
//
// Where a word is hyphenated at a line's end, the text may omit the space after the hyphen, or both: "para-" and
// "meter" on the next line are found by "parameter", "para-meter" and "para- meter".
#include "document/finder.h"

#include <utf8proc.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "host/document/fold.h"
#include "host/document/select.h"

namespace document {
namespace {

using host::appendFolded;
using host::Case;
using host::decoded;
using host::FindOptions;
using host::Found;
using host::isWhiteSpace;
using host::PageText;
using host::WordText;

// A hyphen that divides a word at a line's end; a space follows it. It is no code point, so it does not occur on a
// page.
constexpr char32_t lineEndHyphen = 0x110000;

constexpr size_t nowhere = SIZE_MAX;

bool isHyphen(char32_t c) { return c == U'-' || c == U'\u2010' || c == U'\u00AD'; }

bool isLetterOrDigit(char32_t c) {
  const utf8proc_category_t category = utf8proc_category(static_cast<utf8proc_int32_t>(c));
  return (category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_LO) ||
         (category >= UTF8PROC_CATEGORY_ND && category <= UTF8PROC_CATEGORY_NO);
}

// Vowels and final consonants of Hangul, which continue a syllable. The filler before them is invisible and omitted.
bool continuesSyllable(char32_t c) { return c >= 0x1161 && c <= 0x11FF; }

// Either may be higher: a word at the foot of a column continues at the top of the next one.
bool onAnotherLine(const WordText &word, const WordText &next) {
  if (word.quarterTurns != next.quarterTurns) return false;
  if (word.quarterTurns % 2 == 0) {
    const double middle = (next.bounds.top + next.bounds.bottom) / 2;
    return middle > word.bounds.top || middle < word.bounds.bottom;
  }
  const double middle = (next.bounds.left + next.bounds.right) / 2;
  return middle < word.bounds.left || middle > word.bounds.right;
}

// Whether a hyphen at the word's end divides it from the start of the next line. A lone dash divides nothing.
bool isHyphenated(const WordText &word, const WordText &next) {
  return !word.text.empty() && isHyphen(word.text.back()) &&
         !std::all_of(word.text.begin(), word.text.end(), isHyphen) && onAnotherLine(word, next);
}

void append(char32_t c, Case letterCase, std::u32string &to) {
  if (!isWhiteSpace(c))
    appendFolded(c, letterCase, to);
  else if (!to.empty() && to.back() != U' ')
    to += U' ';
}

class ComparedPage {
public:
  ComparedPage(const PageText &page, Case letterCase) : letterCase_(letterCase) {
    const auto end = page.words.end();
    for (auto word = page.words.begin(); word != end; ++word)
      add(*word, std::next(word) != end && isHyphenated(*word, *std::next(word)));
  }

  size_t size() const { return units_.size(); }

  // The end of the text if it occurs at this unit, else `nowhere`.
  size_t endOf(std::u32string_view text, size_t at) const {
    if (!isSame(unit(at), text.front())) return nowhere; // a hit does not start with an omitted unit
    for (const char32_t c : text) {
      if (!isSame(unit(at), c)) at = joined(at);
      if (!isSame(unit(at), c)) return nowhere;
      ++at;
    }
    return continuesSyllable(unit(at)) ? nowhere : at;
  }

  bool isWhole(size_t first, size_t end) const {
    const char32_t before = isLineEndSpace(first - 1) ? unit(first - 3) : unit(first - 1);
    return !isLetterOrDigit(before) && !isLetterOrDigit(unit(joined(end)));
  }

  // The start of the next character: one may be several units, which have one position on the page. The unit is not a
  // space, so another character follows it: at least the space after the last word.
  size_t nextCharacter(size_t at) const {
    const uint32_t offset = offsets_[at];
    while (offsets_[at] == offset)
      ++at;
    return at;
  }

  uint32_t offset(size_t at) const { return offsets_[at]; }

private:
  static bool isSame(char32_t unit, char32_t wanted) {
    return unit == wanted || (unit == lineEndHyphen && wanted == U'-');
  }

  void add(const WordText &word, bool hyphenated) {
    std::u32string_view text = word.text;
    if (hyphenated) text.remove_suffix(1);
    uint32_t offset = word.offset;
    for (const char32_t c : text)
      addCharacter(c, offset++);
    if (hyphenated) {
      units_ += lineEndHyphen;
      offsets_.push_back(offset++);
    }
    addCharacter(U' ', offset);
  }

  void addCharacter(char32_t c, uint32_t offset) {
    append(c, letterCase_, units_);
    offsets_.resize(units_.size(), offset);
  }

  // Before the first and after the last there are spaces.
  char32_t unit(size_t at) const { return at < size() ? units_[at] : U' '; }

  bool isLineEndSpace(size_t at) const { return unit(at) == U' ' && unit(at - 1) == lineEndHyphen; }

  // The unit at which the text continues if a hyphen and space at a line's end are skipped.
  size_t joined(size_t at) const {
    if (unit(at) == lineEndHyphen) return at + 2;
    return isLineEndSpace(at) ? at + 1 : at;
  }

  Case letterCase_;
  std::u32string units_;
  std::vector<uint32_t> offsets_; // of each unit's character in the page's text
};

Case caseOf(FindOptions options) { return options.matchCase ? Case::kept : Case::folded; }

} // namespace

Finder::Finder(const std::string &utf8, FindOptions options) : options_(options) {
  for (const char32_t c : decoded(utf8))
    append(c, caseOf(options), text_);
  if (!text_.empty() && text_.back() == U' ') text_.pop_back();
}

std::vector<Found> Finder::find(const PageText &page) const {
  std::vector<Found> result;
  if (empty()) return result;
  const ComparedPage compared(page, caseOf(options_));
  for (size_t at = 0; at < compared.size();) {
    const size_t end = compared.endOf(text_, at);
    if (end == nowhere || (options_.wholeWords && !compared.isWhole(at, end))) {
      ++at;
      continue;
    }
    // A character without its own position, like an accent, belongs to the letter before it.
    const size_t next = compared.nextCharacter(end - 1);
    const host::Span hit[] = {{compared.offset(at), compared.offset(next)}};
    result.push_back({characterBoxes(page, hit)});
    at = next;
  }
  return result;
}

} // namespace document
