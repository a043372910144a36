// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Any bytes as a line of text.
#include "viewer/model/onelinetext.h"

#include <gmock/gmock.h>

namespace viewer {
namespace {

using testing::ElementsAre;

TEST(OneLineTest, TextIsUnchanged) {
  EXPECT_EQ(oneLine(""), "");
  EXPECT_EQ(oneLine("a \u00E4 \u6F22 \U0001F600"), "a \u00E4 \u6F22 \U0001F600");
}

TEST(OneLineTest, LineFeedsAndTabsAreSpaces) { EXPECT_EQ(oneLine("a\nb\tc"), "a b c"); }

TEST(OneLineTest, OtherControlCharactersAreLeftOut) {
  EXPECT_EQ(oneLine(std::string("a\0b\r\x1B\x7F", 6)), "ab");
  EXPECT_EQ(oneLine("a\xC2\x80\xC2\x9F\xC2\xA0"), "a\u00A0");
}

TEST(OneLineTest, BytesThatAreNoCharacterAreReplaced) {
  EXPECT_EQ(oneLine("latin\xE4.pdf"), "latin\uFFFD.pdf");
  EXPECT_EQ(oneLine("\xE6\xBC"), "\uFFFD\uFFFD");
  EXPECT_EQ(oneLine("\x80"), "\uFFFD");
}

TEST(OneLineTest, OverlongFormsSurrogatesAndNumbersBeyondUnicodeAreNoCharacters) {
  EXPECT_EQ(oneLine("\xC0\xAF"), "\uFFFD\uFFFD");
  EXPECT_EQ(oneLine("\xE0\x80\xAF"), "\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(oneLine("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(oneLine("\xF0\x8F\xBF\xBF"), "\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(oneLine("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(oneLine("\xF5"), "\uFFFD");
}

TEST(OneLineTest, ValidUtf8KeepsLinesAndControlCharacters) {
  EXPECT_EQ(validUtf8("a\n\x1B \u00E4\xE4"), "a\n\x1B \u00E4\uFFFD");
}

TEST(OneLineTest, Latin1BecomesUtf8) { EXPECT_EQ(utf8OfLatin1("Stra\xDF\x65 \x80"), "Stra\u00DFe \u0080"); }

TEST(OneLineTest, CharactersAreSeparated) {
  EXPECT_THAT(characters("a\u00E4\U0001F600"), ElementsAre("a", "\u00E4", "\U0001F600"));
}

TEST(OneLineTest, TheFirstBytesEndBetweenCharacters) {
  EXPECT_EQ(firstBytes("\u00E4\u00E4", 4), "\u00E4\u00E4");
  EXPECT_EQ(firstBytes("\u00E4\u00E4", 3), "\u00E4");
  EXPECT_EQ(firstBytes("\u00E4\u00E4", 1), "");
}

} // namespace
} // namespace viewer
