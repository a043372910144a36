// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Texts in UTF-8: limited to a number of bytes, checked, and made of any bytes.
#include "host/document/utf8.h"

#include <gtest/gtest.h>

#include "host/document/document.h"

namespace host {
namespace {

TEST(Utf8, ACharacterThatWasTruncatedIsLeftOut) {
  EXPECT_EQ(withoutPartOfCharacter("a\xC3"), "a");
  EXPECT_EQ(withoutPartOfCharacter("a\xE2\x80"), "a");
  EXPECT_EQ(withoutPartOfCharacter("a\xF0\x9F\x98"), "a");
  for (const char *lead : {"a\xC0", "a\xE0", "a\xE0\x80", "a\xF0\x80\x80"}) // the lowest ones
    EXPECT_EQ(withoutPartOfCharacter(lead), "a");
}

TEST(Utf8, BytesWithoutABeginningAreKept) { EXPECT_EQ(withoutPartOfCharacter("\x80\x80"), "\x80\x80"); }

TEST(Utf8, CompleteCharactersAreKept) {
  for (const char *text : {"", "a", "a\u00E4", "a\u2026", "a\U0001F600"})
    EXPECT_EQ(withoutPartOfCharacter(text), text);
}

TEST(Utf8, TheFirstBytesEndWithACompleteCharacter) {
  EXPECT_EQ(firstBytes("\u00E4\u00E4", 4), "\u00E4\u00E4");
  EXPECT_EQ(firstBytes("\u00E4\u00E4", 3), "\u00E4");
  EXPECT_EQ(firstBytes("\u00E4\u00E4", 1), "");
  EXPECT_EQ(firstBytes("\u00E4", 0), "");
}

TEST(Utf8, ALineHasPrintableCharactersOnly) {
  for (const char *line : {"", " a b ", "\u00A0\u00E4\uFFFD\U0010FFFF", "~"})
    EXPECT_TRUE(isLine(line)) << line;
  for (const char *other : {"a\nb", "\t", "\x1F", "\x7F", "\u0080", "\u009F", "\u2028", "\u2029"})
    EXPECT_FALSE(isLine(other)) << other;
  EXPECT_FALSE(isLine(std::string_view("a\0b", 3)));
}

TEST(Utf8, WhatIsNotUtf8IsNeitherALineNorLines) {
  for (const char *bytes : {"\xFF", "a\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80"}) {
    EXPECT_FALSE(isLine(bytes));
    EXPECT_FALSE(isLines(bytes));
  }
}

TEST(Utf8, LinesHaveLineFeedsAndTabsBesides) {
  EXPECT_TRUE(isLines("a\n\tb\n"));
  for (const char *other : {"a\rb", "\x1F", "\u0080", "\u2028"})
    EXPECT_FALSE(isLines(other)) << other;
}

TEST(Utf8, AnyBytesMakeALine) {
  EXPECT_EQ(lineOf(" \ta\r\nb\u2028c\xFF\xC3 \n"), "a  b c\uFFFD\uFFFD");
  EXPECT_EQ(lineOf("\n \n"), "");
  EXPECT_EQ(lineOf(std::string_view("a\0b", 3)), "a b");
  EXPECT_EQ(lineOf("\u00E4 \U0001F600"), "\u00E4 \U0001F600");
}

TEST(Utf8, AnyBytesMakeLines) { EXPECT_EQ(linesOf(" a\r\nb\rc\n\td\x07\u0085\xFF\r"), " a\nb\nc\n\td  \uFFFD\n"); }

TEST(CheckedPage, CountsPagesFromOneInItsMessage) {
  EXPECT_EQ(checkedPage(3, 4), 3);
  for (const int32_t page : {4, -1})
    try {
      checkedPage(page, 4);
      ADD_FAILURE() << page;
    } catch (const HostError &error) {
      EXPECT_EQ(error.code, tavrel::errBadPage);
      EXPECT_EQ(error.what(), "no page " + std::to_string(page + 1) + " in the document");
    }
}

} // namespace
} // namespace host
