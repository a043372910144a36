// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The line of text around a place on a page.
#include "host/document/line.h"

#include <gtest/gtest.h>

namespace host {
namespace {

WordText word(const std::u32string &text, const Box &bounds, int quarterTurns = 0) {
  return {text, 0, bounds, {}, quarterTurns};
}

// Two columns of two lines; the reading order goes down the first one.
PageText columns() {
  return {{word(U"one", {0, 100, 20, 90}), word(U"two", {25, 101, 45, 91}), word(U"three", {0, 85, 20, 75}),
           word(U"four", {60, 100, 80, 90}), word(U"five", {85, 100, 99, 90}), word(U"six", {60, 85, 80, 75})}};
}

TEST(TextLine, HasTheWordsBesideTheOneInReadingOrder) {
  for (const Box &box : {Box{1, 99, 19, 91}, Box{26, 100, 40, 92}})
    EXPECT_EQ(lineAround(columns(), box).text, "one two");
}

TEST(TextLine, EndsWithTheColumn) {
  EXPECT_EQ(lineAround(columns(), {60, 100, 80, 90}).text, "four five");
  EXPECT_EQ(lineAround(columns(), {0, 85, 20, 75}).text, "three");
  EXPECT_EQ(lineAround(columns(), {60, 85, 80, 75}).text, "six");
}

TEST(TextLine, KnowsWhereItsWordBegins) {
  EXPECT_EQ(lineAround(columns(), {0, 100, 20, 90}).start, 0U);
  EXPECT_EQ(lineAround(columns(), {25, 101, 45, 91}).start, 4U);
}

TEST(TextLine, IsThatOfTheWordThatTheBoxCoversMostOf) {
  EXPECT_EQ(lineAround(columns(), {0, 94, 20, 75}).text, "three");
}

TEST(TextLine, IsThatOfAWordThatTheBoxHardlyCovers) {
  EXPECT_EQ(lineAround(columns(), {0, 99.5, 0.5, 99}).text, "one two");
}

TEST(TextLine, OfWordsThatTheBoxCoversEquallyIsThatOfTheFirst) {
  EXPECT_EQ(lineAround(columns(), {0, 100, 20, 75}).text, "one two");
}

TEST(TextLine, IsEmptyWhereNoWordIs) {
  EXPECT_EQ(lineAround(columns(), {0, 50, 20, 40}).text, "");
  EXPECT_EQ(lineAround(columns(), {200, 50, 220, 40}).text, "") << "right of all words and below them";
  const PageText oneWord{{word(U"one", {0, 100, 20, 90})}};
  EXPECT_EQ(lineAround(oneWord, {0, 50, 20, 40}).text, "") << "below the only word";
  EXPECT_EQ(lineAround({}, {0, 50, 20, 40}).text, "");
}

TEST(TextLine, HasALowWordBesideAHighOne) {
  const WordText high = word(U"x", {0, 100, 20, 80}), low = word(U"2", {20, 99, 25, 95});
  for (const PageText &page : {PageText{{high, low}}, PageText{{low, high}}})
    EXPECT_EQ(lineAround(page, high.bounds).text.size(), 3U);
}

TEST(TextLine, EndsWhereTheNextWordIsHalfALineLower) {
  const PageText page{{word(U"one", {0, 100, 20, 90}), word(U"two", {25, 95, 45, 85})}};
  EXPECT_EQ(lineAround(page, {0, 100, 20, 90}).text, "one");
}

TEST(TextLine, OfAnUpsideDownPageIsLikeAnyOther) {
  const PageText page{{word(U"up", {25, 100, 45, 90}, 2), word(U"down", {0, 100, 20, 90}, 2)}};
  EXPECT_EQ(lineAround(page, {25, 100, 45, 90}).text, "up down");
}

TEST(TextLine, RunsUpThePageWhereItsWordsDo) {
  const PageText page{{word(U"up", {50, 55, 60, 20}, 3), word(U"wards", {50, 100, 60, 60}, 3)}};
  EXPECT_EQ(lineAround(page, {50, 55, 60, 20}).text, "up wards");
}

TEST(TextLine, RunsDownThePageWhereItsWordsDo) {
  const PageText page{{word(U"down", {50, 100, 60, 60}, 1), word(U"wards", {50, 55, 60, 20}, 1),
                       word(U"beside", {70, 100, 80, 60}, 1)}};
  EXPECT_EQ(lineAround(page, {50, 55, 60, 20}).text, "down wards");
}

TEST(TextLine, DoesNotGoOnInAnotherDirection) {
  const PageText page{{word(U"down", {0, 100, 10, 60}, 1), word(U"across", {20, 95, 60, 85})}};
  EXPECT_EQ(lineAround(page, {20, 95, 60, 85}).text, "across");
}

TEST(TextLine, IsInUtf8) {
  const PageText page{
      {word(U"a\u007F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF", {0, 100, 20, 90}), word(U"z", {25, 100, 30, 90})}};
  const TextLine line = lineAround(page, {25, 100, 30, 90});
  EXPECT_EQ(line.text, "a\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF z");
  EXPECT_EQ(line.start, 21U);
}

} // namespace
} // namespace host
