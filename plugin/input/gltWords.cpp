// The words that are not simply a run of word characters between others: those behind the end of a sentence, quoted
// ones, cut ones, the longest, and the last of the text.
#include "plugin/input/gltWords.h"

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

/// The first byte that opens or ends something.
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

} // namespace

const char *lexSkipText(LexText &text, const char *at) {
  if (text.room != 0) return at;
  // Words are cut every HWLEX_LIMIT bytes from the beginning of a run of word characters: `run`, when `known` is in it.
  const char *known = at, *run = at;
  for (;;) {
    const char *const found = nextNotable(text, known);
    const char *begin = found;
    while (begin > known && lexClass(begin[-1]) == lexWord)
      --begin;
    if (begin > known) run = begin;
    const auto before = static_cast<uint32_t>((found - run) % HWLEX_LIMIT);
    if (before == 0 || (lexStep(*found) & stepElse) != 0) return found;
    if (*found == '<' && found[-1] == '>') {
      text.room = HWLEX_LIMIT - before;
      return found;
    }
    known = found + 1;
  }
}

const char *lexNextPiece(LexText &text, const char *at, LexWord &word) {
  if (text.room == 0) {
    while (*at == '!')
      at = lexStepOver(at + lexPunctuationLength(1, at + 1));
    if (*at == 0 || (at[1] == 0 && at != text.begin)) return nullptr;
    if ((lexStep(*at) & stepQuote) != 0) {
      word = {at, lexQuotedLength(*at, at + 1)};
      return at + word.length;
    }
    text.room = HWLEX_LIMIT;
  }
  // Up to the place between two tags, or to the end of what may be one token.
  uint32_t length = 1;
  while (length < text.room && lexClass(at[length]) == lexWord && (at[length] != '<' || at[length - 1] != '>'))
    ++length;
  const bool joined = length < text.room && at[length] == '<';
  text.room = joined ? text.room - length : 0;
  word = {at, length};
  return at + length;
}
