// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A white sign on a disc.
#include "viewer/window/messagesymbol.h"

#include <cmath>
#include <vector>

#include "host/view/alerts.h"
#include "viewer/window/colors.h"
#include "viewer/window/motif.h"
#include "viewer/window/shapes.h"

namespace viewer {
namespace {

struct Symbol {
  int32_t icon;
  host::Rgb color;
  std::vector<Stroke> sign;
};

const std::vector<Symbol> &symbols() {
  constexpr host::Rgb red{0xC6, 0x3B, 0x32}, blue{0x3B, 0x6E, 0xC4};
  static const std::vector<Symbol> all = {
      {tavrel::alertError, red, {{5.5, 5.5, 10.5, 10.5}, {10.5, 5.5, 5.5, 10.5}}},
      {tavrel::alertNote, blue, {{8, 4.7, 8, 4.7}, {8, 7.5, 8, 11.5}}},
      {tavrel::alertQuestion,
       blue,
       {{5.9, 6, 6.2, 5},
        {6.2, 5, 7.2, 4.3},
        {7.2, 4.3, 8.8, 4.3},
        {8.8, 4.3, 9.8, 5},
        {9.8, 5, 10.1, 6},
        {10.1, 6, 9.6, 7.1},
        {9.6, 7.1, 8.4, 8},
        {8.4, 8, 8, 9},
        {8, 9, 8, 9.3},
        {8, 11.8, 8, 11.8}}},
  };
  return all;
}

} // namespace

void showSymbol(Widget messageBox, int32_t icon, double scale) {
  constexpr double pixels = 32, disc = 7.5, pen = 0.95;
  const int size = static_cast<int>(std::lround(pixels * scale));
  for (const Symbol &symbol : symbols()) {
    if (symbol.icon != icon) continue;
    Pixel backgroundPixel = 0;
    XtVaGetValues(messageBox, XmNbackground, &backgroundPixel, nullptr);
    const Colors colors(messageBox);
    const std::vector<Stroke> middle = {{8, 8, 8, 8}};
    const std::vector<uint32_t> image =
        paint({{coverageOf(middle, disc, size), symbol.color}, {coverageOf(symbol.sign, pen, size), {255, 255, 255}}},
              colors.rgb(backgroundPixel));
    const Pixmap pixmap = colors.pixmap(image, size, size);
    XtVaSetValues(messageBox, XmNsymbolPixmap, pixmap, nullptr);
    whenever(messageBox, XmNdestroyCallback,
             [display = XtDisplay(messageBox), pixmap](const XEvent *) { XFreePixmap(display, pixmap); });
  }
}

} // namespace viewer
