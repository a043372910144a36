// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Compares a box with its edges, in points.
#pragma once

#include <gmock/gmock.h>

#include <cmath>

namespace test {

MATCHER_P4(IsBox, left, bottom, right, top, "") {
  *result_listener << "(" << arg.left << " " << arg.bottom << " " << arg.right << " " << arg.top << ")";
  const auto near = [](double a, double b) { return std::abs(a - b) < 0.01; };
  return near(arg.left, left) && near(arg.bottom, bottom) && near(arg.right, right) && near(arg.top, top);
}

} // namespace test
