// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/textfit.h"

#include <gtest/gtest.h>

#include "viewer/model/onelinetext.h"

namespace viewer {
namespace {

// Every character is as wide as another.
int count(const std::string &text) { return static_cast<int>(characters(text).size()); }

TEST(TextFitTest, ATextThatFitsIsNotChanged) {
  EXPECT_EQ(fitted("thread", 6, count), "thread");
  EXPECT_EQ(fitted("", 0, count), "");
}

TEST(TextFitTest, ALongerOneEndsWithAnEllipsis) {
  EXPECT_EQ(fitted("threads", 6, count), "threa\u2026");
  EXPECT_EQ(fitted("threads", 2, count), "t\u2026");
}

TEST(TextFitTest, CharactersAreNotDivided) {
  EXPECT_EQ(fitted("\u00E4\u8A9E\u00E4\u8A9E", 3, count), "\u00E4\u8A9E\u2026");
}

TEST(TextFitTest, WhereNothingFitsTheEllipsisIsLeft) { EXPECT_EQ(fitted("threads", 0, count), "\u2026"); }

} // namespace
} // namespace viewer
