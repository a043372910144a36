// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// Owns two arrays. No call in this file jumps over anything: the operations of the table that read lists do not raise.
#include "hits.h"

#include <algorithm>
#include <cstdlib>

using namespace tavrel;

namespace {

HitPage *s_pages; ///< of the list that was read last
Hits s_last;
const HLL *s_lastList;
uint32_t s_lastPages, s_lastWords;
int32_t s_lastDocumentPages;
TextRange *s_ranges;
size_t s_pageCapacity, s_rangeCapacity;

template <typename T> bool ensureCapacity(T *&array, size_t &capacity, size_t count) {
  if (count <= capacity) return true;
  auto *grown = static_cast<T *>(realloc(array, count * sizeof *array));
  if (grown == nullptr) return false;
  array = grown;
  capacity = count;
  return true;
}

template <typename T> void release(T *&array, size_t &capacity) {
  free(array);
  array = nullptr;
  capacity = 0;
}

} // namespace

/// The table has no operation for it. A binary search finds it: a list may have thousands of pages, and this runs after
/// each draw.
uint32_t hitsOn(const HLL *list, uint32_t pageIndex) {
  uint32_t count = 0;
  TextRange range;
  for (uint32_t step = 0x8000; step != 0; step /= 2)
    if (rangeOf(list, pageIndex, count + step - 1, &range)) count += step;
  return count;
}

const TextRange *readRanges(const HLL *list, uint32_t pageIndex, uint32_t count) {
  if (!ensureCapacity(s_ranges, s_rangeCapacity, count)) return nullptr;
  for (uint32_t word = 0; word < count; ++word)
    rangeOf(list, pageIndex, word, &s_ranges[word]);
  return s_ranges;
}

bool rangeOf(const HLL *list, uint32_t pageIndex, uint32_t word, TextRange *range) {
  int32_t page = 0;
  return word <= UINT16_MAX &&
         TavrelGLT::HLL_GetHL(list, pageIndex, static_cast<uint16_t>(word), &page, &range->pos, &range->len) != 0;
}

Hits readHits(const HLL *list, int32_t documentPages) {
  const uint32_t pageCount = list == nullptr ? 0 : TavrelGLT::HLL_GetPageCount(list);
  const uint32_t most = std::min(pageCount, static_cast<uint32_t>(std::max(documentPages, 0)));
  constexpr uint32_t seed = 2166136261, prime = 16777619;
  s_lastList = nullptr;
  if (!ensureCapacity(s_pages, s_pageCapacity, most)) return {s_pages, 0, 0, seed};
  Hits hits = {s_pages, 0, 0, seed};
  for (uint32_t i = 0; i < pageCount && hits.pageCount < most; ++i) {
    int32_t page = -1;
    uint16_t pos = 0, len = 0;
    if (!TavrelGLT::HLL_GetHL(list, i, 0, &page, &pos, &len) || page < 0 || page >= documentPages) continue;
    const uint32_t count = hitsOn(list, i);
    s_pages[hits.pageCount++] = {i, page, hits.hitCount, count};
    hits.hitCount += count;
    for (const uint32_t part : {static_cast<uint32_t>(page), uint32_t{pos}, uint32_t{len}, count})
      hits.fingerprint = (hits.fingerprint ^ part) * prime;
  }
  hits.fingerprint = std::max(hits.fingerprint, 1U);
  s_last = hits;
  s_lastList = list;
  s_lastPages = pageCount;
  s_lastWords = list == nullptr ? 0 : TavrelGLT::HLL_GetWordCount(list);
  s_lastDocumentPages = documentPages;
  return hits;
}

Hits lastHits(const HLL *list, int32_t documentPages) {
  const bool same = list != nullptr && list == s_lastList && documentPages == s_lastDocumentPages &&
                    TavrelGLT::HLL_GetPageCount(list) == s_lastPages &&
                    TavrelGLT::HLL_GetWordCount(list) == s_lastWords;
  return same ? s_last : readHits(list, documentPages);
}

const HitPage *pageOfHit(const Hits &hits, uint32_t number) {
  if (number >= hits.hitCount) return nullptr;
  return std::upper_bound(hits.pages, hits.pages + hits.pageCount, number,
                          [](uint32_t wanted, const HitPage &page) { return wanted < page.first; }) -
         1;
}

void freeHits() {
  release(s_pages, s_pageCapacity);
  release(s_ranges, s_rangeCapacity);
  s_lastList = nullptr;
}

const HitPage *pageOfHits(const Hits &hits, int32_t number) {
  const HitPage *const end = hits.pages + hits.pageCount;
  const HitPage *const found =
      std::find_if(hits.pages, end, [number](const HitPage &page) { return page.number == number; });
  return found == end ? nullptr : found;
}

const HitPage *pageBeside(const Hits &hits, int32_t number, int direction) {
  const HitPage *const end = hits.pages + hits.pageCount;
  if (const HitPage *here = pageOfHits(hits, number)) {
    if (direction > 0) return here + 1 == end ? nullptr : here + 1;
    return here == hits.pages ? nullptr : here - 1;
  }
  const HitPage *nearest = nullptr;
  for (const HitPage *page = hits.pages; page != end; ++page) {
    const bool after = page->number > number;
    if (after != (direction > 0)) continue;
    if (nearest == nullptr || (after ? page->number < nearest->number : page->number > nearest->number)) nearest = page;
  }
  return nearest;
}
