// The word splitter. Looks ahead by at most two characters, which it keeps in the state, so that every character of
// the text ends up in exactly one token.
#include "plugin/input/gltLex.h"

#include <cstring>

#include "plugin/input/gltLexBytes.h"

#ifdef __clang__
#define TAVREL_UNROLL _Pragma("unroll(4)")
#else
#define TAVREL_UNROLL _Pragma("GCC unroll 4")
#endif

namespace {

/// The token being collected: its bytes go from the text into the state.
struct Token {
  HWLEX_STATE *state;
  const uint8_t *from; ///< the next byte of the text
  int length;

  uint8_t next() const { return *from; }
  bool full() const { return length >= HWLEX_LIMIT; }
  void take() { state->text[length++] = static_cast<char>(*from++); }
  void takeBlanks() {
    while (!full() && lexClasses[next()] == lexBlank)
      take();
  }

  /// Ends the token; the byte behind it waits in the look-ahead.
  int32_t finish(int32_t kind, char **cursor) const {
    state->text[length] = 0;
    state->pending1 = next();
    *cursor = reinterpret_cast<char *>(const_cast<uint8_t *>(from)) + (next() != 0 ? 1 : 0);
    return kind;
  }
};

/// A quoted word holds blanks and anything else, until its closing character stands before a non-word character.
int32_t matchQuotedWord(Token token, uint8_t closing, char **cursor) {
  while (!token.full() && token.next() != 0 && (token.next() != closing || lexIsWord(token.from[1])))
    token.take();
  while (!token.full() && lexIsWord(token.next()))
    token.take();
  return token.finish(HWLEX_WORD, cursor);
}

/// Blanks, if there are any, before the first line feed, and everything behind it.
int32_t matchLineBreaks(Token token, char **cursor) {
  int32_t kind = HWLEX_NEWLINE;
  if (token.state->text[0] != '\n') {
    token.takeBlanks();
    token.take();
  }
  int afterLast = token.length;
  token.takeBlanks();
  while (!token.full() && token.next() == '\n') {
    kind = HWLEX_PARA;
    token.take();
    afterLast = token.length;
    token.takeBlanks();
  }
  const int blanks = token.length - afterLast;
  if (blanks == 0) return token.finish(kind, cursor);
  // The blanks behind the last line feed are a token of their own, for the next call.
  HWLEX_STATE *state = token.state;
  memcpy(state->pendingText, state->text + afterLast, static_cast<size_t>(blanks));
  state->pendingText[blanks] = 0;
  token.length = afterLast;
  token.finish(kind, cursor);
  state->pending2 = state->pending1;
  state->pending1 = HWLEX_SPACE;
  return kind;
}

/// A character that waits in the look-ahead comes before those of the text.
int32_t matchPunctuation(Token token, char **cursor) {
  const int32_t waiting = token.state->pending1;
  if (waiting != 0) {
    token.state->text[token.length] = 0;
    if (!lexContinuesPunctuation(waiting)) return HWLEX_PUNCT;
    token.state->text[token.length++] = static_cast<char>(waiting);
  }
  while (!token.full() && lexContinuesPunctuation(token.next()))
    token.take();
  return token.finish(HWLEX_PUNCT, cursor);
}

/// Tokens that are more than a run of bytes of one class; the first byte is stored.
[[gnu::noinline]] int32_t matchSpecial(HWLEX_STATE *state, char **cursor) {
  if (state->pending1 != 0) {
    state->pending1 = state->pending2;
    state->pending2 = 0;
  }
  const Token token = {state, reinterpret_cast<uint8_t *>(*cursor), 1};
  const auto first = static_cast<uint8_t>(state->text[0]);
  if (first == '\'' || first == '(') return matchQuotedWord(token, first == '(' ? ')' : first, cursor);
  return lexClasses[first] == lexPunctuation ? matchPunctuation(token, cursor) : matchLineBreaks(token, cursor);
}

/// The class of bytes that a token is a run of, by its first byte; 0 for what is special from the start.
constexpr std::array<uint8_t, 256> runs = [] {
  std::array<uint8_t, 256> classes = lexClasses;
  for (const char c : {'\0', '!', '\'', '('})
    classes[static_cast<size_t>(c)] = 0;
  return classes;
}();

/// Whether a run of blanks or line feeds turns out to be part of something longer.
bool isLineBreaks(uint8_t run, size_t more, uint8_t next) {
  if (run == lexBlank) return next == '\n' && more < HWLEX_LIMIT - 1;
  return run == lexLineFeed && (more != 0 || lexClasses[next] == lexBlank);
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

// Most tokens of a highlight file are one or two bytes long. What costs is jumps: the common way has as few as can be,
// and short runs are taken without one.
int32_t HWLEX_match(HWLEX_STATE *state, char **text, char **cursor) {
  int32_t c = state->pending1;
  if (c > UINT8_MAX) [[unlikely]] {
    *text = c == HWLEX_SPACE ? state->pendingText : &state->empty;
    state->pending1 = state->pending2;
    state->pending2 = 0;
    return c;
  }
  if (c == 0) [[unlikely]]
    c = getch(cursor);
  *text = state->text;
  state->text[0] = static_cast<char>(c);
  const uint8_t run = runs[static_cast<size_t>(c)];
  if (run == 0) [[unlikely]]
    return matchSpecial(state, cursor);

  const auto *from = reinterpret_cast<uint8_t *>(*cursor);
  char *to = state->text + 1;
  size_t more = 0;
  uint8_t next = *from;
  TAVREL_UNROLL
  while (more < HWLEX_LIMIT - 1) {
    if (lexClasses[next] != run) [[unlikely]]
      break;
    to[more] = static_cast<char>(next);
    next = from[++more];
  }
  if (run >= lexLineFeed) [[unlikely]]
    if (isLineBreaks(run, more, next)) return matchSpecial(state, cursor);
  to[more] = 0;
  state->pending1 = next;
  state->pending2 = 0;
  *cursor += more + (next != 0 ? 1 : 0);
  return run + lexKinds;
}
