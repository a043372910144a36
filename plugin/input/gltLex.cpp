// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The lexer. It looks ahead by at most two characters and keeps them in the state, so that every character of the text
// ends up in exactly one token.
#include "plugin/input/gltLex.h"

#include <cstring>

#include "plugin/input/gltLexBytes.h"
#include "plugin/util/shortLoop.h"

namespace {

bool continuesPunctuation(int32_t c) { return c == '!' || c == '.' || c == '?' || c == ' ' || c == '\t'; }

/// The token being collected: its bytes are copied from the text into the state.
struct Token {
  HWLEX_STATE *state;
  const char *rest; ///< the next byte of the text
  uint32_t length;

  bool full() const { return length >= HWLEX_LIMIT; }
  void take(uint32_t count) {
    memcpy(state->text + length, rest, count);
    length += count;
    rest += count;
  }
  void takeSpaces() {
    while (!full() && lexClass(*rest) == lexSpace)
      take(1);
  }

  /// Ends the token; the byte after it waits in the look-ahead.
  int32_t finish(int32_t kind, char **cursor) const {
    state->text[length] = 0;
    state->pending1 = static_cast<uint8_t>(*rest);
    *cursor = const_cast<char *>(rest) + (*rest != 0 ? 1 : 0);
    return kind;
  }
};

/// The length of a quoted word that consists of `first` and the beginning of `rest`: it may hold any byte, and ends
/// where its closing character is followed by a non-word character.
uint32_t quotedLength(char first, const char *rest) {
  const char closing = first == '(' ? ')' : first;
  uint32_t length = 1;
  for (; length < HWLEX_LIMIT && *rest != 0; ++length, ++rest)
    if (*rest == closing && lexClass(rest[1]) != lexWord) break;
  for (; length < HWLEX_LIMIT && lexClass(*rest) == lexWord; ++rest)
    ++length;
  return length;
}

/// Matches the spaces before the first line feed, if any, and the spaces and line feeds after it.
int32_t matchLineBreaks(Token token, char **cursor) {
  HWLEX_STATE *state = token.state;
  int32_t kind = HWLEX_NEWLINE;
  if (state->text[0] != '\n') {
    token.takeSpaces();
    token.take(1);
  }
  uint32_t afterLast = token.length;
  token.takeSpaces();
  while (!token.full() && *token.rest == '\n') {
    kind = HWLEX_PARA;
    token.take(1);
    afterLast = token.length;
    token.takeSpaces();
  }
  const uint32_t spaces = token.length - afterLast;
  if (spaces == 0) return token.finish(kind, cursor);
  // The spaces after the last line feed are a separate token, for the next call.
  memcpy(state->pendingText, state->text + afterLast, spaces);
  state->pendingText[spaces] = 0;
  token.length = afterLast;
  token.finish(kind, cursor);
  state->pending2 = state->pending1;
  state->pending1 = HWLEX_SPACE;
  return kind;
}

/// Matches a sentence end. A character in the look-ahead comes before those of the text.
int32_t matchPunctuation(Token token, char **cursor) {
  const int32_t waiting = token.state->pending1;
  if (waiting != 0) {
    token.state->text[token.length] = 0;
    if (!continuesPunctuation(waiting)) return HWLEX_PUNCT;
    token.state->text[token.length++] = static_cast<char>(waiting);
  }
  uint32_t more = 0;
  while (token.length + more < HWLEX_LIMIT && continuesPunctuation(token.rest[more]))
    ++more;
  token.take(more);
  return token.finish(HWLEX_PUNCT, cursor);
}

/// Matches tokens that are not just a run of bytes of one class; the first byte is stored already.
[[gnu::noinline]] int32_t matchSpecial(HWLEX_STATE *state, char **cursor) {
  if (state->pending1 != 0) {
    state->pending1 = state->pending2;
    state->pending2 = 0;
  }
  Token token = {state, *cursor, 1};
  switch (lexClass(state->text[0])) {
  case lexWord:
    token.take(quotedLength(state->text[0], token.rest) - 1);
    return token.finish(HWLEX_WORD, cursor);
  case lexPunctuation:
    return matchPunctuation(token, cursor);
  default:
    return matchLineBreaks(token, cursor);
  }
}

/// By a token's first byte: the class of bytes that the token is a run of; 0 for tokens that matchSpecial matches.
constexpr std::array<uint8_t, 256> runs = [] {
  std::array<uint8_t, 256> classes = lexClasses;
  classes[0] = classes['!'] = classes['\''] = classes['('] = 0;
  return classes;
}();

/// Whether a run of spaces or line feeds is part of a longer token of line breaks.
bool isLineBreaks(uint8_t run, size_t more, char next) {
  if (run == lexSpace) return next == '\n' && more < HWLEX_LIMIT - 1;
  return more != 0 || lexClass(next) == lexSpace;
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

// Most tokens of a highlight file are one or two bytes long, and jumps cost the most: the common path has as few as
// possible, and short runs are taken without one.
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

  const char *from = *cursor;
  char *to = state->text + 1;
  uint32_t more = 0;
  char next = *from;
  SHORT_LOOP
  while (more < HWLEX_LIMIT - 1) {
    if (lexClass(next) != run) [[unlikely]]
      break;
    to[more] = next;
    next = from[++more];
  }
  if (run >= lexLineFeed) [[unlikely]]
    if (isLineBreaks(run, more, next)) return matchSpecial(state, cursor);
  to[more] = 0;
  state->pending1 = static_cast<uint8_t>(next);
  state->pending2 = 0;
  *cursor += more + (next != 0 ? 1 : 0);
  return run + lexKinds;
}
