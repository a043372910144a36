// Splits 8-bit text into words, blanks, line breaks, sentence ends and the rest. A general word splitter, which says
// what a word of a highlight file is: tags such as "<Body" and "</XML>" are single ones. The reader of these files
// takes the same words in a quicker way (gltWords.h).
#pragma once

#include <cstdint>

/// Kinds of token.
enum HWLEX_KIND : int32_t {
  HWLEX_PARA = 301,  ///< line breaks: two line feeds or more, with the blanks between them
  HWLEX_PUNCT = 302, ///< the end of a sentence
  HWLEX_WORD = 303,
  HWLEX_OTHER = 304,
  HWLEX_NEWLINE = 305, ///< a line break: exactly one line feed
  HWLEX_SPACE = 306,   ///< blanks without a line feed
};

/// No token is longer, in bytes.
inline constexpr int HWLEX_LIMIT = 250;

/// The lexer's look-ahead, from one call to the next. Belongs to the caller.
struct HWLEX_STATE {
  uint8_t mode;
  char pendingText[1024]; ///< the token 306 that `pending1` announces
  char text[1024];        ///< the token just returned
  int32_t pending1;       ///< the next character, already read, or 306; 0 is none
  int32_t pending2;       ///< the character behind pending1; 0 is none
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
int32_t HWLEX_match(HWLEX_STATE *state, char **text, char **cursor);
