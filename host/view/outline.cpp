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

// The widths of the line, of what is left free inside of it, and of its white edge, in pixels. Together they are less
// than what usually separates words and lines, so that no other letters are covered: a share of the text's height. A
// thin line has no edge.
struct Widths {
  int gap, line, edge;
};

Widths widthsFor(std::span<const Box> lines, const Scale &scale) {
  constexpr double share = 0.17;
  const Box &lowest = *std::ranges::min_element(lines, {}, [](const Box &box) { return box.top - box.bottom; });
  const double height = (lowest.top - lowest.bottom) * scale.pixelsPerPoint;
  const int all = std::max(1, static_cast<int>(std::min(height, 100.0) * share));
  const int line = std::min(all, std::clamp(static_cast<int>(std::lround(scale.pixelsPerPoint)), 2, 6));
  const int edge = all > line ? 1 : 0;
  return {std::min((line + 1) / 2, all - line - edge), line, edge};
}

// A box rounded to pixels and enlarged, as far as the image reaches.
PixelBox enlarged(const Box &box, int by, const Scale &scale, const Image &image) {
  const auto clamped = [](double value, int size) {
    return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(size)));
  };
  const double perPoint = scale.pixelsPerPoint;
  return {clamped(std::round(box.left * perPoint) - scale.x - by, image.width),
          clamped(std::round((scale.pageHeight - box.top) * perPoint) - scale.y - by, image.height),
          clamped(std::round(box.right * perPoint) - scale.x + by, image.width),
          clamped(std::round((scale.pageHeight - box.bottom) * perPoint) - scale.y + by, image.height)};
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
    forEach([&](int x, int y, uint8_t layer) {
      if (layer > 0 && layer <= colors.size()) image.row(y)[x] = colors[layer - 1U];
    });
  }
  // The mean of the image's pixels in a layer, of each its brightest component: a mark of any colour is not dark.
  double brightness(Image &image, uint8_t layer) {
    double sum = 0, count = 0;
    forEach([&](int x, int y, uint8_t its) {
      if (its != layer) return;
      const uint32_t pixel = image.row(y)[x];
      sum += std::max({pixel >> 16U & 0xFFU, pixel >> 8U & 0xFFU, pixel & 0xFFU});
      ++count;
    });
    return count > 0 ? sum / count : 0;
  }

private:
  template <typename Visit> void forEach(const Visit &visit) {
    for (int y = bounds_.top; y < bounds_.bottom; ++y)
      for (int x = bounds_.left; x < bounds_.right; ++x)
        visit(x, y, row(y)[x - bounds_.left]);
  }
  uint8_t *row(int y) { return layers_.data() + width_ * static_cast<size_t>(y - bounds_.top); }

  PixelBox bounds_;
  size_t width_;
  std::vector<uint8_t> layers_; ///< 0: none of them
};

} // namespace

void paintOutline(Image &image, std::span<const Box> boxes, const Scale &scale, const Rgb &color) {
  const std::vector<Box> lines = joined(boxes);
  if (lines.empty()) return;
  const Widths widths = widthsFor(lines, scale);
  const int toLine = widths.gap + widths.line, all = toLine + widths.edge;
  PixelBox bounds{image.width, image.height, 0, 0};
  for (const Box &line : lines) {
    const PixelBox outer = enlarged(line, all, scale, image);
    if (outer.left >= outer.right || outer.top >= outer.bottom) continue; // not on the image
    bounds = {std::min(bounds.left, outer.left), std::min(bounds.top, outer.top), std::max(bounds.right, outer.right),
              std::max(bounds.bottom, outer.bottom)};
  }
  if (bounds.left >= bounds.right) return;
  constexpr uint8_t edge = 1, line = 2, inside = 3;
  Layers layers(bounds);
  for (const Box &box : lines) {
    layers.fill(enlarged(box, all, scale, image), edge);
    layers.fill(enlarged(box, toLine, scale, image), line);
    layers.fill(enlarged(box, widths.gap, scale, image), inside);
  }
  const uint32_t ink = 0xFF000000U | uint32_t{color.red} << 16U | uint32_t{color.green} << 8U | color.blue;
  constexpr uint32_t white = 0xFFFFFFFF;
  constexpr double dark = 80; // of 255
  const bool asEdge = widths.edge == 0 && layers.brightness(image, line) < dark;
  layers.draw(image, std::array{white, asEdge ? white : ink});
}

} // namespace host
