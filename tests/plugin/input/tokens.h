// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Text to tokens, for tests: drives the lexer to the end of a text and collects what it returns.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "plugin/input/gltLex.h"

struct Token {
  int32_t kind;
  std::string text;
  bool operator==(const Token &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const Token &token) {
  return out << token.kind << " \"" << token.text << '"';
}

using Tokens = std::vector<Token>;

/// The lexer over a text in a separate block of memory, so that a sanitizer detects every read beyond it.
class Lexer {
public:
  explicit Lexer(const std::string &text) : text_(text.begin(), text.end()) {
    text_.push_back('\0');
    text_.shrink_to_fit();
    cursor = text_.data();
    HWLEX_reset(&state);
  }

  Token next() {
    char *text = nullptr;
    const int32_t kind = HWLEX_match(&state, &text, &cursor);
    return {kind, text};
  }

  /// Whether neither the text nor the look-ahead has bytes left.
  bool atEnd() const { return *cursor == '\0' && state.pending1 == 0; }

  HWLEX_STATE state = {};
  char *cursor;

private:
  std::vector<char> text_;
};

inline Tokens tokensOf(const std::string &text) {
  Lexer lexer(text);
  Tokens tokens;
  while (!lexer.atEnd())
    tokens.push_back(lexer.next());
  return tokens;
}

inline std::string times(int count, const std::string &text) {
  std::string repeated;
  for (int i = 0; i < count; ++i)
    repeated += text;
  return repeated;
}
