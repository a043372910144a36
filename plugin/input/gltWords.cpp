// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The words that the fast path does not find, and skipping text between tags.
#include "plugin/input/gltWords.h"

#include <bit>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

constexpr uint8_t notable = stepOpening | stepQuote | stepElse;

#ifdef __SSE2__
constexpr char notables[] = {'\0', '<', '\'', '(', '!'};

static_assert([] {
  size_t steps = 0, listed = 0;
  for (const uint8_t step : lexSteps)
    steps += (step & notable) != 0 ? 1 : 0;
  for (const char c : notables)
    listed += (lexSteps[static_cast<uint8_t>(c)] & notable) != 0 ? 1 : 0;
  return steps == listed && listed == sizeof notables;
}());

/// Sixteen bytes at once: which of them are notable.
uint32_t notableOf(const char *at) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at));
  __m128i found = _mm_setzero_si128();
  for (const char c : notables)
    found = _mm_or_si128(found, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)));
  return static_cast<uint32_t>(_mm_movemask_epi8(found));
}
#endif

/// The first byte with which a tag or a quoted word may begin, or that ends a sentence or the text.
const char *nextNotable([[maybe_unused]] const LexText &text, const char *at) {
#ifdef __SSE2__
  for (; text.end - at >= 16; at += 16) {
    const uint32_t found = notableOf(at);
    if (found != 0) return at + std::countr_zero(found);
  }
#endif
  while ((lexStep(*at) & notable) == 0)
    ++at;
  return at;
}

/// Where the lexer's next token begins, if it is a word or follows one: then the look-ahead holds at most its first
/// byte.
const char *nextToken(const HWLEX_STATE &state, const char *cursor) { return cursor - (state.pending1 != 0 ? 1 : 0); }

} // namespace

const char *lexNextByLexer(LexText &text, const char *at, LexWord &word) {
  HWLEX_STATE state;
  HWLEX_reset(&state);
  auto *cursor = const_cast<char *>(at); // which is only read
  // The lexer has already read the first byte of every token but the text's first one (HWLEX_match).
  if (at != text.begin) state.pending1 = getch(&cursor);
  while (*cursor != 0) {
    const char *const begin = nextToken(state, cursor);
    char *token = nullptr;
    if (HWLEX_match(&state, &token, &cursor) != HWLEX_WORD) continue;
    const auto length = static_cast<uint32_t>(nextToken(state, cursor) - begin);
    const bool quoted = (lexStep(*begin) & stepQuote) != 0; // is never split
    word = {begin, quoted ? length : lexPieceLength(begin, length)};
    if (word.length < length) text.token = begin;
    return begin + word.length;
  }
  return nullptr;
}

const char *lexSkipText(LexText &text, const char *at) {
  const char *run = at; // where the word characters begin that `at` is among; each 250 of them are a token
  for (;;) {
    const char *const found = nextNotable(text, at);
    const char *begin = found;
    while (begin > at && lexClass(begin[-1]) == lexWord)
      --begin;
    if (begin > at) run = begin;
    const auto before = static_cast<uint32_t>((found - run) % HWLEX_LIMIT); // of the token's bytes
    if (before == 0 || (lexStep(*found) & stepElse) != 0) return found;
    if (*found == '<' && found[-1] == '>') {
      text.token = found - before;
      return found;
    }
    at = found + 1;
  }
}
