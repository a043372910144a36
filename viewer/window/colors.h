// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Pixels on the display: puts 32-bit images onto drawables and converts pixel values to colours.
#pragma once

#include <Xm/Xm.h>

#include <vector>

#include "host/view/painting.h"

namespace viewer {

class Colors {
public:
  explicit Colors(Widget widget);

  /// Whether the display takes these pixels: a depth of 24 or 32 bits, a byte per colour.
  static bool usable(Display *display);

  host::Rgb rgb(Pixel pixel) const;
  /// Puts 0xRRGGBB pixels, rows without padding, at a position of a drawable.
  void put(Drawable drawable, GC context, const uint32_t *pixels, int width, int height, int x, int y) const;
  /// A pixmap of the screen's depth with these pixels, which the caller frees.
  Pixmap pixmap(const std::vector<uint32_t> &pixels, int width, int height) const;

private:
  Display *display_;
  Screen *screen_;
};

/// The colour of a resource of the application.
Pixel colorResource(Widget widget, const char *name, const char *className, const char *otherwise);

/// The second colour blended over the first with an opacity of `share`, as a pixel 0xFFRRGGBB.
uint32_t blend(const host::Rgb &background, const host::Rgb &ink, double share);

} // namespace viewer
