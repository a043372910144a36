// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The visible rows of a list, and its cursor.
#include "viewer/model/rowposition.h"

#include <gtest/gtest.h>

namespace viewer {
namespace {

struct RowPositionTest : testing::Test {
  RowPositionTest() { rows.resize(100, 10); }
  RowPosition rows;
};

TEST_F(RowPositionTest, BeginsAtTheFirstRow) {
  EXPECT_EQ(rows.first(), 0U);
  EXPECT_EQ(rows.cursor(), 0U);
  EXPECT_EQ(rows.end(), 10U);
}

TEST_F(RowPositionTest, ShowsTheRowsThatAreCompletelyVisible) {
  rows.scrollTo(4);
  EXPECT_FALSE(rows.shows(3));
  EXPECT_TRUE(rows.shows(4));
  EXPECT_TRUE(rows.shows(13));
  EXPECT_FALSE(rows.shows(14));
}

TEST_F(RowPositionTest, ScrollsAsFarAsThereAreRows) {
  rows.scrollTo(50);
  EXPECT_EQ(rows.first(), 50U);
  rows.scrollTo(95);
  EXPECT_EQ(rows.first(), 90U);
  EXPECT_EQ(rows.end(), 100U);
  rows.scrollTo(-3);
  EXPECT_EQ(rows.first(), 0U);
}

TEST_F(RowPositionTest, ACursorThatMovesStaysVisible) {
  rows.moveCursor(9);
  EXPECT_EQ(rows.first(), 0U);
  rows.moveCursor(10);
  EXPECT_EQ(rows.first(), 1U);
  rows.moveCursor(0);
  EXPECT_EQ(rows.first(), 0U);
}

TEST_F(RowPositionTest, ACursorStopsAtTheEnds) {
  rows.moveCursor(1000);
  EXPECT_EQ(rows.cursor(), 99U);
  rows.moveCursor(-1);
  EXPECT_EQ(rows.cursor(), 0U);
}

TEST_F(RowPositionTest, ARowToGoToIsInTheMiddleUnlessItIsVisible) {
  rows.goTo(9);
  EXPECT_EQ(rows.first(), 0U);
  rows.goTo(60);
  EXPECT_EQ(rows.first(), 55U);
  EXPECT_EQ(rows.cursor(), 60U);
  rows.goTo(55);
  EXPECT_EQ(rows.first(), 55U);
  rows.goTo(54);
  EXPECT_EQ(rows.first(), 49U);
}

TEST_F(RowPositionTest, StaysWithinAListThatBecomesShorter) {
  rows.moveCursor(80);
  rows.resize(20, 10);
  EXPECT_EQ(rows.cursor(), 19U);
  EXPECT_EQ(rows.first(), 10U);
  rows.resize(0, 10);
  EXPECT_EQ(rows.cursor(), 0U);
  EXPECT_EQ(rows.end(), 0U);
  rows.moveCursor(1);
  EXPECT_EQ(rows.cursor(), 0U);
}

TEST_F(RowPositionTest, AListThatIsShorterThanTheWindowDoesNotScroll) {
  rows.resize(3, 10);
  rows.scrollTo(2);
  EXPECT_EQ(rows.first(), 0U);
  EXPECT_EQ(rows.end(), 3U);
}

TEST_F(RowPositionTest, AWindowLowerThanARowShowsOne) {
  rows.resize(5, 0);
  rows.goTo(3);
  EXPECT_EQ(rows.first(), 3U);
  EXPECT_EQ(rows.end(), 4U);
}

} // namespace
} // namespace viewer
