// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The words of a highlight file, where they are in the text: the first step of reading it (gltParse.cpp).
//
// They are the words that HWLEX_match returns, in the same order, with one difference: where tags are joined, a word is
// split before every '<' that follows a '>', so that "/><loc" gives the pieces "/>" and "<loc". A token has at most 250
// bytes (HWLEX_LIMIT), which its pieces share: after a tag of 248 bytes, the joined "<loc" gives "<l", and the next
// token begins with "oc".
//
// lexNextWord is the fast path: it finds plain words, which nearly all words of a highlight file are, without the lexer
// and without a copy. It calls the lexer (lexNextByLexer) for words that are not plain: quoted words, sentence ends
// with the word after them, and a word at the end of the text, which the lexer may not return ("c" in "a=b c",
// HWLEX_match).
#pragma once

#include <array>
#include <cstdint>
#include <limits>

#include "plugin/input/gltLexBytes.h"
#include "plugin/util/shortLoop.h"

/// Belongs to the text.
struct LexWord {
  const char *begin;
  uint32_t length;
};

/// A text that is being read.
struct LexText {
  const char *begin;
  const char *end;   ///< a NUL is here; the text may end before, at an earlier NUL
  const char *token; ///< where the token begins that the next word is a further piece of; null when it is none
};

/// The kinds of bytes that the fast path distinguishes. It skips bytes that are none of these.
enum LexStep : uint8_t {
  stepThrough = 1, ///< a word character but '<'
  stepOpening = 2, ///< '<', before which a word may be split
  stepQuote = 4,   ///< begins a quoted word; inside of other words it is a word character
  stepElse = 8,    ///< the end of the text, or of a sentence
};

inline constexpr std::array<uint8_t, 256> lexSteps = [] {
  std::array<uint8_t, 256> steps{};
  for (size_t c = 0; c < steps.size(); ++c)
    steps[c] = lexClasses[c] == lexWord ? stepThrough : 0;
  steps['<'] = stepOpening;
  steps['\''] = steps['('] = stepThrough | stepQuote;
  steps['!'] = steps[0] = stepElse;
  return steps;
}();

inline uint8_t lexStep(char byte) { return lexSteps[static_cast<uint8_t>(byte)]; }

/// The first byte that is not stepped over.
inline const char *lexStepOver(const char *at) {
  SHORT_LOOP
  while (lexStep(*at) == 0)
    ++at;
  return at;
}

/// How many bytes a piece has that begins at `at`: word characters up to a '<' that follows a '>', `capacity` at most.
inline uint32_t lexPieceLength(const char *at, uint32_t capacity) {
  uint32_t length = 1;
  SHORT_LOOP
  for (; length < capacity; ++length)
    if ((lexStep(at[length]) & stepThrough) == 0 && (at[length] != '<' || at[length - 1] == '>')) break;
  return length;
}

/// The remaining capacity of the token that the next word belongs to, when that word begins at `at`.
inline uint32_t lexCapacity(const LexText &text, const char *at) {
  return text.token != nullptr ? HWLEX_LIMIT - static_cast<uint32_t>(at - text.token) : HWLEX_LIMIT;
}

/// Does what lexNextWord does, for any word, where a token begins at `at`.
const char *lexNextByLexer(LexText &text, const char *at, LexWord &word);

/// Takes the next word from `at` on, where the word before ended, or the text begins. Returns where it ends; null when
/// there is none.
inline const char *lexNextWord(LexText &text, const char *at, LexWord &word) {
  at = lexStepOver(at);
  if ((lexStep(*at) & (stepQuote | stepElse)) != 0) [[unlikely]]
    return lexNextByLexer(text, at, word);
  const uint32_t capacity = lexCapacity(text, at), length = lexPieceLength(at, capacity);
  const char *const end = at + length;
  if (*end == 0 && text.token == nullptr) [[unlikely]]
    return lexNextByLexer(text, at, word);
  if (*end != '<' || length == capacity)
    text.token = nullptr;
  else if (text.token == nullptr)
    text.token = at;
  word = {at, length};
  return end;
}

/// Skips words that do not begin with '<'. `at` is where the word before ended. Returns the position to continue at: no
/// word that begins with '<' has been skipped, but the next word may begin otherwise. A further piece is never skipped:
/// it begins with '<'.
const char *lexSkipText(LexText &text, const char *at);

/// Numbers with more digits are not read by lexDigits.
inline constexpr int32_t lexNumberLimit = std::numeric_limits<int32_t>::digits10;

/// Reads a run of digits; returns where it ends. Null where there is none, or one longer than the limit.
inline const char *lexDigits(const char *at, int32_t &number) {
  const auto digitOf = [](char c) { return static_cast<uint8_t>(c) - uint32_t{'0'}; };
  const char *const first = at;
  uint32_t value = 0;
  SHORT_LOOP
  for (; digitOf(*at) <= 9; ++at) {
    if (at - first == lexNumberLimit) return nullptr;
    value = value * 10 + digitOf(*at);
  }
  number = static_cast<int32_t>(value);
  return at != first ? at : nullptr;
}
