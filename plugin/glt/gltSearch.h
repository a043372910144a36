// Searching a page's highlights for a place, from the front, many at a time. Nothing is sorted or remembered: a page
// with n highlights still costs n comparisons, only cheaper ones.
#pragma once

#include <cstdint>

#include "tavrel/types.h"

/// How many of the first `count` entries can be left out because none of them starts at `pos`. Entries are compared in
/// blocks of up to 64: one of the next 64 does start there, or there are fewer left.
using HLSkip = uint32_t (*)(const tavrel::TextRange *entries, uint32_t count, uint16_t pos);

/// A way to do it, for machines that have what it needs.
struct HLSearch {
  const char *name;
  bool (*supported)();
  HLSkip skip;
};

/// From the fastest to the one that every machine has. All skip the same entries but for the size of the last block.
extern const HLSearch searches[];
extern const uint32_t searchCount;

/// The first that this machine has, of some that end with one that every machine has.
const HLSearch *firstSupported(const HLSearch *search);

/// The fastest one here.
extern const HLSkip HLPSkip;
