// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Where the find dialog does not cover a match.
#include "viewer/model/aside.h"

#include <gtest/gtest.h>

namespace {

using viewer::Place;

constexpr Place window{100, 50, 800, 600};

Place aside(const Place &dialog, const Place &area) { return viewer::asideOf(dialog, area, window); }

void expectAt(const Place &place, int x, int y) {
  EXPECT_EQ(place.x, x);
  EXPECT_EQ(place.y, y);
  EXPECT_EQ(place.width, 300);
  EXPECT_EQ(place.height, 100);
}

TEST(Aside, ADialogThatCoversNothingStays) {
  expectAt(aside({400, 200, 300, 100}, {390, 200, 10, 10}), 400, 200);
  expectAt(aside({400, 200, 300, 100}, {700, 200, 10, 10}), 400, 200);
  expectAt(aside({400, 200, 300, 100}, {400, 190, 10, 10}), 400, 200);
  expectAt(aside({400, 200, 300, 100}, {400, 300, 10, 10}), 400, 200);
}

TEST(Aside, ADialogThatCoversTheAreaIsInTheFirstFreeCorner) {
  expectAt(aside({400, 200, 300, 100}, {399, 199, 2, 2}), 600, 50);
  expectAt(aside({600, 60, 300, 100}, {650, 100, 10, 10}), 600, 550);
  expectAt(aside({600, 60, 300, 100}, {650, 100, 10, 540}), 100, 50);
  expectAt(aside({600, 60, 300, 100}, {150, 100, 600, 10}), 600, 550);
}

TEST(Aside, ADialogStaysThatCoversTheAreaEverywhere) { expectAt(aside({400, 200, 300, 100}, window), 400, 200); }

TEST(Aside, ADialogThatIsLargerThanTheWindowStays) {
  for (const auto &[width, height] : {std::pair{801, 100}, std::pair{300, 601}}) {
    const Place place = aside({400, 200, width, height}, {400, 200, 10, 10});
    EXPECT_EQ(place.x, 400) << width;
    EXPECT_EQ(place.y, 200) << width;
  }
}

TEST(Aside, ADialogAsLargeAsTheWindowFits) {
  const Place place = aside({50, 200, 800, 100}, {400, 250, 10, 10});
  EXPECT_EQ(place.x, 100);
  EXPECT_EQ(place.y, 50);
}

} // namespace
