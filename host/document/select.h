// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Selections: which boxes of a page a list of ranges marks, and one selection for equal lists.
#pragma once

#include <map>
#include <memory>
#include <span>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "host/document/document.h"

namespace host {

/// A range that is not limited to 16 bits: from `first` up to, not including, `end`.
struct Span {
  uint32_t first = 0, end = 0;
};

/// The boxes of the characters in disjoint spans of offsets: of each span a box for every word it touches, around the
/// characters it covers there.
std::vector<Box> characterBoxes(const PageText &text, std::span<const Span> spans);

/// The bounds of the words in disjoint spans of word numbers. `order` maps a number to a word; empty is reading order.
std::vector<Box> wordBoxes(const PageText &text, std::span<const Span> spans, std::span<const uint32_t> order);

/// The selections of one document, among the live selections of all documents. Plug-ins do not release them, so only
/// those used last are kept: `mostSelections`, and fewer where they have more than `mostParts` boxes and ranges
/// together, but always `fewestSelections`. The handle of one that is dropped is unknown from then on.
class SelectionStore {
public:
  static constexpr size_t mostSelections = 1024, fewestSelections = 16;
  static constexpr size_t mostParts = 1U << 20U; ///< the larger of the two, a box, takes 32 bytes

  SelectionStore() = default;
  SelectionStore(const SelectionStore &) = delete;
  SelectionStore &operator=(const SelectionStore &) = delete;
  ~SelectionStore();

  /// The selection of ranges on a page, or null where they cover nothing. `version` is that of word extraction.
  const Selection *characters(int32_t page, std::span<const tavrel::TextRange> ranges, Document &document);
  const Selection *words(int32_t page, std::span<const tavrel::TextRange> ranges, int16_t version, Document &document);
  /// The most ranges of one request on the page, since the last call, of which none covered anything.
  size_t takeRangesWithoutText(int32_t page);
  size_t size() const { return made_.size(); }

private:
  using KeyRanges = std::vector<std::pair<uint16_t, uint16_t>>; // each range's start and length
  using Key = std::tuple<int32_t, int16_t, KeyRanges>;          // page, version of word extraction (0 for characters)
  template <typename BoxesOf> const Selection *get(int32_t page, const PageSize &size, int16_t version,
                                                   std::span<const tavrel::TextRange> ranges, const BoxesOf &boxesOf);

  using Made = std::map<Key, std::unique_ptr<Selection>>;
  static size_t partsOf(const Made::value_type &made);
  void dropUnused();

  Made made_;
  std::unordered_map<int32_t, size_t> withoutText_; ///< by page
  size_t parts_ = 0;                                ///< of all of `made_`
};

} // namespace host
