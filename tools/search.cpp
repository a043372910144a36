// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Finds a phrase among the words of a page. Words are compared folded (case, accents, ligatures) and without the
// punctuation at their ends; a hit is given in characters of the page's text, unfolded.
#include "tools/search.h"

#include <utf8proc.h>

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "host/document/fold.h"

namespace tools {
namespace {

utf8proc_category_t categoryOf(char32_t c) { return utf8proc_category(static_cast<utf8proc_int32_t>(c)); }

bool isPunctuation(char32_t c) {
  switch (categoryOf(c)) {
  case UTF8PROC_CATEGORY_PC:
  case UTF8PROC_CATEGORY_PD:
  case UTF8PROC_CATEGORY_PS:
  case UTF8PROC_CATEGORY_PE:
  case UTF8PROC_CATEGORY_PI:
  case UTF8PROC_CATEGORY_PF:
  case UTF8PROC_CATEGORY_PO:
  case UTF8PROC_CATEGORY_CF: // soft hyphens and marks of direction
  case UTF8PROC_CATEGORY_CC:
    return true;
  default:
    return false;
  }
}

bool isSymbol(char32_t c) {
  const utf8proc_category_t category = categoryOf(c);
  return category == UTF8PROC_CATEGORY_SM || category == UTF8PROC_CATEGORY_SC || category == UTF8PROC_CATEGORY_SK ||
         category == UTF8PROC_CATEGORY_SO;
}

bool isPunctuationOrSymbol(char32_t c) { return isPunctuation(c) || isSymbol(c); }

// A word without the punctuation around it: its range in the page's text, and its folded text.
struct Core {
  uint32_t first = 0, end = 0;
  std::u32string text;
};

Core coreOf(std::u32string_view word, uint32_t offset, bool (*isAround)(char32_t)) {
  size_t first = 0, end = word.size();
  while (first < end && isAround(word[first]))
    ++first;
  while (end > first && isAround(word[end - 1]))
    --end;
  return {offset + static_cast<uint32_t>(first), offset + static_cast<uint32_t>(end),
          host::folded(word.substr(first, end - first))};
}

// A word of the page is compared in two forms, with and without symbols: HOME and $HOME both match "$HOME", and C++
// matches "(C++)" but not "C".
struct Candidate {
  uint32_t word = 0;
  Core withSymbols, bare;

  const Core *matching(std::u32string_view text) const {
    if (withSymbols.text == text) return &withSymbols;
    return bare.text == text ? &bare : nullptr;
  }
};

// Calls `each(part, start)` for the parts of a text between spaces.
template <typename Each> void forEachPart(std::u32string_view text, const Each &each) {
  for (size_t i = 0; i < text.size();) {
    const size_t start = i;
    while (i < text.size() && !host::isWhiteSpace(text[i]))
      ++i;
    if (i > start)
      each(text.substr(start, i - start), static_cast<uint32_t>(start));
    else
      ++i;
  }
}

// The words of a page. A word with spaces in it (for a formula or a picture a PDF may have one) gives several.
std::vector<Candidate> candidates(std::span<const std::u32string> page) {
  std::vector<Candidate> result;
  result.reserve(page.size());
  uint32_t word = 0, offset = 0; // in the page's text: its words joined by one space
  for (const std::u32string &text : page) {
    forEachPart(text, [&](std::u32string_view part, uint32_t start) {
      result.push_back(
          {word, coreOf(part, offset + start, isPunctuation), coreOf(part, offset + start, isPunctuationOrSymbol)});
    });
    ++word;
    offset += static_cast<uint32_t>(text.size()) + 1;
  }
  return result;
}

} // namespace

Phrase::Phrase(std::span<const std::string> arguments) {
  for (const std::string &argument : arguments)
    forEachPart(host::decoded(argument), [this](std::u32string_view part, uint32_t /*start*/) {
      words_.push_back(coreOf(part, 0, isPunctuation).text);
    });
  // A lone dash inside a phrase matches a lone dash on the page; at the ends of the phrase it is dropped.
  const auto isNotEmpty = [](const std::u32string &word) { return !word.empty(); };
  words_.erase(words_.begin(), std::find_if(words_.begin(), words_.end(), isNotEmpty));
  words_.erase(std::find_if(words_.rbegin(), words_.rend(), isNotEmpty).base(), words_.end());
  if (words_.empty()) throw std::invalid_argument("there is nothing but punctuation to search for");
}

std::vector<Hit> Phrase::find(std::span<const std::u32string> page) const {
  const std::vector<Candidate> words = candidates(page);
  std::vector<Hit> hits;
  for (size_t i = 0; i + words_.size() <= words.size();) {
    const Core *const first = words[i].matching(words_.front());
    const Core *last = first;
    size_t matched = 0;
    while (last != nullptr && ++matched < words_.size())
      last = words[i + matched].matching(words_[matched]);
    if (first == nullptr || last == nullptr) {
      ++i;
      continue;
    }
    const uint32_t word = words[i].word;
    hits.push_back({first->first, last->end - first->first, word, words[i + matched - 1].word - word + 1});
    i += matched;
  }
  return hits;
}

} // namespace tools
