// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Colours in tests of blending.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ostream>

#include "host/view/color.h"

namespace host {

inline void PrintTo(const Rgb &color, std::ostream *out) {
  char text[8];
  std::snprintf(text, sizeof text, "%02X%02X%02X", color.red, color.green, color.blue);
  *out << text;
}

inline constexpr Rgb white{255, 255, 255}, black{0, 0, 0}, red{255, 0, 0}, yellow{255, 255, 0}, green{0, 255, 0},
    blue{0, 0, 255};

inline Rgb between(const Rgb &a, const Rgb &b, double share) {
  const auto component = [share](uint8_t from, uint8_t to) {
    return static_cast<uint8_t>(std::lround(from + share * (to - from)));
  };
  return {component(a.red, b.red), component(a.green, b.green), component(a.blue, b.blue)};
}

inline int change(const Rgb &a, const Rgb &b) {
  return std::max({std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
}

} // namespace host
