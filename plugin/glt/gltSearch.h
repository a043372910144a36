// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Searching a page's highlights for a position, from the front, many at a time. Nothing is sorted or cached: a page
// with n highlights costs n comparisons.
#pragma once

#include <cstdint>

#include "tavrel/types.h"

/// How many of the first `count` entries can be skipped because none of them starts at `pos`. Entries are compared in
/// blocks of up to 64: after the skipped ones, one of the next 64 starts at `pos`, or fewer than 64 are left.
using HLSkip = uint32_t (*)(const tavrel::TextRange *entries, uint32_t count, uint16_t pos);

/// An implementation, and whether this machine supports it.
struct HLSearch {
  const char *name;
  bool (*supported)();
  HLSkip skip;
};

/// From the fastest to the portable one. All skip the same entries except for the size of the last block.
extern const HLSearch searches[];
extern const uint32_t searchCount;

/// The first of the implementations that this machine supports; the last one must be portable.
const HLSearch *firstSupported(const HLSearch *search);

/// The fastest one on this machine.
extern const HLSkip HLPSkip;
