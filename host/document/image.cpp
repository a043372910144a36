// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/image.h"

#include <algorithm>
#include <cmath>

namespace host {

PixelSize imageSize(const PageSize &size, double dpi) {
  constexpr double pointsPerInch = 72;
  constexpr double most = 1e9; // a number that an int holds
  // 8.5 inches at 150 dpi are 1275 pixels in spite of rounding errors.
  const auto pixels = [=](double points) {
    return static_cast<int>(std::clamp(std::ceil(points * dpi / pointsPerInch - 1e-6), 0.0, most));
  };
  return {pixels(size.width), pixels(size.height)};
}

PixelSize pixelSize(const PageSize &size, double dpi) {
  const PixelSize image = imageSize(size, dpi);
  return {std::max(image.width, 1), std::max(image.height, 1)};
}

} // namespace host
