// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Antialiased shapes for icons of any size. They are given on a square of 16 by 16; nothing here uses the display.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/view/painting.h"

namespace viewer {

/// A line with round ends, or with `circle` set a circle around (x1, y1) of radius x2.
struct Stroke {
  double x1, y1, x2, y2;
  bool circle = false;
};
struct Corner {
  double x, y;
};

/// The covered part of each pixel, from 0 to 1.
struct Coverage {
  int width, height;
  std::vector<double> of;
};

/// @param size of the image, in pixels
Coverage coverageOf(const std::vector<Stroke> &strokes, double halfWidth, int size);
/// Of a convex polygon; its corners are in clockwise order.
Coverage coverageOf(const std::vector<Corner> &corners, int size);

struct Layer {
  Coverage coverage;
  host::Rgb color;
};
/// Paints layers of one size over each other, as pixels 0xAARRGGBB whose colour is not multiplied by the opacity. On a
/// background they are opaque.
std::vector<uint32_t> paint(const std::vector<Layer> &layers, const std::optional<host::Rgb> &background = {});

} // namespace viewer
