// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A pixel is covered according to its centre's distance from the shape's edge.
#include "viewer/window/shapes.h"

#include <algorithm>
#include <cmath>

namespace viewer {
namespace {

constexpr double grid = 16;

// Nothing here is so large that it needs std::hypot, which takes ten times as long.
double length(double dx, double dy) { return std::sqrt(dx * dx + dy * dy); }

double distance(const Stroke &stroke, double x, double y) {
  if (stroke.circle) return std::abs(length(x - stroke.x1, y - stroke.y1) - stroke.x2);
  const double dx = stroke.x2 - stroke.x1, dy = stroke.y2 - stroke.y1, squared = dx * dx + dy * dy;
  const double along = squared == 0 ? 0 : std::clamp(((x - stroke.x1) * dx + (y - stroke.y1) * dy) / squared, 0.0, 1.0);
  return length(x - stroke.x1 - along * dx, y - stroke.y1 - along * dy);
}

// `depth` is how far a point is from the edge, inside of the shape; negative outside of it.
template <typename Depth> Coverage coverage(const Depth &depth, int size) {
  const double scale = size / grid;
  Coverage result{size, size, {}};
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x)
      result.of.push_back(std::clamp(depth((x + 0.5) / scale, (y + 0.5) / scale) * scale + 0.5, 0.0, 1.0));
  return result;
}

} // namespace

Coverage coverageOf(const std::vector<Stroke> &strokes, double halfWidth, int size) {
  return coverage(
      [&](double x, double y) {
        double nearest = grid;
        for (const Stroke &stroke : strokes)
          nearest = std::min(nearest, distance(stroke, x, y));
        return halfWidth - nearest;
      },
      size);
}

Coverage coverageOf(const std::vector<Corner> &corners, int size) {
  struct Edge {
    Corner from;
    double dx, dy; ///< its direction, of length 1
  };
  std::vector<Edge> edges;
  for (size_t i = 0; i < corners.size(); ++i) {
    const Corner &from = corners[i], &to = corners[(i + 1) % corners.size()];
    const double dx = to.x - from.x, dy = to.y - from.y, whole = length(dx, dy);
    edges.push_back({from, dx / whole, dy / whole});
  }
  return coverage(
      [&](double x, double y) {
        double nearest = grid;
        for (const auto &[from, dx, dy] : edges)
          nearest = std::min(nearest, dx * (y - from.y) - dy * (x - from.x));
        return nearest;
      },
      size);
}

std::vector<uint32_t> paint(const std::vector<Layer> &layers, const std::optional<host::Rgb> &background) {
  std::vector<uint32_t> pixels;
  for (size_t i = 0; i < layers.front().coverage.of.size(); ++i) {
    double alpha = background ? 1 : 0, red = 0, green = 0, blue = 0;
    if (background) red = background->red, green = background->green, blue = background->blue;
    for (const Layer &layer : layers) {
      const double covered = layer.coverage.of[i], below = alpha * (1 - covered);
      alpha = covered + below;
      if (alpha == 0) continue;
      const auto mixed = [=](double from, uint8_t to) { return (from * below + to * covered) / alpha; };
      red = mixed(red, layer.color.red);
      green = mixed(green, layer.color.green);
      blue = mixed(blue, layer.color.blue);
    }
    const auto byte = [](double value) { return static_cast<uint32_t>(std::lround(value)); };
    pixels.push_back(byte(alpha * 255) << 24U | byte(red) << 16U | byte(green) << 8U | byte(blue));
  }
  return pixels;
}

} // namespace viewer
