// Word numbers into character offsets, for callers that have the one and need the other.
#pragma once

#include "tavrel/types.h"

struct HLL;

/// Rewrites a list of word numbers in place into character offsets, with the words of a word finder of its document. A
/// page whose words cannot be had keeps what was not rewritten yet. The first argument is not used.
void TranslateHLLWordToCharOffsets(void *ignored, tavrel::WordFinder finder, HLL *list);
