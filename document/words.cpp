// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Words of a page: UTF-16 into code points, and the order of the content stream.
//
// The PDF library gives boxes only in reading order. In the order of the content stream it gives only a text, so the
// text's words are searched among the boxes. Where a text occurs more than once this is a heuristic: the box after the
// one found last wins, then the box from which most of the following words fit, too. A box whose text is never found
// stays after its predecessor in reading order.
#include "document/words.h"

#include <algorithm>
#include <unordered_map>

namespace document {
namespace {

// How far the heuristic looks ahead, and how many candidates it compares: limits for pages of ten thousand equal words.
constexpr size_t lookAhead = 16, mostCandidates = 64;

constexpr uint32_t none = UINT32_MAX;

bool isSpace(char32_t c) { return c <= U' ' || c == U'\u00A0'; }

std::u32string withoutSpaces(std::u32string_view text) {
  std::u32string result;
  std::copy_if(text.begin(), text.end(), std::back_inserter(result), [](char32_t c) { return !isSpace(c); });
  return result;
}

class ContentOrder {
public:
  ContentOrder(std::span<const std::u32string_view> boxes, std::u32string_view raw)
      : keys_(boxes.size()), used_(boxes.size()) {
    readStream(raw);
    std::ranges::transform(boxes, keys_.begin(), withoutSpaces);
    for (const std::u32string &key : keys_)
      longest_ = std::max(longest_, key.size());
    for (uint32_t i = 0; i < keys_.size(); ++i)
      boxesByText_[keys_[i]].push_back(i);
  }

  std::vector<uint32_t> order() {
    std::vector<uint32_t> found;
    uint32_t next = none; // the box after the one found last
    for (size_t at = 0; at < stream_.size();) {
      const uint32_t box = boxAt(at, next);
      if (box == none) {
        at = wordEnd_[at];
        continue;
      }
      used_[box] = true;
      found.push_back(box);
      at += keys_[box].size();
      next = box + 1;
    }
    return withTheRest(found);
  }

private:
  // The stream without its spaces, and for each character where its word ends.
  void readStream(std::u32string_view raw) {
    const auto endWord = [this] { wordEnd_.resize(stream_.size(), stream_.size()); };
    for (const char32_t c : raw)
      if (isSpace(c))
        endWord();
      else
        stream_ += c;
    endWord();
  }

  bool fits(uint32_t box, size_t at) const {
    return box < keys_.size() && !used_[box] && !keys_[box].empty() &&
           stream_.compare(at, keys_[box].size(), keys_[box]) == 0;
  }

  // How many boxes from this one on fit the words from here on.
  size_t run(uint32_t box, size_t at) const {
    size_t length = 0;
    for (; length < lookAhead && fits(box, at); ++box, ++length)
      at += keys_[box].size();
    return length;
  }

  // Of the boxes with exactly this text that are still unused, the one with the longest run; the first of equals.
  uint32_t bestBox(const std::u32string &text, size_t at) {
    const auto found = boxesByText_.find(text);
    if (found == boxesByText_.end()) return none;
    std::vector<uint32_t> &candidates = found->second;
    std::erase_if(candidates, [this](uint32_t box) { return used_[box]; });
    uint32_t best = none;
    size_t bestRun = 0;
    for (size_t i = 0; i < std::min(candidates.size(), mostCandidates); ++i)
      if (const size_t length = run(candidates[i], at); length > bestRun) {
        best = candidates[i];
        bestRun = length;
      }
    return best;
  }

  uint32_t boxAt(size_t at, uint32_t next) {
    const size_t length = wordEnd_[at] - at;
    if (fits(next, at) && keys_[next].size() == length) return next;
    if (const uint32_t box = length <= longest_ ? bestBox(stream_.substr(at, length), at) : none; box != none)
      return box;
    // The two texts need not agree where a word ends: one may join words that the other separates.
    if (fits(next, at)) return next;
    for (size_t part = std::min(length - 1, longest_); part > 0; --part)
      if (const uint32_t box = bestBox(stream_.substr(at, part), at); box != none) return box;
    return none;
  }

  std::vector<uint32_t> withTheRest(const std::vector<uint32_t> &found) const {
    std::vector<uint32_t> result;
    const auto takeUnused = [&](uint32_t box) {
      for (; box < keys_.size() && !used_[box]; ++box)
        result.push_back(box);
    };
    takeUnused(0);
    for (const uint32_t box : found) {
      result.push_back(box);
      takeUnused(box + 1);
    }
    return result;
  }

  std::u32string stream_;
  std::vector<size_t> wordEnd_;
  std::vector<std::u32string> keys_; // the boxes' texts without spaces
  size_t longest_ = 0;
  std::vector<bool> used_;
  std::unordered_map<std::u32string, std::vector<uint32_t>> boxesByText_; // used ones are removed at a look-up
};

} // namespace

std::u32string codePoints(std::span<const unsigned short> utf16) {
  std::u32string result;
  result.reserve(utf16.size());
  for (size_t i = 0; i < utf16.size(); ++i) {
    const char32_t unit = utf16[i];
    const char32_t low = i + 1 < utf16.size() ? utf16[i + 1] : 0;
    if (unit < 0xD800 || unit > 0xDFFF) {
      result += unit;
    } else if (unit < 0xDC00 && low >= 0xDC00 && low <= 0xDFFF) {
      result += static_cast<char32_t>(0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00));
      ++i;
    } else {
      result += U'\uFFFD';
    }
  }
  return result;
}

std::vector<uint32_t> orderByContent(std::span<const std::u32string_view> boxes, std::u32string_view raw) {
  return ContentOrder(boxes, raw).order();
}

} // namespace document
