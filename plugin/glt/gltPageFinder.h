// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Adding highlights to a list of many pages: HLL_AddHL searches all pages for one that it does not have, so that a file
// with a page a hit would take quadratic time. A page finder has a hash table of the list's pages, beside the list.
#pragma once

#include "plugin/glt/glt.h"

/// All zero at first. Serves one list, which only grows meanwhile.
struct PageFinder {
  uint32_t *slots; ///< owned; a page index plus 1, or 0; null until the table is needed, or where memory is exhausted
  uint64_t secret;
  uint32_t bits;  ///< there are 2^bits slots
  uint32_t limit; ///< with more pages the table grows
  uint32_t filed; ///< the list's first pages: those in the table
};

/// With fewer pages HLL_AddHL is as fast.
inline constexpr uint32_t worthFinding = 64;

/// The record of a page, or null when the list has none. The list has at least one page.
HLP *finderFind(PageFinder &finder, HLL *list, int32_t page);

/// The same as HLL_AddHL.
inline void finderAdd(PageFinder &finder, HLL *list, int32_t page, uint16_t pos, uint16_t len) {
  if (list->pageCount < worthFinding)
    HLL_AddHL(list, page, pos, len);
  else
    HLLAddToPage(list, finderFind(finder, list, page), page, pos, len);
}

void finderRelease(PageFinder &finder);
