// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The word splitter's cursor, its state and the class of every byte.
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "plugin/input/gltLex.h"
#include "tests/plugin/input/tokens.h"

namespace {

/// The bytes that words are made of.
std::set<int> wordBytes() {
  std::set<int> bytes = {0x14, 0x15, 0xBD, 0xBE, 0xC6, 0xC7};
  for (const char c : std::string("`'?-*{}<>._#&()/0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"))
    bytes.insert(c);
  for (const auto &[first, last] : {std::pair{0x80, 0xA5}, {0xB5, 0xB8}, {0xCF, 0xD8}, {0xE0, 0xED}})
    for (int byte = first; byte <= last; ++byte)
      bytes.insert(byte);
  return bytes;
}

int32_t kindOf(int byte) {
  static const std::set<int> words = wordBytes();
  if (words.contains(byte)) return HWLEX_WORD;
  if (byte == '\n') return HWLEX_NEWLINE;
  if (strchr(" \t\v\f\r", byte) != nullptr) return HWLEX_SPACE;
  return byte == '!' ? HWLEX_PUNCT : HWLEX_OTHER;
}

TEST(LexerBytes, EveryByteStartsATokenOfItsClass) {
  for (int byte = 1; byte <= 0xFF; ++byte)
    EXPECT_EQ(tokensOf(std::string(1, static_cast<char>(byte))),
              (Tokens{{kindOf(byte), std::string(1, static_cast<char>(byte))}}))
        << "byte " << byte;
}

TEST(LexerBytes, OnlyWordBytesContinueAWord) {
  for (int byte = 1; byte <= 0xFF; ++byte) {
    const std::string text = std::string("a") + static_cast<char>(byte);
    const Tokens joined = {{HWLEX_WORD, text}}, apart = {{HWLEX_WORD, "a"}, {kindOf(byte), text.substr(1)}};
    EXPECT_EQ(tokensOf(text), kindOf(byte) == HWLEX_WORD ? joined : apart) << "byte " << byte;
  }
}

TEST(LexerBytes, OnlyOtherBytesContinueARunOfOthers) {
  for (int byte = 1; byte <= 0xFF; ++byte) {
    const std::string text = std::string("=") + static_cast<char>(byte);
    const Tokens joined = {{HWLEX_OTHER, text}}, apart = {{HWLEX_OTHER, "="}, {kindOf(byte), text.substr(1)}};
    EXPECT_EQ(tokensOf(text), kindOf(byte) == HWLEX_OTHER ? joined : apart) << "byte " << byte;
  }
}

TEST(LexerBytes, OnlySentenceBytesContinueASentenceEnd) {
  for (int byte = 1; byte <= 0xFF; ++byte) {
    const std::string text = std::string("!") + static_cast<char>(byte);
    const bool joins = strchr(".?! \t", byte) != nullptr;
    const Tokens joined = {{HWLEX_PUNCT, text}}, apart = {{HWLEX_PUNCT, "!"}, {kindOf(byte), text.substr(1)}};
    EXPECT_EQ(tokensOf(text), joins ? joined : apart) << "byte " << byte;
  }
}

TEST(LexerBytes, OnlyApostropheAndParenthesisOpenAQuotedWord) {
  for (const int byte : wordBytes()) {
    const std::string first(1, static_cast<char>(byte)), text = first + "a b";
    const bool quotes = byte == '\'' || byte == '(';
    const Tokens quoted = {{HWLEX_WORD, text}},
                 apart = {{HWLEX_WORD, first + "a"}, {HWLEX_SPACE, " "}, {HWLEX_WORD, "b"}};
    EXPECT_EQ(tokensOf(text), quotes ? quoted : apart) << "byte " << byte;
  }
}

TEST(LexerCursor, GetchReturnsUnsignedBytes) {
  char text[] = "a\xFF";
  char *cursor = text;
  EXPECT_EQ(getch(&cursor), 'a');
  EXPECT_EQ(getch(&cursor), 0xFF);
  EXPECT_EQ(cursor, text + 2);
}

TEST(LexerCursor, GetchStaysAtTheEnd) {
  char text[] = "";
  char *cursor = text;
  EXPECT_EQ(getch(&cursor), 0);
  EXPECT_EQ(getch(&cursor), 0);
  EXPECT_EQ(cursor, text);
}

TEST(LexerCursor, UngetchStepsBack) {
  char text[] = "ab";
  char *cursor = text;
  getch(&cursor);
  getch(&cursor);
  ungetch(&cursor);
  EXPECT_EQ(cursor, text + 1);
}

TEST(LexerState, ResetClearsTheLookAheadAndLeavesTheTexts) {
  HWLEX_STATE state;
  memset(&state, 'x', sizeof state);
  EXPECT_EQ(HWLEX_reset(&state), 0);
  EXPECT_EQ(state.mode, 128);
  EXPECT_EQ(state.empty, 0);
  EXPECT_EQ(state.pending1, 0);
  EXPECT_EQ(state.pending2, 0);
  EXPECT_EQ(std::string(state.text, 3), "xxx");
  EXPECT_EQ(std::string(state.pendingText, 3), "xxx");
}

TEST(LexerState, CharacterAfterATokenIsInTheLookAhead) {
  Lexer lexer("ab=c");
  EXPECT_EQ(lexer.next(), (Token{HWLEX_WORD, "ab"}));
  EXPECT_EQ(lexer.state.pending1, '=');
  EXPECT_EQ(lexer.state.pending2, 0);
  EXPECT_EQ(std::string(lexer.cursor), "c");
}

TEST(LexerState, LookAheadIsEmptyWhenALineBreakEndsTheRun) {
  Lexer lexer(" \nb");
  EXPECT_EQ(lexer.next(), (Token{HWLEX_NEWLINE, " \n"}));
  EXPECT_EQ(lexer.state.pending1, 'b');
  EXPECT_EQ(lexer.state.pending2, 0);
}

TEST(LexerState, SpacesAfterALineBreakArePendingAsASeparateToken) {
  Lexer lexer("\n \tb");
  EXPECT_EQ(lexer.next(), (Token{HWLEX_NEWLINE, "\n"}));
  EXPECT_EQ(lexer.state.pending1, HWLEX_SPACE);
  EXPECT_EQ(lexer.state.pending2, 'b');
  EXPECT_STREQ(lexer.state.pendingText, " \t");
  EXPECT_EQ(lexer.next(), (Token{HWLEX_SPACE, " \t"}));
  EXPECT_EQ(lexer.state.pending1, 'b');
  EXPECT_EQ(lexer.state.pending2, 0);
}

TEST(LexerState, PendingSpacesAreOfTheirLineBreakAlone) {
  EXPECT_EQ(tokensOf("abcdefghij\n   x\n y"), (Tokens{{HWLEX_WORD, "abcdefghij"},
                                                      {HWLEX_NEWLINE, "\n"},
                                                      {HWLEX_SPACE, "   "},
                                                      {HWLEX_WORD, "x"},
                                                      {HWLEX_NEWLINE, "\n"},
                                                      {HWLEX_SPACE, " "},
                                                      {HWLEX_WORD, "y"}}));
}

TEST(LexerState, HighByteIsPendingUnsigned) {
  Lexer lexer("a\xFFz");
  lexer.next();
  EXPECT_EQ(lexer.state.pending1, 0xFF);
  EXPECT_EQ(lexer.next(), (Token{HWLEX_OTHER, "\xFF"}));
}

TEST(LexerState, UnknownPendingCodeComesBackWithEmptyText) {
  Lexer lexer("a");
  lexer.state.pending1 = 400;
  EXPECT_EQ(lexer.next(), (Token{400, ""}));
  EXPECT_EQ(lexer.next(), (Token{HWLEX_WORD, "a"}));
}

TEST(LexerState, SentenceEndContinuesWithWhatIsPending) {
  Lexer lexer("a");
  lexer.state.pending1 = '!';
  lexer.state.pending2 = '!';
  EXPECT_EQ(lexer.next(), (Token{HWLEX_PUNCT, "!!"}));
  EXPECT_EQ(lexer.state.pending2, 0);
  EXPECT_EQ(lexer.next(), (Token{HWLEX_WORD, "a"}));
}

TEST(LexerState, SentenceEndStopsBeforeWhatIsPendingAndDoesNotBelongToIt) {
  Lexer lexer("a");
  lexer.state.pending1 = '!';
  lexer.state.pending2 = 'x';
  memset(lexer.state.text, 'q', sizeof lexer.state.text); // as an earlier token leaves it
  EXPECT_EQ(lexer.next(), (Token{HWLEX_PUNCT, "!"}));
  EXPECT_EQ(lexer.next(), (Token{HWLEX_WORD, "xa"}));
}

TEST(LexerState, EndOfTheTextReadsAsAnEmptySentenceEnd) {
  Lexer lexer("");
  EXPECT_EQ(lexer.next(), (Token{HWLEX_PUNCT, ""}));
  EXPECT_EQ(lexer.next(), (Token{HWLEX_PUNCT, ""}));
}

TEST(LexerState, TextIsInTheStateUntilTheNextCall) {
  Lexer lexer("ab cd");
  char *text = nullptr;
  HWLEX_match(&lexer.state, &text, &lexer.cursor);
  EXPECT_EQ(text, lexer.state.text);
}

TEST(LexerState, NothingAfterANulIsRead) { EXPECT_EQ(tokensOf(std::string("a\0b", 3)), (Tokens{{HWLEX_WORD, "a"}})); }

TEST(LexerState, NulEndsEveryKindOfRun) {
  for (const char *run : {"a", "'a", "=", " ", "\n", "\n ", "!"}) {
    std::string joined;
    for (const Token &token : tokensOf(std::string(run) + '\0' + "xyz"))
      joined += token.text;
    EXPECT_EQ(joined, run);
  }
}

TEST(LexerState, EveryCharacterEndsUpInOneToken) {
  std::string text, joined;
  for (int i = 0; i < 4000; ++i)
    text += "ab1'( )=\"!?.\n\n \t\r#<>/\xE4\xFF"[i * i % 23];
  for (const Token &token : tokensOf(text)) {
    EXPECT_LE(token.text.size(), static_cast<size_t>(HWLEX_LIMIT));
    joined += token.text;
  }
  EXPECT_EQ(joined, text);
}

} // namespace
