// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Fixed-point arithmetic that saturates: a plug-in may transform anything, and a page may be of any size.
#include "host/kernel/geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace host {
namespace {

// The part of a transformed coordinate that one product gives, in 32.32. Two such products and an offset stay below
// 2^63 only when they are halved, so the sum is formed after rounding each to 16.16: exact to one unit in the last
// place.
int64_t product(tavrel::Fixed factor, tavrel::Fixed coordinate) {
  constexpr int64_t half = int64_t{1} << 15U;
  return (int64_t{factor} * coordinate + half) >> 16U;
}

tavrel::Fixed saturate(int64_t value) {
  return static_cast<tavrel::Fixed>(
      std::clamp<int64_t>(value, std::numeric_limits<tavrel::Fixed>::min(), std::numeric_limits<tavrel::Fixed>::max()));
}

} // namespace

tavrel::Fixed fixedOf(double value) {
  if (std::isnan(value)) return 0;
  const double scaled = std::round(value * tavrel::fixedOne);
  return static_cast<tavrel::Fixed>(
      std::clamp<double>(scaled, std::numeric_limits<tavrel::Fixed>::min(), std::numeric_limits<tavrel::Fixed>::max()));
}

int16_t saturate16(double value) {
  if (std::isnan(value)) return 0;
  return static_cast<int16_t>(
      std::clamp<double>(value, std::numeric_limits<int16_t>::min(), std::numeric_limits<int16_t>::max()));
}

tavrel::FixedRect transform(const tavrel::FixedMatrix &matrix, const tavrel::FixedRect &rect) {
  const tavrel::Fixed xs[] = {rect.left, rect.right};
  const tavrel::Fixed ys[] = {rect.bottom, rect.top};
  int64_t left = std::numeric_limits<int64_t>::max(), bottom = left;
  int64_t right = std::numeric_limits<int64_t>::min(), top = right;
  for (const tavrel::Fixed x : xs) {
    for (const tavrel::Fixed y : ys) {
      const int64_t newX = product(matrix.a, x) + product(matrix.c, y) + matrix.h;
      const int64_t newY = product(matrix.b, x) + product(matrix.d, y) + matrix.v;
      left = std::min(left, newX);
      right = std::max(right, newX);
      bottom = std::min(bottom, newY);
      top = std::max(top, newY);
    }
  }
  return {saturate(left), saturate(top), saturate(right), saturate(bottom)};
}

} // namespace host
