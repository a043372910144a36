// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/color.h"

#include <algorithm>
#include <cmath>

namespace host {

uint32_t pixelOf(const Rgb &color) {
  return 0xFF000000U | uint32_t{color.red} << 16U | uint32_t{color.green} << 8U | color.blue;
}

Rgb rgbOf(uint32_t pixel) {
  return {static_cast<uint8_t>(pixel >> 16U), static_cast<uint8_t>(pixel >> 8U), static_cast<uint8_t>(pixel)};
}

double luminanceOf(const Rgb &color) {
  static const std::array<double, 256> linear = [] {
    std::array<double, 256> table{};
    for (size_t i = 0; i < table.size(); ++i) {
      const double value = static_cast<double>(i) / 255;
      table[i] = value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    }
    return table;
  }();
  return 0.2126 * linear[color.red] + 0.7152 * linear[color.green] + 0.0722 * linear[color.blue];
}

double contrastOf(const Rgb &a, const Rgb &b) { return contrastOf(luminanceOf(a), luminanceOf(b)); }

Rgb mix(const Rgb &a, const Rgb &b, double share) {
  const auto component = [share](uint8_t from, uint8_t to) {
    return static_cast<uint8_t>(std::lround(from + share * (to - from)));
  };
  return {component(a.red, b.red), component(a.green, b.green), component(a.blue, b.blue)};
}

ColorVector difference(const Rgb &from, const Rgb &to) {
  const double red = to.red - from.red, green = to.green - from.green, blue = to.blue - from.blue;
  return {red, green, blue};
}

double dot(const ColorVector &a, const ColorVector &b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

} // namespace host
