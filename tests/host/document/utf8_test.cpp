// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Texts in UTF-8 that are limited to a number of bytes.
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
