// The word splitter. Looks ahead by at most two characters, which it keeps in the state, so that every character of
// the text ends up in exactly one token.
#include "plugin/input/gltLex.h"

#include <array>
#include <cstring>

namespace {

constexpr int32_t lineFeed = 10;

/// Word characters. The set is fixed, odd members included: it is what makes a tag one word.
constexpr std::array<bool, 256> wordClass = [] {
  std::array<bool, 256> is{};
  const auto add = [&is](int first, int last) {
    for (int c = first; c <= last; ++c)
      is[static_cast<size_t>(c)] = true;
  };
  add('A', 'Z');
  add('a', 'z');
  add('0', '9');
  for (const char c : {'`', '\'', '?', '-', '*', '{', '}', '<', '>', '.', '_', '#', '&', '(', ')', '/'})
    add(c, c);
  add(0x14, 0x15);
  add(0x80, 0xA5);
  add(0xB5, 0xB8);
  add(0xBD, 0xBE);
  add(0xC6, 0xC7);
  add(0xCF, 0xD8);
  add(0xE0, 0xED);
  return is;
}();

bool isWord(int32_t c) { return wordClass[static_cast<uint8_t>(c)]; }

bool isBlank(int32_t c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// The end of the text counts, as a terminator does in a string.
bool isSentenceEnd(int32_t c) { return c == '.' || c == '?' || c == '!' || c == 0; }

bool continuesPunctuation(int32_t c) { return isSentenceEnd(c) || c == ' ' || c == '\t'; }

/// The token being collected.
struct Token {
  HWLEX_STATE *state;
  int length;

  void store(int32_t c) { state->text[length++] = static_cast<char>(c); }
  bool full() const { return length >= HWLEX_LIMIT; }
  int32_t finish(int32_t kind, int32_t next) {
    state->text[length] = 0;
    state->pending1 = next;
    return kind;
  }
};

int32_t matchWord(Token token, int32_t c, char **cursor) {
  // A quoted word holds blanks and anything else, until its closing character stands before a non-word character.
  const int32_t closing = c == '\'' ? '\'' : c == '(' ? ')' : 0;
  bool quoted = closing != 0;
  do {
    token.store(c);
    c = getch(cursor);
    if (quoted && (c == 0 || (c == closing && !isWord(static_cast<uint8_t>(**cursor))))) quoted = false;
  } while (!token.full() && (isWord(c) || quoted));
  return token.finish(HWLEX_WORD, c);
}

int32_t matchLineBreaks(Token token, int32_t c, char **cursor) {
  int32_t kind = HWLEX_NEWLINE;
  token.store(c);
  int afterLast = token.length;
  c = getch(cursor);
  while (isBlank(c) && !token.full()) {
    token.store(c);
    if (c == lineFeed) {
      afterLast = token.length;
      kind = HWLEX_PARA;
    }
    c = getch(cursor);
  }
  if (token.length == afterLast) return token.finish(kind, c);
  // The blanks behind the last line feed are a token of their own, for the next call.
  HWLEX_STATE *state = token.state;
  const int rest = token.length - afterLast;
  memcpy(state->pendingText, state->text + afterLast, static_cast<size_t>(rest));
  state->pendingText[rest] = 0;
  state->pending2 = c;
  token.length = afterLast;
  return token.finish(kind, HWLEX_SPACE);
}

int32_t matchBlanks(Token token, int32_t c, char **cursor) {
  while (isBlank(c) && !token.full()) {
    if (c == lineFeed) return matchLineBreaks(token, c, cursor);
    token.store(c);
    c = getch(cursor);
  }
  return token.finish(HWLEX_SPACE, c);
}

int32_t matchPunctuation(Token token, int32_t c, char **cursor) {
  token.store(c);
  c = token.state->pending1 != 0 ? token.state->pending1 : getch(cursor);
  token.state->pending1 = 0;
  while (continuesPunctuation(c) && !token.full()) {
    token.store(c);
    c = getch(cursor);
  }
  return token.finish(HWLEX_PUNCT, c);
}

int32_t matchOther(Token token, int32_t c, char **cursor) {
  do {
    token.store(c);
    c = getch(cursor);
  } while (!token.full() && !isWord(c) && !isBlank(c) && !isSentenceEnd(c));
  return token.finish(HWLEX_OTHER, c);
}

} // namespace

int32_t getch(char **cursor) {
  const auto c = static_cast<uint8_t>(**cursor);
  if (c != 0) ++*cursor;
  return c;
}

void ungetch(char **cursor) { --*cursor; }

int32_t HWLEX_reset(HWLEX_STATE *state) {
  state->mode = 128;
  state->empty = 0;
  state->pending1 = 0;
  state->pending2 = 0;
  return 0;
}

int32_t HWLEX_match(HWLEX_STATE *state, char **text, char **cursor) {
  int32_t c;
  if (state->pending1 != 0) {
    c = state->pending1;
    state->pending1 = state->pending2;
    state->pending2 = 0;
    if (c == HWLEX_SPACE) {
      *text = state->pendingText;
      return HWLEX_SPACE;
    }
  } else {
    c = getch(cursor);
  }
  if (c > 255) {
    *text = &state->empty;
    return c;
  }
  *text = state->text;
  const Token token = {state, 0};
  if (isWord(c)) return matchWord(token, c, cursor);
  if (isBlank(c)) return matchBlanks(token, c, cursor);
  if (isSentenceEnd(c)) return matchPunctuation(token, c, cursor);
  return matchOther(token, c, cursor);
}
