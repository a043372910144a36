// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Three implementations of the search. An entry is 32 bits: its position, and its length, which is not compared. Four
// or eight entries are compared at once, and the results of many comparisons are tested together.
#include "plugin/glt/gltSearch.h"

#include <bit>
#include <cstddef>
#include <cstring>

#ifdef __SSE2__
#include <immintrin.h>
#endif

using tavrel::TextRange;

namespace {

static_assert(sizeof(TextRange) == 4 && offsetof(TextRange, pos) == 0);

/// The bits of the position in an entry that is loaded as one word, for either byte order.
constexpr uint32_t posMask = std::endian::native == std::endian::big ? 0xFFFF0000U : 0xFFFFU;
constexpr uint32_t posUnit = posMask & (0U - posMask);

/// For every machine. The inner loop has no branch, so that compilers can vectorise it: of all 16-bit numbers only 0
/// has the topmost of 32 bits set after 1 is subtracted.
uint32_t skipPortably(const TextRange *entries, uint32_t count, uint16_t pos) {
  const uint32_t wanted = pos * posUnit;
  constexpr uint32_t block = 64;
  uint32_t i = 0;
  for (; i + block <= count; i += block) {
    uint32_t found = 0;
    for (uint32_t k = 0; k < block; ++k) {
      uint32_t entry;
      memcpy(&entry, entries + i + k, sizeof entry);
      found |= ((entry ^ wanted) & posMask) / posUnit - 1;
    }
    if (found >> 31U != 0) break;
  }
  return i;
}

bool always() { return true; }

#ifdef __SSE2__

using Four = __m128i;

Four compareFour(const TextRange *entries, Four wanted) {
  return _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const Four *>(entries)), wanted);
}

Four compareSixteen(const TextRange *entries, Four wanted) {
  return _mm_or_si128(_mm_or_si128(compareFour(entries, wanted), compareFour(entries + 4, wanted)),
                      _mm_or_si128(compareFour(entries + 8, wanted), compareFour(entries + 12, wanted)));
}

bool none(Four found) { return _mm_movemask_epi8(_mm_and_si128(found, _mm_set1_epi32(0xFFFF))) == 0; }

uint32_t skipByFour(const TextRange *entries, uint32_t count, uint16_t pos) {
  const Four wanted = _mm_set1_epi16(static_cast<int16_t>(pos));
  uint32_t i = 0;
  for (; i + 32 <= count; i += 32)
    if (!none(_mm_or_si128(compareSixteen(entries + i, wanted), compareSixteen(entries + i + 16, wanted)))) return i;
  while (i + 4 <= count && none(compareFour(entries + i, wanted)))
    i += 4;
  // The rest, together with the entries before it.
  return count - i < 4 && count >= 4 && none(compareFour(entries + count - 4, wanted)) ? count : i;
}

// The same with registers of twice the width, which not every machine has.
#define TAVREL_AVX2 __attribute__((target("avx2")))

using Eight = __m256i;

TAVREL_AVX2 inline Eight compareEight(const TextRange *entries, Eight wanted) {
  return _mm256_cmpeq_epi16(_mm256_loadu_si256(reinterpret_cast<const Eight *>(entries)), wanted);
}

TAVREL_AVX2 inline Eight compareThirtyTwo(const TextRange *entries, Eight wanted) {
  return _mm256_or_si256(_mm256_or_si256(compareEight(entries, wanted), compareEight(entries + 8, wanted)),
                         _mm256_or_si256(compareEight(entries + 16, wanted), compareEight(entries + 24, wanted)));
}

TAVREL_AVX2 inline bool none(Eight found) { return _mm256_testz_si256(found, _mm256_set1_epi32(0xFFFF)) != 0; }

TAVREL_AVX2 uint32_t skipByEight(const TextRange *entries, uint32_t count, uint16_t pos) {
  const Eight wanted = _mm256_set1_epi16(static_cast<int16_t>(pos));
  uint32_t i = 0;
  for (; i + 64 <= count; i += 64)
    if (!none(_mm256_or_si256(compareThirtyTwo(entries + i, wanted), compareThirtyTwo(entries + i + 32, wanted))))
      return i;
  while (i + 8 <= count && none(compareEight(entries + i, wanted)))
    i += 8;
  return count - i < 8 && count >= 8 && none(compareEight(entries + count - 8, wanted)) ? count : i;
}

bool hasAvx2() {
  __builtin_cpu_init(); // this may run before the compiler's own initialisation
  return __builtin_cpu_supports("avx2") != 0;
}

#endif

} // namespace

const HLSearch searches[] = {
#ifdef __SSE2__
    {"AVX2", hasAvx2, skipByEight},
    {"SSE2", always, skipByFour},
#endif
    {"portable", always, skipPortably},
};
const uint32_t searchCount = sizeof searches / sizeof *searches;

const HLSearch *firstSupported(const HLSearch *search) {
  while (!search->supported())
    ++search;
  return search;
}

const HLSkip HLPSkip = firstSupported(searches)->skip;
