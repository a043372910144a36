// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The lexer: splits 8-bit text into words, spaces, line breaks, sentence ends and other characters. It is a general
// word splitter; tags of a highlight file such as "<Body" and "</XML>" are single words to it.
//
// The reader of highlight files does not call the lexer for every token: gltWords.h finds plain words itself and calls
// the lexer for all others.
#pragma once

#include <cstdint>

/// Kinds of token.
enum HWLEX_KIND : int32_t {
  HWLEX_PARA = 301,  ///< line breaks: two line feeds or more, with the white space between them
  HWLEX_PUNCT = 302, ///< the end of a sentence
  HWLEX_WORD = 303,
  HWLEX_OTHER = 304,
  HWLEX_NEWLINE = 305, ///< a line break: exactly one line feed
  HWLEX_SPACE = 306,   ///< white space without a line feed
};

/// A token has at most this many bytes. A longer run is split: the rest of it is the next token.
inline constexpr int HWLEX_LIMIT = 250;

/// The lexer's look-ahead, from one call to the next. Belongs to the caller.
struct HWLEX_STATE {
  uint8_t mode;
  char pendingText[1024]; ///< the token 306 that `pending1` announces
  char text[1024];        ///< the token just returned
  int32_t pending1;       ///< the next character, already read, or 306; 0 is none
  int32_t pending2;       ///< the character after pending1; 0 is none
  char empty;             ///< always 0
};

static_assert(sizeof HWLEX_STATE::text > HWLEX_LIMIT && sizeof HWLEX_STATE::pendingText > HWLEX_LIMIT);

/// The byte at the cursor, which moves on; 0 at the end of the text, where it stays.
int32_t getch(char **cursor);

/// Moves the cursor back by a byte.
void ungetch(char **cursor);

/// To be called before the first token of a text. Returns 0.
int32_t HWLEX_reset(HWLEX_STATE *state);

/// The kind of the next token. Its text lies in the state, ends in NUL and is valid until the next call. With the
/// cursor at the end of the text the kind is 302 and the text empty: test the cursor first.
///
/// After a call the cursor is one byte after the token: the lexer has read that byte to see that the token ends. A
/// caller that stops when the cursor is at the end therefore never gets a last token of one byte, unless it is also the
/// first token: "a=b c" yields "a", "=", "b" and " ", but never "c", because the cursor is at the end once " " is
/// known to end.
int32_t HWLEX_match(HWLEX_STATE *state, char **text, char **cursor);
