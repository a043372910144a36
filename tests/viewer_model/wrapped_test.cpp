// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Line breaks for a message box.
#include "viewer/model/wrapped.h"

#include <gtest/gtest.h>

namespace viewer {
namespace {

const std::string ten = "123456789 ", sixty = ten + ten + ten + ten + ten + "1234567890";

TEST(WrappedTest, ShortLinesAreUnchanged) {
  EXPECT_EQ(wrapped(""), "");
  EXPECT_EQ(wrapped("one\ntwo\n"), "one\ntwo\n");
  EXPECT_EQ(wrapped(sixty + "\n" + sixty), sixty + "\n" + sixty);
}

TEST(WrappedTest, ALongLineIsBrokenAtItsLastSpace) {
  EXPECT_EQ(wrapped(sixty + "1"), "123456789 123456789 123456789 123456789 123456789\n12345678901");
  EXPECT_EQ(wrapped(sixty + " 1"), sixty + "\n1");
}

TEST(WrappedTest, APathIsBrokenAfterASlash) {
  EXPECT_EQ(wrapped("/" + std::string(30, 'a') + "/" + std::string(40, 'b')),
            "/" + std::string(30, 'a') + "/\n" + std::string(40, 'b'));
}

TEST(WrappedTest, AWordIsBrokenBetweenCharacters) {
  std::string word, line;
  for (size_t i = 0; i < longestLine; ++i)
    line += "\u00E4";
  word = line + line + "\u00E4";
  EXPECT_EQ(wrapped(word), line + "\n" + line + "\n\u00E4");
  EXPECT_EQ(wrapped("/" + std::string(longestLine, 'a')), "/" + std::string(longestLine - 1, 'a') + "\na");
}

} // namespace
} // namespace viewer
