// Pixels on the display: 32-bit images put onto drawables, and what a pixel value looks like.
#pragma once

#include <Xm/Xm.h>

#include "host/view/painting.h"

namespace viewer {

class Colors {
public:
  explicit Colors(Widget widget);

  /// Whether the display takes our pixels: 24 or 32 bits of them, a byte a colour.
  static bool usable(Display *display);

  host::Rgb rgb(Pixel pixel) const;
  /// Puts 0xRRGGBB pixels, rows without padding, at a place of a drawable.
  void put(Drawable drawable, GC context, const uint32_t *pixels, int width, int height, int x, int y) const;

private:
  Display *display_;
  Screen *screen_;
};

/// So much of the second colour on the first, as a pixel 0xFFRRGGBB.
uint32_t blend(const host::Rgb &ground, const host::Rgb &ink, double share);

} // namespace viewer
