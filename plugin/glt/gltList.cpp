// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The highlight list: three levels of plain arrays, in order of adding, searched linearly: pages after a guess, entries
// from the front. A list only grows.
#include <cstdlib>
#include <cstring>

#include "plugin/glt/glt.h"
#include "plugin/glt/gltSearch.h"
#include "plugin/util/shortLoop.h"

using namespace tavrel;

namespace {

constexpr uint32_t pageStep = 8;
constexpr uint32_t wordStep = 16;

/// The page index that the last search found, in any list: a guess, which each search checks.
uint32_t s_lastFound;

/// With fewer entries the plain loop is as fast.
constexpr uint16_t worthSkipping = 8;

/// Growth of a page's array beyond this wraps in 16 bits.
constexpr uint16_t maxWords = UINT16_MAX / wordStep * wordStep - 1;

/// The capacity for n entries: the next multiple of `step` above n.
constexpr uint32_t targetCapacity(uint32_t n, uint32_t step) { return (n / step + 1) * step; }

/// An array resized to `capacity` entries, new and all zero where there was none; null when memory is exhausted. calloc
/// is not used for a new one: it does not take the small blocks that the C library keeps cached.
template <typename T> T *resized(T *array, size_t capacity) {
  const size_t bytes = capacity * sizeof(T);
  auto *grown = static_cast<T *>(realloc(array, bytes)); // NOLINT(clang-analyzer-optin.portability.UnixAPI): never 0
  if (array == nullptr && grown != nullptr) memset(grown, 0, bytes);
  return grown;
}

/// The positions of a page's entries, while it is copied: one bit each.
struct Positions {
  bool cleared; ///< whether the bits are; they are cleared when the first page needs them
  uint32_t bits[(UINT16_MAX + 1) / 32];

  /// False when the position was added before.
  bool add(uint16_t pos) {
    const uint32_t bit = 1U << (pos % 32);
    if ((bits[pos / 32] & bit) != 0) return false;
    bits[pos / 32] |= bit;
    return true;
  }
  void remove(uint16_t pos) { bits[pos / 32] &= ~(1U << (pos % 32)); }
};

/// Whether all entries of a page start at different positions, as they do unless entries were overwritten. `none` holds
/// no positions, before and after.
bool positionsDiffer(const HLP &page, Positions &none) {
  constexpr uint32_t worthMarking = 16;
  if (page.count < worthMarking) {
    for (uint32_t i = 1; i < page.count; ++i)
      for (uint32_t k = 0; k < i; ++k)
        if (page.words[i].pos == page.words[k].pos) return false;
    return true;
  }
  if (!none.cleared) memset(none.bits, 0, sizeof none.bits);
  none.cleared = true;
  uint32_t added = 0;
  while (added < page.count && none.add(page.words[added].pos))
    ++added;
  for (uint32_t i = 0; i < added; ++i)
    none.remove(page.words[i].pos);
  return added == page.count;
}

/// Appends a page with all its entries at once, with the same result as adding them one by one where all positions
/// differ. Returns how many entries are done. When memory is exhausted, that is one, which is dropped as if it had been
/// added alone; or none, where a smaller array may still hold the first entries when they are added one by one.
uint32_t appendPage(HLL *list, const HLP &page) {
  HLP *record = HLLInsertPage(list, page.page);
  if (record == nullptr) return 1;
  if (!HLPCheck(record, page.count)) {
    const uint32_t lost = page.count < wordStep ? 1 : 0;
    list->wordCount += lost;
    return lost;
  }
  list->wordCount += page.count;
  memcpy(record->words, page.words, page.count * sizeof(HL));
  record->count = page.count;
  return page.count;
}

} // namespace

HLL *GLT_NewHLL(void *userData) {
  auto *list = static_cast<HLL *>(calloc(1, sizeof(HLL)));
  if (list != nullptr) list->data = userData;
  return list;
}

HLL *GLT_CopyHLL(const HLL *list) {
  if (list == nullptr) return nullptr;
  HLL *copy = GLT_NewHLL(list->data);
  if (copy == nullptr) return nullptr;
  Positions positions;
  positions.cleared = false;
  for (uint32_t i = 0; i < list->pageCount; ++i) {
    const HLP &page = list->pages[i];
    if (page.count == 0) continue;
    for (uint32_t k = positionsDiffer(page, positions) ? appendPage(copy, page) : 0; k < page.count; ++k)
      HLL_AddHL(copy, page.page, page.words[k].pos, page.words[k].len);
  }
  return copy;
}

void GLT_DeleteHLL(HLL *list) {
  if (list == nullptr) return;
  if (list->pages != nullptr) {
    for (uint32_t i = 0; i < list->pageCount; ++i)
      free(list->pages[i].words);
    free(list->pages);
  }
  free(list);
}

void *HLL_GetData(const HLL *list) { return list != nullptr ? list->data : nullptr; }

void HLL_SetData(HLL *list, void *userData) {
  if (list != nullptr) list->data = userData;
}

uint32_t HLL_GetWordCount(const HLL *list) { return list != nullptr ? list->wordCount : 0; }

uint32_t HLL_GetPageCount(const HLL *list) { return list != nullptr ? list->pageCount : 0; }

bool HLLIsComplete(const HLL *list) {
  uint32_t stored = 0;
  for (uint32_t i = 0; i < HLL_GetPageCount(list); ++i)
    stored += list->pages[i].count;
  return stored == HLL_GetWordCount(list);
}

const HLP *HLLPageAt(const HLL *list, uint32_t pageIndex) {
  return pageIndex < HLL_GetPageCount(list) ? &list->pages[pageIndex] : nullptr;
}

Bool16 HLL_GetHL(const HLL *list, uint32_t pageIndex, uint16_t wordIndex, int32_t *page, uint16_t *pos, uint16_t *len) {
  const HLP *record = HLLPageAt(list, pageIndex);
  if (record == nullptr || wordIndex >= record->count) return 0;
  *page = record->page;
  *pos = record->words[wordIndex].pos;
  *len = record->words[wordIndex].len;
  return 1;
}

/// Everything that it calls is inlined: it is called for every hit of a file.
[[gnu::flatten]] Bool16 HLL_AddHL(HLL *list, int32_t page, uint16_t pos, uint16_t len) {
  if (list != nullptr) HLLAddToPage(list, HLLFindPage(list, page), page, pos, len);
  return 1;
}

[[gnu::flatten]] void HLLAddToPage(HLL *list, HLP *record, int32_t page, uint16_t pos, uint16_t len) {
  if (record == nullptr) record = HLLInsertPage(list, page);
  if (record == nullptr) return;                   // no memory for the page: the highlight is dropped
  if (HLPFindWord(record, pos) != nullptr) return; // the first length given for a position wins
  HLPInsertWord(record, pos, len);
  ++list->wordCount; // also when it could not be stored: the count is of accepted highlights
}

Bool16 HLL_FindPagePos(const HLL *list, int32_t page, uint32_t *pageIndex) {
  const uint32_t count = HLL_GetPageCount(list);
  const auto isAt = [=](uint32_t i) { return i < count && list->pages[i].page == page; };
  // No page occurs twice, so the order of the search does not matter. Files list their hits page by page, or all pages
  // once for each word that was searched for: the last page, the page found last and the one after it are tried first.
  uint32_t found = count - 1;
  if (!isAt(found)) found = s_lastFound;
  if (!isAt(found)) ++found;
  if (!isAt(found)) {
    SHORT_LOOP
    for (found = 0; found < count; ++found)
      if (list->pages[found].page == page) break;
  }
  if (found >= count) return 0;
  *pageIndex = s_lastFound = found;
  return 1;
}

HLP *HLLFindPage(const HLL *list, int32_t page) {
  uint32_t pageIndex = 0;
  return HLL_FindPagePos(list, page, &pageIndex) ? &list->pages[pageIndex] : nullptr;
}

HLP *HLLInsertPage(HLL *list, int32_t page) {
  if (!HLLCheck(list, list->pageCount + 1)) return nullptr;
  HLP *record = &list->pages[list->pageCount];
  *record = HLP{page, nullptr, 0, 0};
  ++list->pageCount;
  return record;
}

Bool16 HLLCheck(HLL *list, uint32_t needed) {
  const uint32_t target = targetCapacity(needed, pageStep);
  if (target <= list->pageCapacity && target > list->pageCapacity / 2) return 1;
  HLP *pages = resized(list->pages, target);
  if (pages == nullptr) return 0;
  list->pages = pages;
  list->pageCapacity = target;
  return 1;
}

HL *HLPFindWord(const HLP *page, uint16_t pos) {
  SHORT_LOOP
  for (uint32_t i = page->count < worthSkipping ? 0 : HLPSkip(page->words, page->count, pos); i < page->count; ++i)
    if (page->words[i].pos == pos) return &page->words[i];
  return nullptr;
}

HL *HLPInsertWord(HLP *page, uint16_t pos, uint16_t len) {
  if (!HLPCheck(page, static_cast<uint16_t>(page->count + 1))) return nullptr;
  HL *word = &page->words[page->count];
  *word = HL{pos, len};
  ++page->count;
  return word;
}

Bool16 HLPCheck(HLP *page, uint16_t needed) {
  if (needed > maxWords) return 0;
  const uint32_t target = targetCapacity(needed, wordStep);
  if (target <= page->capacity && target > page->capacity / 2) return 1;
  HL *words = resized(page->words, target);
  if (words == nullptr) return 0;
  page->words = words;
  page->capacity = static_cast<uint16_t>(target);
  return 1;
}
