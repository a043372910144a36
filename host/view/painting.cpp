// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Paints marks on the image of a page: each box once, blended by what it covers. Called while a page is drawn.
#include "host/view/painting.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "host/kernel/geometry.h"
#include "host/view/blender.h"

namespace host {
namespace {

PixelBox pixelsOf(const Box &box, const Scale &scale, const Image &image) {
  // Boxes that end on a pixel's edge, apart from rounding errors, do not reach into the next one.
  constexpr double slack = 1e-4;
  const auto low = [](double value, int begin, int size) {
    return static_cast<int>(std::clamp(std::floor(value + slack) - begin, 0.0, static_cast<double>(size)));
  };
  const auto high = [](double value, int begin, int size) {
    return static_cast<int>(std::clamp(std::ceil(value - slack) - begin, 0.0, static_cast<double>(size)));
  };
  const double perPoint = scale.pixelsPerPoint;
  return {low(box.left * perPoint, scale.x, image.width),
          low((scale.pageHeight - box.top) * perPoint, scale.y, image.height),
          high(box.right * perPoint, scale.x, image.width),
          high((scale.pageHeight - box.bottom) * perPoint, scale.y, image.height)};
}

// The pixels of a rectangle that have been painted already.
class Mask {
public:
  explicit Mask(const PixelBox &bounds)
      : bounds_(bounds), width_(static_cast<size_t>(bounds.right - bounds.left)),
        taken_(width_ * static_cast<size_t>(bounds.bottom - bounds.top)) {}

  uint8_t *row(int y, int left) {
    return taken_.data() + width_ * static_cast<size_t>(y - bounds_.top) + (left - bounds_.left);
  }

private:
  PixelBox bounds_;
  size_t width_;
  std::vector<uint8_t> taken_;
};

// The smallest box that contains all boxes; there is at least one.
PixelBox boundsOf(std::span<const PixelBox> boxes) {
  PixelBox bounds = boxes.front();
  for (const PixelBox &box : boxes)
    bounds = {std::min(bounds.left, box.left), std::min(bounds.top, box.top), std::max(bounds.right, box.right),
              std::max(bounds.bottom, box.bottom)};
  return bounds;
}

void paintPatch(Image &image, const Blender::Patch &patch, Mask &mask) {
  const auto &[box, blend] = patch;
  uint32_t before = image.row(box.top)[box.left], after = blend(before); // mostly the next pixel is the same
  for (int y = box.top; y < box.bottom; ++y) {
    uint32_t *row = image.row(y) + box.left;
    uint8_t *taken = mask.row(y, box.left);
    for (int x = 0; x < box.right - box.left; ++x) {
      if (taken[x] != 0) continue;
      taken[x] = 1;
      if (row[x] != before) {
        before = row[x];
        after = blend(before);
      }
      row[x] = after;
    }
  }
}

} // namespace

Rgb rgbOf(const tavrel::ColorValue &color) {
  constexpr size_t components = 3;
  if (color.space != tavrel::colorSpaceRGB)
    throw HostError(tavrel::errBadArgument, "colour space " + std::to_string(color.space));
  const tavrel::Fixed *begin = color.component, *end = begin + components;
  const double full = *std::max_element(begin, end) > tavrel::fixedOne ? 255 : 1;
  std::array<uint8_t, components> bytes{};
  std::transform(begin, end, bytes.begin(), [&](tavrel::Fixed component) {
    return static_cast<uint8_t>(std::lround(std::clamp(doubleOf(component) / full, 0.0, 1.0) * 255));
  });
  return {bytes[0], bytes[1], bytes[2]};
}

void paintMarks(Image &image, std::span<const Box> boxes, const Scale &scale, const Rgb &color) {
  std::vector<PixelBox> pixels;
  for (const Box &box : boxes) {
    if (!(box.left < box.right) || !(box.bottom < box.top)) continue; // no area
    const PixelBox marked = pixelsOf(box, scale, image);
    if (marked.left >= marked.right || marked.top >= marked.bottom) continue; // not on the image
    pixels.push_back(marked);
  }
  if (pixels.empty()) return;

  // All blends are chosen before any box is painted: boxes may overlap.
  Blender blender(image, color);
  std::vector<Blender::Patch> patches;
  for (const PixelBox &box : pixels)
    blender.choose(box, patches);
  Mask mask(boundsOf(pixels));
  for (const Blender::Patch &patch : patches)
    paintPatch(image, patch, mask);
}

} // namespace host
