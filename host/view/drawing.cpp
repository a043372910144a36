// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/drawing.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

// The part, as far as the page reaches.
PixelBox onPage(const Image &page, const PixelBox &part) {
  const int left = std::clamp(part.left, 0, page.width), top = std::clamp(part.top, 0, page.height);
  return {left, top, std::clamp(part.right, left, page.width), std::clamp(part.bottom, top, page.height)};
}

} // namespace

Drawing cropped(const Image &page, const PixelBox &part) {
  const PixelBox box = onPage(page, part);
  const int width = box.right - box.left, height = box.bottom - box.top;
  Drawing drawing{.image = {width, height, {}}, .x = box.left, .y = box.top};
  drawing.image.pixels.reserve(static_cast<size_t>(width) * static_cast<size_t>(height));
  for (int y = box.top; y < box.bottom; ++y) {
    const uint32_t *row = page.row(y) + box.left;
    drawing.image.pixels.insert(drawing.image.pixels.end(), row, row + width);
  }
  return drawing;
}

Drawing cropped(Image &&page, const PixelBox &part) {
  const PixelBox box = onPage(page, part);
  const bool isAll = box.right - box.left == page.width && box.bottom - box.top == page.height;
  if (!isAll) return cropped(std::as_const(page), part);
  return {.image = std::move(page)};
}

} // namespace host
