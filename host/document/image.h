// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// An image of a page: rows of 32-bit pixels 0xFFRRGGBB in the machine's byte order, without padding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/document/page.h"

namespace host {

/// Of an image, in pixels; a square of that side takes 1.6 GB.
inline constexpr double longestSide = 20'000;

/// The pixels from left to right and from top to bottom; right and bottom are exclusive.
struct PixelBox {
  int left = 0, top = 0, right = 0, bottom = 0;
};

struct PixelSize {
  int width = 0, height = 0;
};

inline PixelSize sizeOf(const PixelBox &box) { return {box.right - box.left, box.bottom - box.top}; }

/// Whether there can be an image of that size.
inline bool isImageSize(const PixelSize &size) {
  return size.width >= 1 && size.height >= 1 && size.width <= longestSide && size.height <= longestSide;
}

/// The width and height of a page's image, rounded up to whole pixels; 0 for less than a millionth of a pixel.
PixelSize imageSize(const PageSize &size, double dpi);
/// The same, but at least 1: of what is shown of the page.
PixelSize pixelSize(const PageSize &size, double dpi);

struct Image {
  int width = 0, height = 0;
  std::vector<uint32_t> pixels;

  uint32_t *row(int y) { return pixels.data() + static_cast<size_t>(y) * static_cast<size_t>(width); }
  const uint32_t *row(int y) const { return pixels.data() + static_cast<size_t>(y) * static_cast<size_t>(width); }
};

} // namespace host
