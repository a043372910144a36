// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Which colours a part of an image has, and how many pixels of each.
#pragma once

#include <vector>

#include "host/document/image.h"
#include "host/view/color.h"

namespace host {

struct Shade {
  Rgb color{};
  double luminance = 0;
  int count = 0; ///< of pixels
};

/// Counts the pixels of boxes of one image.
class ShadeCounter {
public:
  explicit ShadeCounter(const Image &image) : image_(image), bins_(1 << 12) {}

  /// The shades in a box, the most frequent one first.
  std::vector<Shade> in(const PixelBox &box);

private:
  // Pixels of similar colours: of each component the upper four bits are the same. `pixel` is the most frequent one if
  // one has the majority; the votes find it.
  struct Bin {
    int count = 0, votes = 0;
    uint32_t pixel = 0;
  };
  void count(uint32_t pixel, int times);
  void countRow(int y, int left, int right, int step);

  const Image &image_;
  std::vector<Bin> bins_;
  std::vector<uint16_t> used_; // bins that are not empty
};

} // namespace host
