// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Writes what the display shows as a PNG file: `screenshot FILE`.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdio>
#include <cstdlib>

#include "tools/png.h"

namespace {

host::Image rootOf(Display *display) {
  const int screen = DefaultScreen(display);
  host::Image image{DisplayWidth(display, screen), DisplayHeight(display, screen), {}};
  XImage *shown = XGetImage(display, RootWindow(display, screen), 0, 0, static_cast<unsigned>(image.width),
                            static_cast<unsigned>(image.height), AllPlanes,
                            ZPixmap); // the server's pixel format is the image's
  if (shown == nullptr) return {};
  image.pixels.reserve(static_cast<size_t>(image.width) * static_cast<size_t>(image.height));
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x)
      image.pixels.push_back(0xFF000000U | static_cast<uint32_t>(XGetPixel(shown, x, y)));
  XDestroyImage(shown);
  return image;
}

} // namespace

int main(int count, char **arguments) {
  if (count != 2) return EXIT_FAILURE;
  Display *display = XOpenDisplay(nullptr);
  if (display == nullptr) return EXIT_FAILURE;
  const host::Image image = rootOf(display);
  XCloseDisplay(display);
  FILE *file = std::fopen(arguments[1], "wb");
  if (file == nullptr) return EXIT_FAILURE;
  const bool written = !image.pixels.empty() && tools::writePng(file, image, 96);
  return std::fclose(file) == 0 && written ? EXIT_SUCCESS : EXIT_FAILURE;
}
