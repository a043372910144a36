// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Selections: turns ranges of characters or words into boxes, and keeps one selection for equal ranges.
//
// Ranges may overlap, but marks change the colours of the page: what two ranges share must not get two boxes, or it
// would be changed twice. So ranges are joined to disjoint spans first.
#include "host/document/select.h"

#include <algorithm>

#include "host/document/linebox.h"

namespace host {
namespace {

bool hasArea(const Box &box) { return box.right > box.left && box.top > box.bottom; }

// Whether a part of the box that is wide enough to be painted lies on the page.
bool overlaps(const Box &box, const PageSize &page) {
  constexpr double least = 0.01; // points
  return std::min(box.right, page.width) - std::max(box.left, 0.0) >= least &&
         std::min(box.top, page.height) - std::max(box.bottom, 0.0) >= least;
}

bool isRange(const tavrel::TextRange &range) { return range.len > 0; }

bool same(const Box &a, const Box &b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

Box unionOf(const Box &a, const Box &b) {
  return {std::min(a.left, b.left), std::max(a.top, b.top), std::max(a.right, b.right), std::min(a.bottom, b.bottom)};
}

std::vector<Span> disjoint(std::span<const tavrel::TextRange> ranges) {
  std::vector<Span> spans;
  for (const tavrel::TextRange &range : ranges)
    if (isRange(range)) spans.push_back({range.pos, static_cast<uint32_t>(range.pos) + range.len});
  std::ranges::sort(spans, {}, &Span::first);
  std::vector<Span> result;
  for (const Span &span : spans)
    if (!result.empty() && span.first <= result.back().end)
      result.back().end = std::max(result.back().end, span.end);
    else
      result.push_back(span);
  return result;
}

// The box of a word's characters from first to end when they have none of their own: the same share of the word's box
// as of its characters.
Box share(const WordText &word, size_t first, size_t end) {
  const double count = static_cast<double>(word.text.size());
  const double from = static_cast<double>(first) / count;
  const double to = static_cast<double>(end) / count;
  LineBox box = onLine(word.bounds, word.quarterTurns);
  const double width = box.end - box.start;
  box.end = box.start + to * width;
  box.start += from * width;
  return onPage(box, word.quarterTurns);
}

Box partOf(const WordText &word, size_t first, size_t end) {
  Box box;
  bool any = false;
  for (size_t i = first; i < std::min(end, word.characters.size()); ++i)
    if (hasArea(word.characters[i])) {
      box = any ? unionOf(box, word.characters[i]) : word.characters[i];
      any = true;
    }
  return any ? box : share(word, first, end);
}

} // namespace

std::vector<Box> characterBoxes(const PageText &text, std::span<const Span> spans) {
  std::vector<Box> boxes;
  for (const Span &span : spans) {
    auto word = std::partition_point(text.words.begin(), text.words.end(), [&](const WordText &candidate) {
      return candidate.offset + candidate.text.size() <= span.first;
    });
    for (; word != text.words.end() && word->offset < span.end; ++word) {
      const size_t first = std::max(span.first, word->offset) - word->offset;
      const size_t end = std::min<size_t>(span.end - word->offset, word->text.size());
      const Box box = partOf(*word, first, end);
      // The letters of a ligature share one box: two spans that each hold one of them are one mark.
      if (boxes.empty() || !same(boxes.back(), box)) boxes.push_back(box);
    }
  }
  return boxes;
}

std::vector<Box> wordBoxes(const PageText &text, std::span<const Span> spans, std::span<const uint32_t> order) {
  std::vector<Box> boxes;
  for (const Span &span : spans)
    for (size_t i = span.first; i < std::min<size_t>(span.end, text.words.size()); ++i)
      boxes.push_back(text.words[order.empty() ? i : order[i]].bounds);
  return boxes;
}

template <typename BoxesOf> const Selection *SelectionStore::get(int32_t page, const PageSize &size, int16_t version,
                                                                 std::span<const tavrel::TextRange> ranges,
                                                                 const BoxesOf &boxesOf) {
  Key key{page, version, KeyRanges(ranges.size())};
  std::ranges::transform(ranges, std::get<KeyRanges>(key).begin(),
                         [](const tavrel::TextRange &range) { return std::pair(range.pos, range.len); });
  if (const auto known = made_.find(key); known != made_.end()) {
    selections().noteUse(*known->second);
    return known->second.get();
  }

  auto selection = std::make_unique<Selection>();
  selection->page = page;
  selection->boxes = boxesOf(disjoint(ranges));
  if (selection->boxes.empty()) {
    const auto count = static_cast<size_t>(std::ranges::count_if(ranges, isRange));
    withoutText_[page] = std::max(withoutText_[page], count);
    return nullptr;
  }
  for (const tavrel::TextRange &range : ranges) {
    const std::vector<Box> boxes = boxesOf(disjoint({&range, 1}));
    const bool isOnPage = std::any_of(boxes.begin(), boxes.end(), [&](const Box &box) { return overlaps(box, size); });
    selection->ranges += isOnPage ? 1 : 0;
    selection->offPage += !isOnPage && isRange(range) ? 1 : 0;
  }
  selection->bounds = selection->boxes.front();
  for (const Box &box : selection->boxes)
    selection->bounds = unionOf(selection->bounds, box);

  const auto made = made_.emplace(std::move(key), std::move(selection)).first;
  try {
    selections().add(made->second.get());
  } catch (...) {
    made_.erase(made);
    throw;
  }
  parts_ += partsOf(*made);
  dropUnused();
  return made->second.get();
}

size_t SelectionStore::takeRangesWithoutText(int32_t page) {
  const auto taken = withoutText_.extract(page);
  return taken.empty() ? 0 : taken.mapped();
}

size_t SelectionStore::partsOf(const Made::value_type &made) {
  return made.second->boxes.size() + std::get<KeyRanges>(made.first).size();
}

void SelectionStore::dropUnused() {
  while (made_.size() > mostSelections || (parts_ > mostParts && made_.size() > fewestSelections)) {
    const auto oldest = std::ranges::min_element(made_, {}, [](const auto &made) { return made.second->lastUse; });
    parts_ -= partsOf(*oldest);
    selections().remove(oldest->second.get());
    made_.erase(oldest);
  }
}

const Selection *SelectionStore::characters(int32_t page, std::span<const tavrel::TextRange> ranges,
                                            Document &document) {
  const PageText &text = document.pageText(page);
  return get(page, document.pageSize(page), 0, ranges,
             [&](const std::vector<Span> &spans) { return characterBoxes(text, spans); });
}

const Selection *SelectionStore::words(int32_t page, std::span<const tavrel::TextRange> ranges, int16_t version,
                                       Document &document) {
  if (version != contentOrderVersion && version != readingOrderVersion)
    throw HostError(tavrel::errBadArgument, "no word extraction of version " + std::to_string(version));
  const PageText &text = document.pageText(page);
  std::span<const uint32_t> order;
  if (version == contentOrderVersion) order = document.contentOrder(page);
  return get(page, document.pageSize(page), version, ranges,
             [&](const std::vector<Span> &spans) { return wordBoxes(text, spans, order); });
}

tavrel::TextSelection Selections::add(const Selection *selection) {
  noteUse(*selection);
  return handles_.add(selection);
}

const Selection &Selections::find(tavrel::TextSelection handle) {
  const Selection &found = handles_.find(handle);
  noteUse(found);
  return found;
}

SelectionStore::~SelectionStore() {
  for (const auto &[key, selection] : made_)
    selections().remove(selection.get());
}

} // namespace host
