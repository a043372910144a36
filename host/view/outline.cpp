// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// An outline is what a larger copy of a shape has more than the shape: the boxes are filled in layers, each a little
// larger than the next, and every pixel gets the innermost layer that covers it.
#include "host/view/outline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace host {
namespace {

// In points; joins the words of a line, which are less than a character's height apart.
bool follows(const Box &box, const Box &before) {
  const double height = std::min(box.top - box.bottom, before.top - before.bottom);
  const double shared = std::min(box.top, before.top) - std::max(box.bottom, before.bottom);
  const double gap = std::max(box.left - before.right, before.left - box.right);
  return shared > height / 2 && gap < height;
}

std::vector<Box> joined(std::span<const Box> boxes) {
  std::vector<Box> lines;
  for (const Box &box : boxes) {
    if (!(box.left < box.right) || !(box.bottom < box.top)) continue; // no area
    if (!lines.empty() && follows(box, lines.back())) {
      Box &line = lines.back();
      line = {std::min(line.left, box.left), std::max(line.top, box.top), std::max(line.right, box.right),
              std::min(line.bottom, box.bottom)};
    } else {
      lines.push_back(box);
    }
  }
  return lines;
}

// A box rounded outwards to pixels and enlarged, as far as the image reaches.
PixelBox enlarged(const Box &box, int by, const Scale &scale, const Image &image) {
  const auto clamped = [](double value, int size) {
    return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(size)));
  };
  const double perPoint = scale.pixelsPerPoint;
  return {clamped(std::floor(box.left * perPoint) - scale.x - by, image.width),
          clamped(std::floor((scale.pageHeight - box.top) * perPoint) - scale.y - by, image.height),
          clamped(std::ceil(box.right * perPoint) - scale.x + by, image.width),
          clamped(std::ceil((scale.pageHeight - box.bottom) * perPoint) - scale.y + by, image.height)};
}

// The layers of a part of the image.
class Layers {
public:
  explicit Layers(const PixelBox &bounds)
      : bounds_(bounds), width_(static_cast<size_t>(bounds.right - bounds.left)),
        layers_(width_ * static_cast<size_t>(bounds.bottom - bounds.top)) {}

  void fill(const PixelBox &box, uint8_t layer) {
    if (box.left >= box.right) return; // not on the image
    for (int y = box.top; y < box.bottom; ++y)
      std::for_each(row(y) + (box.left - bounds_.left), row(y) + (box.right - bounds_.left),
                    [layer](uint8_t &pixel) { pixel = std::max(pixel, layer); });
  }
  void draw(Image &image, std::span<const uint32_t> colors) {
    for (int y = bounds_.top; y < bounds_.bottom; ++y)
      for (int x = bounds_.left; x < bounds_.right; ++x)
        if (const uint8_t layer = row(y)[x - bounds_.left]; layer > 0 && layer <= colors.size())
          image.row(y)[x] = colors[layer - 1U];
  }

private:
  uint8_t *row(int y) { return layers_.data() + width_ * static_cast<size_t>(y - bounds_.top); }

  PixelBox bounds_;
  size_t width_;
  std::vector<uint8_t> layers_; ///< 0: none of them
};

} // namespace

void paintOutline(Image &image, std::span<const Box> boxes, const Scale &scale, const Rgb &color) {
  const std::vector<Box> lines = joined(boxes);
  const int thickness = std::clamp(static_cast<int>(std::lround(scale.pixelsPerPoint)), 2, 6);
  const int gap = (thickness + 1) / 2;
  PixelBox bounds{image.width, image.height, 0, 0};
  for (const Box &line : lines) {
    const PixelBox outer = enlarged(line, gap + thickness + 1, scale, image);
    if (outer.left >= outer.right || outer.top >= outer.bottom) continue; // not on the image
    bounds = {std::min(bounds.left, outer.left), std::min(bounds.top, outer.top), std::max(bounds.right, outer.right),
              std::max(bounds.bottom, outer.bottom)};
  }
  if (bounds.left >= bounds.right) return;
  constexpr uint8_t separation = 1, line = 2, inside = 3;
  Layers layers(bounds);
  for (const Box &box : lines) {
    layers.fill(enlarged(box, gap + thickness + 1, scale, image), separation);
    layers.fill(enlarged(box, gap + thickness, scale, image), line);
    layers.fill(enlarged(box, gap, scale, image), inside);
  }
  const uint32_t ink = 0xFF000000U | uint32_t{color.red} << 16U | uint32_t{color.green} << 8U | color.blue;
  layers.draw(image, std::array{0xFFFFFFFFU, ink});
}

} // namespace host
