// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/drawing.h"

#include <algorithm>

namespace host {

Drawing cropped(const Image &page, const PixelBox &part) {
  Drawing drawing;
  drawing.x = std::clamp(part.left, 0, page.width);
  drawing.y = std::clamp(part.top, 0, page.height);
  const int width = std::clamp(part.right, drawing.x, page.width) - drawing.x;
  const int height = std::clamp(part.bottom, drawing.y, page.height) - drawing.y;
  if (width == page.width && height == page.height) {
    drawing.image = page;
    return drawing;
  }
  drawing.image = {width, height, {}};
  drawing.image.pixels.reserve(static_cast<size_t>(width) * static_cast<size_t>(height));
  for (int y = 0; y < height; ++y) {
    const uint32_t *row = page.row(drawing.y + y) + drawing.x;
    drawing.image.pixels.insert(drawing.image.pixels.end(), row, row + width);
  }
  return drawing;
}

} // namespace host
