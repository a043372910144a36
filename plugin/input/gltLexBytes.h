// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The class of every byte, for the lexer (gltLex.cpp) and for the reader's fast path (gltWords.h).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "plugin/input/gltLex.h"

inline constexpr int32_t lexKinds = 300;

/// The kind of token (HWLEX_KIND minus `lexKinds`) that a byte begins: a word, a space, a line feed, another character,
/// or, for '!' and for the NUL that ends the text, the end of a sentence. The set of word characters is fixed: it
/// makes a tag such as "</XML>" one word.
enum HWLEX_CLASS : uint8_t {
  lexPunctuation = HWLEX_PUNCT - lexKinds,
  lexWord = HWLEX_WORD - lexKinds,
  lexOther = HWLEX_OTHER - lexKinds,
  lexLineFeed = HWLEX_NEWLINE - lexKinds,
  lexSpace = HWLEX_SPACE - lexKinds,
};

inline constexpr std::array<uint8_t, 256> lexClasses = [] {
  std::array<uint8_t, 256> classes{};
  const auto set = [&classes](uint8_t value, int first, int last) {
    for (int c = first; c <= last; ++c)
      classes[static_cast<size_t>(c)] = value;
  };
  set(lexOther, 0, 255);
  for (const auto &[first, last] : {std::array{'A', 'Z'}, {'a', 'z'}, {'0', '9'}})
    set(lexWord, first, last);
  for (const char c : {'`', '\'', '?', '-', '*', '{', '}', '<', '>', '.', '_', '#', '&', '(', ')', '/'})
    set(lexWord, c, c);
  for (const auto &[first, last] :
       {std::array{0x14, 0x15}, {0x80, 0xA5}, {0xB5, 0xB8}, {0xBD, 0xBE}, {0xC6, 0xC7}, {0xCF, 0xD8}, {0xE0, 0xED}})
    set(lexWord, first, last);
  for (const char c : {' ', '\t', '\v', '\f', '\r'})
    set(lexSpace, c, c);
  set(lexLineFeed, '\n', '\n');
  set(lexPunctuation, '!', '!');
  set(lexPunctuation, 0, 0);
  return classes;
}();

constexpr uint8_t lexClass(char byte) { return lexClasses[static_cast<uint8_t>(byte)]; }
