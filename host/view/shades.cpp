// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/shades.h"

#include <algorithm>
#include <cmath>

namespace host {

void ShadeCounter::count(uint32_t pixel, int times) {
  const uint32_t index = (pixel >> 12U & 0xF00U) | (pixel >> 8U & 0xF0U) | (pixel >> 4U & 0xFU);
  Bin &bin = bins_[index];
  if (bin.count == 0) used_.push_back(static_cast<uint16_t>(index));
  bin.count += times;
  if (bin.pixel == pixel) {
    bin.votes += times;
  } else if (bin.votes < times) {
    bin.pixel = pixel;
    bin.votes = times - bin.votes;
  } else {
    bin.votes -= times;
  }
}

// Every `step`th pixel of a row; most follow one of the same colour.
void ShadeCounter::countRow(int y, int left, int right, int step) {
  const uint32_t *row = image_.row(y);
  uint32_t last = row[left];
  int times = 0;
  for (int x = left; x < right; x += step) {
    if (row[x] != last) {
      count(last, times);
      last = row[x];
      times = 0;
    }
    ++times;
  }
  count(last, times);
}

// Samples some thousand pixels of a large box. Text leaves the upper and lower edge free, so pixels there are counted
// again.
std::vector<Shade> ShadeCounter::in(const PixelBox &box) {
  constexpr double enough = 4096;
  const double area = static_cast<double>(box.right - box.left) * (box.bottom - box.top);
  const int step = std::max(1, static_cast<int>(std::sqrt(area / enough)));
  for (int y = box.top; y < box.bottom; y += step)
    countRow(y, box.left, box.right, step);
  for (const int y : {box.top, box.bottom - 1})
    countRow(y, box.left, box.right, step);

  std::vector<Shade> shades;
  shades.reserve(used_.size());
  for (const uint16_t index : used_) {
    const Rgb color = rgbOf(bins_[index].pixel);
    shades.push_back({color, luminanceOf(color), bins_[index].count});
    bins_[index] = {};
  }
  used_.clear();
  std::sort(shades.begin(), shades.end(), [](const Shade &a, const Shade &b) { return a.count > b.count; });
  return shades;
}

} // namespace host
