// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// The hits of a registered list, as far as the document has their pages: a file may name other pages.
#pragma once

#include "tavrel/TavrelGLT.h"

/// The hits of one page.
struct HitPage {
  uint32_t index; ///< of the page in the list
  int32_t number; ///< of the page in the document
  uint32_t first; ///< how many hits the pages before it have
  uint32_t count; ///< at least 1
};

/// In the list's order. Borrowed until the next call of readHits.
struct Hits {
  const HitPage *pages;
  uint32_t pageCount, hitCount;
  uint32_t fingerprint; ///< of other hits, most likely another one; never 0
};

/// Reads a list, which may be null; no hits if memory is exhausted. The list is read each time, because hits may be
/// added to it at any time.
Hits readHits(const HLL *list, int32_t documentPages);
/// The same without reading the list again, if it is the one that was read last and as long as it was then.
Hits lastHits(const HLL *list, int32_t documentPages);
/// Frees the memory of what was read last.
void freeHits();

/// The hits of a page of the document, or null.
const HitPage *pageOfHits(const Hits &hits, int32_t number);
/// The next page with hits, in the list's order, after (direction 1) or before (-1) a page; null after the last. A page
/// of the document that has none is followed by the nearest one that has.
const HitPage *pageBeside(const Hits &hits, int32_t number, int direction);
/// The page of the n-th of all hits, or null.
const HitPage *pageOfHit(const Hits &hits, uint32_t number);
/// How many hits a page of the list has.
uint32_t hitsOn(const HLL *list, uint32_t pageIndex);
/// The positions of a page's first hits, which has so many; null if memory is exhausted. Borrowed until the next call.
const tavrel::TextRange *readRanges(const HLL *list, uint32_t pageIndex, uint32_t count);
/// A hit's position on its page. False where there is none.
bool rangeOf(const HLL *list, uint32_t pageIndex, uint32_t word, tavrel::TextRange *range);
