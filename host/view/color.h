// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Colours as they are painted, and how well they can be told apart.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace host {

struct Rgb {
  uint8_t red, green, blue;
};

/// The colour of a pixel 0xFFRRGGBB, and the other way round.
Rgb rgbOf(uint32_t pixel);
uint32_t pixelOf(const Rgb &color);

/// The relative luminance as WCAG defines it, from 0 to 1.
double luminanceOf(const Rgb &color);

/// The contrast of two colours, or of their luminances, as WCAG defines it, from 1 to 21.
inline double contrastOf(double a, double b) { return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05); }
double contrastOf(const Rgb &a, const Rgb &b);

/// Text of less contrast to its background does not count as readable.
inline constexpr double readable = 3;

/// A colour between two, with so much of the second one, from 0 to 1.
Rgb mix(const Rgb &a, const Rgb &b, double share);

/// A way through the colours: red, green, blue.
using ColorVector = std::array<double, 3>;
ColorVector difference(const Rgb &from, const Rgb &to);
double dot(const ColorVector &a, const ColorVector &b);

} // namespace host
