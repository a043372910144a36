// Paints marks the way a felt pen does: multiplied, so that black text stays black. Called while a page is drawn.
#include "host/view/painting.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "host/kernel/geometry.h"

namespace host {
namespace {

struct PixelBox {
  int left, top, right, bottom; // right and bottom are the first beyond
};

PixelBox pixelsOf(const Box &box, const Scale &scale, const Image &image) {
  // Boxes that end on a pixel's edge but for rounding do not reach into the next one.
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

// One colour component multiplied by each possible value of a pixel's.
std::array<uint8_t, 256> productsOf(uint8_t component) {
  std::array<uint8_t, 256> products{};
  for (unsigned value = 0; value < products.size(); ++value)
    products[value] = static_cast<uint8_t>((value * component + 127) / 255);
  return products;
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

void multiply(Image &image, std::span<const Box> boxes, const Scale &scale, const Rgb &color) {
  // The union of the boxes, as a mask over the rectangle that holds them all.
  std::vector<PixelBox> pixels;
  PixelBox bounds{image.width, image.height, 0, 0};
  for (const Box &box : boxes) {
    if (!(box.left < box.right) || !(box.bottom < box.top)) continue; // no area
    const PixelBox marked = pixelsOf(box, scale, image);
    if (marked.left >= marked.right || marked.top >= marked.bottom) continue; // not on the page
    bounds = {std::min(bounds.left, marked.left), std::min(bounds.top, marked.top),
              std::max(bounds.right, marked.right), std::max(bounds.bottom, marked.bottom)};
    pixels.push_back(marked);
  }
  if (pixels.empty()) return;
  const auto width = static_cast<size_t>(bounds.right - bounds.left);
  std::vector<uint8_t> mask(width * static_cast<size_t>(bounds.bottom - bounds.top));
  for (const PixelBox &box : pixels)
    for (int y = box.top; y < box.bottom; ++y) {
      const auto row = mask.begin() + static_cast<std::ptrdiff_t>(width) * (y - bounds.top);
      std::fill(row + (box.left - bounds.left), row + (box.right - bounds.left), uint8_t{1});
    }

  const auto red = productsOf(color.red), green = productsOf(color.green), blue = productsOf(color.blue);
  const uint8_t *marked = mask.data();
  for (int y = bounds.top; y < bounds.bottom; ++y) {
    uint32_t *row = image.row(y) + bounds.left;
    for (size_t x = 0; x < width; ++x, ++marked) {
      if (*marked == 0) continue;
      const uint32_t pixel = row[x];
      row[x] = (pixel & 0xFF000000U) | uint32_t{red[pixel >> 16U & 0xFFU]} << 16U |
               uint32_t{green[pixel >> 8U & 0xFFU]} << 8U | blue[pixel & 0xFFU];
    }
  }
}

} // namespace host
