// The words that are not simply a run of word characters between others: those behind the end of a sentence, quoted
// ones, cut ones, the longest, and the last of the text.
#include "plugin/input/gltWords.h"

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
