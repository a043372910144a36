// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Marks that are recorded apart from pixels.
#include "host/view/marks.h"

#include <gtest/gtest.h>

namespace host {
namespace {

constexpr Rgb red{255, 0, 0}, yellow{255, 255, 0};
constexpr uint32_t white = 0xFFFFFFFF;

Selection selectionOf(const Box &box, size_t ranges = 1, size_t offPage = 0) {
  Selection selection;
  selection.page = 3;
  selection.boxes = {box};
  selection.ranges = ranges;
  selection.offPage = offPage;
  return selection;
}

Image blank() { return {4, 4, std::vector<uint32_t>(16, white)}; }
constexpr Scale pixelAPoint{1, 4};
constexpr Box upperLeft{0, 4, 2, 2}, middle{1, 3, 3, 1};

TEST(PageMarks, ChangeNoPixelsBeforeTheyAreComposed) {
  PageMarks marks;
  marks.add(selectionOf(upperLeft), red);
  const Image image = blank();
  EXPECT_EQ(image.pixels, std::vector<uint32_t>(16, white));
  Image composed = blank();
  marks.compose(composed, pixelAPoint);
  EXPECT_EQ(composed.row(0)[0], 0xFFFF0000U);
  EXPECT_EQ(composed.row(2)[2], white);
}

TEST(PageMarks, AreComposedInTheirOrderAsIfTheyWerePainted) {
  PageMarks marks;
  marks.add(selectionOf(upperLeft), red);
  marks.add(selectionOf(middle), yellow);
  Image composed = blank(), painted = blank();
  marks.compose(composed, pixelAPoint);
  paintMarks(painted, {{upperLeft}}, pixelAPoint, red);
  paintMarks(painted, {{middle}}, pixelAPoint, yellow);
  EXPECT_EQ(composed.pixels, painted.pixels);
}

TEST(PageMarks, AreComposedMoreThanOnce) {
  PageMarks marks;
  marks.add(selectionOf(middle), red);
  Image once = blank(), again = blank();
  marks.compose(once, pixelAPoint);
  marks.compose(again, pixelAPoint);
  EXPECT_EQ(once.pixels, again.pixels);
}

TEST(PageMarks, CountRanges) {
  PageMarks marks;
  marks.add(selectionOf(upperLeft, 3), red);
  marks.add(selectionOf(middle, 5, 2), red);
  EXPECT_EQ(marks.ranges(), 8U);
  EXPECT_EQ(marks.offPage(), 2U);
}

TEST(PageMarks, AreKnownByTheirPageAndBoxes) {
  PageMarks marks;
  marks.add(selectionOf(upperLeft), red);
  EXPECT_TRUE(marks.has({3, {upperLeft}}));
  EXPECT_FALSE(marks.has({3, {middle}}));
  EXPECT_FALSE(marks.has({2, {upperLeft}}));
}

TEST(PageMarks, ClearedAreNone) {
  PageMarks marks;
  marks.add(selectionOf(upperLeft, 3, 1), red);
  marks.clear();
  Image composed = blank();
  marks.compose(composed, pixelAPoint);
  EXPECT_EQ(composed.pixels, blank().pixels);
  EXPECT_EQ(marks.ranges() + marks.offPage(), 0U);
  EXPECT_FALSE(marks.has({3, {upperLeft}}));
}

} // namespace
} // namespace host
