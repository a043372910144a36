// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Colours and images of the display. Every current display has a true-colour visual with a byte per colour.
#include "viewer/window/colors.h"

#include <bit>
#include <cmath>

namespace viewer {

Colors::Colors(Widget widget) : display_(XtDisplay(widget)), screen_(XtScreen(widget)) {}

bool Colors::usable(Display *display) {
  const Visual *visual = DefaultVisual(display, DefaultScreen(display));
  const int depth = DefaultDepth(display, DefaultScreen(display));
  return visual->c_class == TrueColor && depth >= 24 && visual->red_mask == 0xFF0000 && visual->green_mask == 0xFF00 &&
         visual->blue_mask == 0xFF;
}

host::Rgb Colors::rgb(Pixel pixel) const {
  return {static_cast<uint8_t>(pixel >> 16U), static_cast<uint8_t>(pixel >> 8U), static_cast<uint8_t>(pixel)};
}

void Colors::put(Drawable drawable, GC context, const uint32_t *pixels, int width, int height, int x, int y) const {
  XImage *image =
      XCreateImage(display_, DefaultVisualOfScreen(screen_), static_cast<unsigned>(DefaultDepthOfScreen(screen_)),
                   ZPixmap, 0, reinterpret_cast<char *>(const_cast<uint32_t *>(pixels)), static_cast<unsigned>(width),
                   static_cast<unsigned>(height), 32, width * 4);
  if (image == nullptr) return;
  image->byte_order = std::endian::native == std::endian::little ? LSBFirst : MSBFirst;
  XPutImage(display_, drawable, context, image, 0, 0, x, y, static_cast<unsigned>(width),
            static_cast<unsigned>(height));
  image->data = nullptr; // not owned by the image
  XDestroyImage(image);
}

Pixmap Colors::pixmap(const std::vector<uint32_t> &pixels, int width, int height) const {
  const Pixmap made =
      XCreatePixmap(display_, RootWindowOfScreen(screen_), static_cast<unsigned>(width), static_cast<unsigned>(height),
                    static_cast<unsigned>(DefaultDepthOfScreen(screen_)));
  GC context = XCreateGC(display_, made, 0, nullptr);
  put(made, context, pixels.data(), width, height, 0, 0);
  XFreeGC(display_, context);
  return made;
}

Pixel colorResource(Widget widget, const char *name, const char *className, const char *otherwise) {
  Pixel pixel = 0;
  XtResource resource{
      const_cast<char *>(name),      const_cast<char *>(className), const_cast<char *>(XmRPixel), sizeof(Pixel), 0,
      const_cast<char *>(XmRString), const_cast<char *>(otherwise)};
  XtGetApplicationResources(widget, &pixel, &resource, 1, nullptr, 0);
  return pixel;
}

uint32_t blend(const host::Rgb &background, const host::Rgb &ink, double share) {
  const auto mixed = [share](uint8_t from, uint8_t to) {
    return static_cast<uint32_t>(std::lround(from + (to - from) * share));
  };
  return 0xFF000000U | mixed(background.red, ink.red) << 16U | mixed(background.green, ink.green) << 8U |
         mixed(background.blue, ink.blue);
}

} // namespace viewer
