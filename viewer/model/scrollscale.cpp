// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/scrollscale.h"

#include <algorithm>

namespace viewer {
namespace {

// The toolkit calculates with floats, which have all integers up to this one. A page has fewer units in documents of
// very many pages: a value is then not that of one pixel alone.
constexpr int largestRange = 1 << 24, mostUnits = 1 << 17;

} // namespace

ScrollScale::ScrollScale(int32_t pages)
    : pages_(std::max(1, pages)), unit_(std::clamp(largestRange / pages_, 1, mostUnits)) {}

Slider ScrollScale::slider(int32_t page, int y, int height, int window) const {
  const int64_t pixels = std::max(1, height);
  const int range = pages_ * unit_;
  const int size = static_cast<int>(std::clamp<int64_t>(int64_t{window} * unit_ / pixels, 1, unit_));
  // Rounded up, and back down in yAt: the result is the same pixel.
  const int64_t part = std::min<int64_t>((int64_t{y} * unit_ + pixels - 1) / pixels, unit_ - 1);
  const bool end = page == pages_ - 1 && y + window >= height;
  const int last = range - size;
  const int value = end ? last : static_cast<int>(std::clamp<int64_t>(int64_t{page} * unit_ + part, 0, last));
  return {range, size, !end && value == last ? std::max(0, last - 1) : value};
}

int32_t ScrollScale::pageAt(int value) const { return std::clamp(value / unit_, 0, pages_ - 1); }

int ScrollScale::yAt(int value, int height) const {
  return static_cast<int>((int64_t{value} - int64_t{pageAt(value)} * unit_) * height / unit_);
}

} // namespace viewer
