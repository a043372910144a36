// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Translation of word numbers into character offsets.
#pragma once

#include "tavrel/types.h"

struct HLL;

/// Rewrites a list of word numbers in place into character offsets, with the words of a word finder of its document. A
/// page whose words are not available keeps the entries that are not rewritten yet. The first argument is not used.
void TranslateHLLWordToCharOffsets(void *ignored, tavrel::WordFinder finder, HLL *list);
