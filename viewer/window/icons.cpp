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
#include "viewer/window/shapes.h"

namespace viewer {
namespace {

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

std::optional<Coverage> enlarged(Display *display, Pixmap bitmap, double scale) {
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
  constexpr double grid = 16, halfWidth = 0.75;
  std::optional<Coverage> coverage;
  for (const Drawn &one : drawn())
    if (one.name == name) coverage = coverageOf(one.strokes, halfWidth, static_cast<int>(std::lround(grid * scale_)));
  Display *display = XtDisplay(like_);
  if (!coverage && bitmap != 0) coverage = enlarged(display, bitmap, scale_);
  if (!coverage) return 0;

  Pixel inkPixel = 0, backgroundPixel = 0;
  XtVaGetValues(like_, XmNforeground, &inkPixel, XmNbackground, &backgroundPixel, nullptr);
  const Colors colors(like_);
  const host::Rgb ink = colors.rgb(inkPixel), background = colors.rgb(backgroundPixel);
  constexpr double greyShare = 0.32;
  std::vector<uint32_t> pixels;
  for (const double covered : coverage->of)
    pixels.push_back(blend(background, ink, covered * (greyed ? greyShare : 1)));
  return made_[key] = colors.pixmap(pixels, coverage->width, coverage->height);
}

} // namespace viewer
