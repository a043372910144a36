// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The page finder: open addressing with linear probing, at most half full.
#include "plugin/glt/gltPageFinder.h"

#include <sys/auxv.h>

#include <bit>
#include <cstdlib>
#include <cstring>

namespace {

/// A number that differs from process to process, so that no file can be made whose pages all have the same hash.
uint64_t secret() {
  uint64_t random = 0;
  const auto *bytes = reinterpret_cast<const void *>(getauxval(AT_RANDOM)); // 16 of them
  if (bytes != nullptr) memcpy(&random, bytes, sizeof random);              // GCOVR_EXCL_BR_LINE: every kernel has them
  return random;
}

uint32_t hashOf(const PageFinder &finder, int32_t page) {
  constexpr uint64_t odd = 0x9E3779B97F4A7C15U; // 2^64 divided by the golden ratio: spreads neighbours
  const uint64_t first = (static_cast<uint32_t>(page) ^ finder.secret) * odd;
  return static_cast<uint32_t>((first ^ first >> 32) * odd >> (64 - finder.bits));
}

/// The slot of a page, or the free one where it belongs.
uint32_t &slotFor(const PageFinder &finder, const HLL *list, int32_t page) {
  const uint32_t last = (1U << finder.bits) - 1;
  uint32_t slot = hashOf(finder, page);
  while (finder.slots[slot] != 0 && list->pages[finder.slots[slot] - 1].page != page)
    slot = (slot + 1) & last;
  return finder.slots[slot];
}

/// A new table, empty, for `count` pages and more.
void grow(PageFinder &finder, uint32_t count) {
  free(finder.slots);
  finder.secret = secret();
  finder.bits = static_cast<uint32_t>(std::bit_width(count)) + 1;
  finder.limit = 1U << (finder.bits - 1);
  finder.filed = 0;
  finder.slots = static_cast<uint32_t *>(calloc(size_t{1} << finder.bits, sizeof(uint32_t)));
}

} // namespace

HLP *finderFind(PageFinder &finder, HLL *list, int32_t page) {
  HLP *last = &list->pages[list->pageCount - 1];
  if (last->page == page) return last; // files list their hits page by page
  if (list->pageCount > finder.limit) grow(finder, list->pageCount);
  if (finder.slots == nullptr) return HLLFindPage(list, page);
  for (; finder.filed < list->pageCount; ++finder.filed)
    slotFor(finder, list, list->pages[finder.filed].page) = finder.filed + 1;
  const uint32_t found = slotFor(finder, list, page);
  return found == 0 ? nullptr : &list->pages[found - 1];
}

void finderRelease(PageFinder &finder) {
  free(finder.slots);
  finder = {};
}
