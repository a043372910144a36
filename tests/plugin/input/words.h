// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Text to words, for tests: by the lexer and by the reader's fast path, which must give the same.
#pragma once

#include "plugin/input/gltWords.h"
#include "tests/plugin/input/tokens.h"

using Words = std::vector<std::string>;

/// What the reader must find: the lexer's words until its cursor is at the end. A word that is not quoted is split
/// after every '>' that a '<' follows.
inline Words lexerWords(const std::string &text) {
  Words words;
  for (Lexer lexer(text); *lexer.cursor != '\0';) {
    const Token token = lexer.next();
    if (token.kind != HWLEX_WORD) continue;
    words.emplace_back();
    for (const char c : token.text) {
      const bool quoted = token.text[0] == '\'' || token.text[0] == '(';
      if (!quoted && c == '<' && !words.back().empty() && words.back().back() == '>') words.emplace_back();
      words.back() += c;
    }
  }
  return words;
}

inline Words onlyTags(const Words &words) {
  Words tags;
  for (const std::string &word : words)
    if (word[0] == '<') tags.push_back(word);
  return tags;
}

/// A text for the reader, up to its first NUL. It is a separate block of memory, so that a sanitizer detects every read
/// beyond its end.
class ReaderText {
public:
  explicit ReaderText(const std::string &text) : bytes_(text.c_str(), text.c_str() + text.size() + 1) {
    bytes_.shrink_to_fit();
    text_ = {bytes_.data(), bytes_.data() + text.size(), nullptr};
    at_ = text_.begin;
  }

  /// False when there is no more word.
  bool next(LexWord &word) {
    at_ = lexNextWord(text_, at_, word);
    return at_ != nullptr;
  }

  void skip() { at_ = lexSkipText(text_, at_); }

  /// Where the last word ended, as the reader says.
  const char *at() const { return at_; }

private:
  std::vector<char> bytes_;
  LexText text_;
  const char *at_;
};
