// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Fixed-point geometry.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "TestPlugin.h"
#include "host/kernel/geometry.h"
#include "tavrel/TavrelSupport.h"

namespace {

using tavrel::Fixed;
using tavrel::FixedMatrix;
using tavrel::FixedRect;

constexpr Fixed f(double value) { return static_cast<Fixed>(value * tavrel::fixedOne); }

void expectRect(const FixedRect &actual, const FixedRect &expected) {
  EXPECT_EQ(actual.left, expected.left);
  EXPECT_EQ(actual.top, expected.top);
  EXPECT_EQ(actual.right, expected.right);
  EXPECT_EQ(actual.bottom, expected.bottom);
}

TEST(Geometry, ScalesAndFlips) {
  // From page space at 144 dots per inch: y is flipped, and what was the top has the smaller y.
  const FixedMatrix matrix{f(2), 0, 0, f(-2), 0, f(1584)};
  expectRect(host::transform(matrix, {f(10), f(700), f(20), f(690)}), {f(20), f(204), f(40), f(184)});
}

TEST(Geometry, AQuarterTurnSwapsTheSides) {
  const FixedMatrix matrix{0, f(1), f(-1), 0, 0, 0};
  expectRect(host::transform(matrix, {f(1), f(4), f(2), f(3)}), {f(-4), f(2), f(-3), f(1)});
}

TEST(Geometry, WhatDoesNotFitSaturates) {
  const FixedMatrix matrix{INT32_MAX, 0, 0, INT32_MAX, INT32_MAX, INT32_MAX};
  expectRect(host::transform(matrix, {INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN}),
             {INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN});
}

TEST(Geometry, TheWorstSumDoesNotOverflow) {
  const FixedMatrix matrix{INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX};
  expectRect(host::transform(matrix, {INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN}),
             {INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX});
}

TEST(Geometry, ADoubleThatDoesNotFitSaturates) {
  EXPECT_EQ(host::fixedOf(1e9), INT32_MAX);
  EXPECT_EQ(host::fixedOf(-1e9), INT32_MIN);
  EXPECT_EQ(host::fixedOf(1.5), 0x00018000);
  EXPECT_EQ(host::saturate16(40000), INT16_MAX);
  EXPECT_EQ(host::saturate16(-40000), INT16_MIN);
}

TEST(Geometry, ADoubleThatIsNoNumberIsZero) {
  EXPECT_EQ(host::fixedOf(std::nan("")), 0);
  EXPECT_EQ(host::saturate16(std::nan("")), 0);
}

TEST(Geometry, ADoubleIsRoundedToTheNearestUnit) {
  constexpr double unit = 1.0 / tavrel::fixedOne;
  EXPECT_EQ(host::fixedOf(7.4 * unit), 7);
  EXPECT_EQ(host::fixedOf(7.6 * unit), 8);
  EXPECT_EQ(host::fixedOf(-7.6 * unit), -8);
  EXPECT_EQ(host::saturate16(-123), -123);
}

TEST(Geometry, ProductsAreRoundedToTheNearestUnit) {
  const FixedMatrix matrix{f(0.25), 0, 0, f(0.25), 0, 0};
  expectRect(host::transform(matrix, {1, 6, 2, 5}), {0, 2, 1, 1});
}

TEST(Geometry, EachCoordinateHasItsOwnFactorsAndOffset) {
  const FixedMatrix matrix{f(2), f(3), f(5), f(7), f(11), f(13)};
  expectRect(host::transform(matrix, {f(1), f(2), f(1), f(2)}), {f(23), f(30), f(23), f(30)});
}

TEST(Geometry, TheOperationMayWriteOverItsInput) {
  const host::Runtime runtime;
  const FixedMatrix matrix{f(1), 0, 0, f(1), f(5), f(6)};
  FixedRect rect{f(1), f(4), f(2), f(3)};
  TavrelSupport::TransformFixedRect(&rect, &matrix, &rect);
  expectRect(rect, {f(6), f(10), f(7), f(9)});
}

TEST(Geometry, TheOperationRaisesWithoutARectangle) {
  host::Runtime runtime;
  test::TestPlugin testPlugin(runtime);
  static FixedRect rect;
  EXPECT_EQ(testPlugin.attempt([] { TavrelSupport::TransformFixedRect(&rect, nullptr, &rect); }),
            tavrel::errBadArgument);
}

} // namespace
