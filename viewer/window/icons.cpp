// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Icons: strokes with round ends on a square of 16 by 16, antialiased by each pixel's distance from the nearest stroke;
// and bitmaps, enlarged by an integer factor. Both become pixmaps, because a greyed bitmap would be stippled.
#include "viewer/window/icons.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <vector>

#include "viewer/window/colors.h"

namespace viewer {
namespace {

// A line, or with `circle` set a circle around (x1, y1) of radius x2.
struct Stroke {
  double x1, y1, x2, y2;
  bool circle = false;
};
struct Drawn {
  const char *name;
  std::vector<Stroke> strokes;
};

const std::vector<Drawn> &drawn() {
  static const std::vector<Drawn> all = {
      {"Open",
       {{2, 13, 2, 3.5},
        {2, 3.5, 6, 3.5},
        {6, 3.5, 7.5, 5.5},
        {7.5, 5.5, 13, 5.5},
        {13, 5.5, 13, 7.5},
        {2, 13, 4.5, 7.5},
        {4.5, 7.5, 15, 7.5},
        {15, 7.5, 12.5, 13},
        {12.5, 13, 2, 13}}},
      {"PreviousPage", {{8, 13.5, 8, 3}, {8, 3, 3.5, 7.5}, {8, 3, 12.5, 7.5}}},
      {"NextPage", {{8, 2.5, 8, 13}, {8, 13, 3.5, 8.5}, {8, 13, 12.5, 8.5}}},
      {"ZoomOut", {{6.5, 6.5, 4.5, 0, true}, {10, 10, 14, 14}, {4.5, 6.5, 8.5, 6.5}}},
      {"ZoomIn", {{6.5, 6.5, 4.5, 0, true}, {10, 10, 14, 14}, {4.5, 6.5, 8.5, 6.5}, {6.5, 4.5, 6.5, 8.5}}},
      {"FitWidth",
       {{2, 2.5, 2, 13.5},
        {14, 2.5, 14, 13.5},
        {4.5, 8, 11.5, 8},
        {4.5, 8, 6.5, 6},
        {4.5, 8, 6.5, 10},
        {11.5, 8, 9.5, 6},
        {11.5, 8, 9.5, 10}}},
      {"FitPage",
       {{3.5, 1.5, 12.5, 1.5},
        {12.5, 1.5, 12.5, 14.5},
        {12.5, 14.5, 3.5, 14.5},
        {3.5, 14.5, 3.5, 1.5},
        {8, 4.5, 8, 11.5},
        {8, 4.5, 6, 6.5},
        {8, 4.5, 10, 6.5},
        {8, 11.5, 6, 9.5},
        {8, 11.5, 10, 9.5}}},
      {"FindDialog", {{6.5, 6.5, 4.5, 0, true}, {10, 10, 14, 14}}},
      {"FindAgainDialog",
       {{5.5, 5.5, 3.5, 0, true}, {8.2, 8.2, 10.5, 10.5}, {6, 14, 14, 14}, {14, 14, 11.8, 11.8}, {14, 14, 11.8, 15.5}}},
  };
  return all;
}

double distance(const Stroke &stroke, double x, double y) {
  if (stroke.circle) return std::abs(std::hypot(x - stroke.x1, y - stroke.y1) - stroke.x2);
  const double dx = stroke.x2 - stroke.x1, dy = stroke.y2 - stroke.y1;
  const double along = std::clamp(((x - stroke.x1) * dx + (y - stroke.y1) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
  return std::hypot(x - stroke.x1 - along * dx, y - stroke.y1 - along * dy);
}

// The covered part of each pixel, from 0 to 1.
struct Coverage {
  int width, height;
  std::vector<double> of;
};

Coverage coverageOf(const std::vector<Stroke> &strokes, double scale) {
  constexpr double grid = 16, halfWidth = 0.75;
  const int size = static_cast<int>(std::lround(grid * scale));
  Coverage coverage{size, size, {}};
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x) {
      double nearest = grid;
      for (const Stroke &stroke : strokes)
        nearest = std::min(nearest, distance(stroke, (x + 0.5) / scale, (y + 0.5) / scale));
      coverage.of.push_back(std::clamp((halfWidth - nearest) * scale + 0.5, 0.0, 1.0));
    }
  return coverage;
}

std::optional<Coverage> coverageOf(Display *display, Pixmap bitmap, double scale) {
  Window root = 0;
  int x = 0, y = 0;
  unsigned width = 0, height = 0, border = 0, depth = 0;
  if (XGetGeometry(display, bitmap, &root, &x, &y, &width, &height, &border, &depth) == 0 || depth != 1)
    return std::nullopt;
  XImage *image = XGetImage(display, bitmap, 0, 0, width, height, 1, XYPixmap);
  if (image == nullptr) return std::nullopt;
  const int times = std::max(1, static_cast<int>(std::lround(scale)));
  Coverage coverage{static_cast<int>(width) * times, static_cast<int>(height) * times, {}};
  for (int row = 0; row < coverage.height; ++row)
    for (int column = 0; column < coverage.width; ++column)
      coverage.of.push_back(XGetPixel(image, column / times, row / times) != 0 ? 1 : 0);
  XDestroyImage(image);
  return coverage;
}

} // namespace

Icons::Icons(Widget like, double scale) : like_(like), scale_(scale) {}

Icons::~Icons() {
  for (const auto &[key, pixmap] : made_)
    XFreePixmap(XtDisplay(like_), pixmap);
}

Pixmap Icons::get(const std::string &name, Pixmap bitmap, bool greyed) {
  const std::tuple key{name, bitmap, greyed};
  if (const auto kept = made_.find(key); kept != made_.end()) return kept->second;
  std::optional<Coverage> coverage;
  for (const Drawn &one : drawn())
    if (one.name == name) coverage = coverageOf(one.strokes, scale_);
  Display *display = XtDisplay(like_);
  if (!coverage && bitmap != 0) coverage = coverageOf(display, bitmap, scale_);
  if (!coverage) return 0;

  Pixel inkPixel = 0, backgroundPixel = 0;
  Cardinal depth = 0;
  XtVaGetValues(like_, XmNforeground, &inkPixel, XmNbackground, &backgroundPixel, XmNdepth, &depth, nullptr);
  const Colors colors(like_);
  const host::Rgb ink = colors.rgb(inkPixel), background = colors.rgb(backgroundPixel);
  constexpr double greyShare = 0.32;
  const auto width = static_cast<unsigned>(coverage->width), height = static_cast<unsigned>(coverage->height);
  std::vector<uint32_t> pixels;
  for (const double covered : coverage->of)
    pixels.push_back(blend(background, ink, covered * (greyed ? greyShare : 1)));
  const Pixmap made = XCreatePixmap(display, RootWindowOfScreen(XtScreen(like_)), width, height, depth);
  GC context = XCreateGC(display, made, 0, nullptr);
  colors.put(made, context, pixels.data(), coverage->width, coverage->height, 0, 0);
  XFreeGC(display, context);
  return made_[key] = made;
}

} // namespace viewer
