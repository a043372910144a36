// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Shapes for icons, and the window's icon. No test opens a display.
#include <gtest/gtest.h> // before X, whose names are macros

#include "viewer/window/shapes.h"
#include "viewer/window/windowicon.h"

#include <numeric>

namespace viewer {
namespace {

// The covered area in units of the grid, which is 16 by 16.
double area(const Coverage &coverage) {
  const double pixels = std::accumulate(coverage.of.begin(), coverage.of.end(), 0.0);
  return pixels * 16 * 16 / (coverage.width * coverage.height);
}

TEST(ShapesTest, AnImageHasTheRequestedSize) {
  const Coverage coverage = coverageOf({{2, 2, 14, 14}}, 1, 23);
  EXPECT_EQ(coverage.width, 23);
  EXPECT_EQ(coverage.height, 23);
  EXPECT_EQ(coverage.of.size(), 23U * 23U);
}

TEST(ShapesTest, AShapeHasTheSameAreaAtEverySize) {
  for (const int size : {16, 24, 64, 128}) {
    EXPECT_NEAR(area(coverageOf(std::vector<Stroke>{{4, 8, 12, 8}}, 1, size)), 16 + 3.1416, 0.6) << size;
    EXPECT_NEAR(area(coverageOf(std::vector<Stroke>{{8, 8, 5, 0, true}}, 0.5, size)), 31.416, 0.6) << size;
    EXPECT_NEAR(area(coverageOf(std::vector<Corner>{{4, 4}, {12, 4}, {12, 10}, {4, 10}}, size)), 48, 0.6) << size;
  }
}

TEST(ShapesTest, AStrokeWithoutALengthIsADisc) {
  EXPECT_NEAR(area(coverageOf(std::vector<Stroke>{{8, 8, 8, 8}}, 5, 64)), 25 * 3.1416, 0.5);
}

TEST(ShapesTest, TheLastLayerIsOnTop) {
  const Coverage all{1, 1, {1}}, none{1, 1, {0}};
  EXPECT_EQ(paint({{all, {10, 20, 30}}, {all, {1, 2, 3}}, {none, {9, 9, 9}}}), std::vector<uint32_t>{0xFF010203});
}

TEST(ShapesTest, WithoutABackgroundUncoveredPixelsAreTransparent) {
  const std::vector<Layer> half{{{2, 1, {0.5, 0}}, {200, 100, 0}}};
  EXPECT_EQ(paint(half), (std::vector<uint32_t>{0x80C86400, 0}));
  EXPECT_EQ(paint(half, host::Rgb{0, 100, 200}), (std::vector<uint32_t>{0xFF646464, 0xFF0064C8}));
}

TEST(ShapesTest, TheWindowsIconIsAPageWithAMark) {
  constexpr int size = 64;
  const std::vector<uint32_t> icon = windowIcon(size);
  const auto at = [&](double x, double y) {
    return icon[static_cast<size_t>(y * 4) * size + static_cast<size_t>(x * 4)];
  };
  EXPECT_EQ(at(0.5, 0.5), 0U);
  EXPECT_EQ(at(12.6, 1.4), 0U); // the corner that is turned down
  EXPECT_EQ(at(8, 3), 0xFFFFFFFF);
  EXPECT_EQ(at(7, 7.4), 0xFFFFD84D);
}

} // namespace
} // namespace viewer
