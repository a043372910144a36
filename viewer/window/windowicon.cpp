// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A page with lines of text, one of them marked.
#include "viewer/window/windowicon.h"

#include <X11/Xatom.h>
#include <Xm/AtomMgr.h>

#include <algorithm>

#include "viewer/window/colors.h"
#include "viewer/window/shapes.h"

namespace viewer {

std::vector<uint32_t> windowIcon(int size) {
  constexpr host::Rgb paper{255, 255, 255}, edge{0x70, 0x75, 0x7C}, mark{0xFF, 0xD8, 0x4D}, ink{0x26, 0x28, 0x2B};
  const std::vector<Corner> page = {{3, 1}, {10, 1}, {13, 4}, {13, 15}, {3, 15}};
  const std::vector<Corner> marked = {{4.6, 7}, {9.4, 7}, {9.4, 9}, {4.6, 9}};
  const std::vector<Stroke> outline = {{3, 1, 10, 1}, {10, 1, 13, 4}, {13, 4, 13, 15}, {13, 15, 3, 15},
                                       {3, 15, 3, 1}, {10, 1, 10, 4}, {10, 4, 13, 4}};
  const std::vector<Stroke> lines = {
      {4.6, 5.8, 8.6, 5.8}, {4.6, 8, 11.2, 8}, {4.6, 10.2, 11.2, 10.2}, {4.6, 12.4, 9.6, 12.4}};
  return paint({{coverageOf(page, size), paper},
                {coverageOf(outline, 0.4, size), edge},
                {coverageOf(marked, size), mark},
                {coverageOf(lines, 0.35, size), ink}});
}

void setWindowIcon(Widget shell) {
  Display *display = XtDisplay(shell);
  std::vector<unsigned long> data; // elements of 32 bits are passed in longs
  for (const int size : {16, 24, 32, 48, 64}) {
    const std::vector<uint32_t> image = windowIcon(size);
    data.insert(data.end(), 2, static_cast<unsigned long>(size));
    data.insert(data.end(), image.begin(), image.end());
  }
  XChangeProperty(display, XtWindow(shell), XmInternAtom(display, const_cast<char *>("_NET_WM_ICON"), False),
                  XA_CARDINAL, 32, PropModeReplace, reinterpret_cast<const unsigned char *>(data.data()),
                  static_cast<int>(data.size()));
  constexpr int size = 48;
  std::vector<uint32_t> image = windowIcon(size);
  Pixel background = 0;
  XtVaGetValues(shell, XmNbackground, &background, nullptr);
  const Colors colors(shell);
  const host::Rgb around = colors.rgb(background);
  for (uint32_t &pixel : image) {
    const host::Rgb color = colors.rgb(pixel);
    pixel = blend(around, color, (pixel >> 24U) / 255.0);
  }
  XtVaSetValues(shell, XmNiconPixmap, colors.pixmap(image, size, size), nullptr);
}

} // namespace viewer
