// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/pagepainter.h"

#include <algorithm>

#include "viewer/window/colors.h"
#include "viewer/window/motif.h"
#include "viewer/window/toolkit.h"

namespace viewer {

PagePainter::PagePainter(const Toolkit &toolkit, ::Widget area)
    : toolkit_(toolkit), area_(area), border_(colorResource(toolkit.shell(), "pageBorder", "PageBorder", "#A9ACB1")),
      noteColor_(colorResource(toolkit.shell(), "noteColor", "NoteColor", "#70757C")) {
  XtVaGetValues(area_, XmNbackground, &background_, nullptr);
  context_ = XCreateGC(toolkit.display(), DefaultRootWindow(toolkit.display()), 0, nullptr);
  XSetGraphicsExposures(toolkit.display(), context_, False);
}

PagePainter::~PagePainter() { XFreeGC(toolkit_.display(), context_); }

Place PagePainter::areaPlace() const {
  Dimension width = 0, height = 0;
  XtVaGetValues(area_, XmNwidth, &width, XmNheight, &height, nullptr);
  return {0, 0, width, height};
}

void PagePainter::paint(const Shown &shown, const Place &page, const std::string &note) {
  if (XtWindow(area_) == 0) return;
  if (shown.document)
    paintPage(shown, page);
  else
    XClearWindow(toolkit_.display(), XtWindow(area_));
  if (!note.empty()) paintNote(note, shown.document ? page : areaPlace());
}

void PagePainter::fill(Pixel pixel, int left, int top, int right, int bottom) {
  if (right <= left || bottom <= top) return;
  XSetForeground(toolkit_.display(), context_, pixel);
  XFillRectangle(toolkit_.display(), XtWindow(area_), context_, left, top, static_cast<unsigned>(right - left),
                 static_cast<unsigned>(bottom - top));
}

void PagePainter::paintPage(const Shown &shown, const Place &page) {
  const Place area = areaPlace();
  const int left = std::max(0, page.x), top = std::max(0, page.y);
  const int right = std::min(area.width, page.x + page.width), bottom = std::min(area.height, page.y + page.height);
  // Only the area outside of the page is cleared, so that nothing flickers.
  fill(background_, 0, 0, area.width, top);
  fill(background_, 0, bottom, area.width, area.height);
  fill(background_, 0, top, left, bottom);
  fill(background_, right, top, area.width, bottom);
  XSetForeground(toolkit_.display(), context_, border_);
  XDrawRectangle(toolkit_.display(), XtWindow(area_), context_, page.x - 1, page.y - 1,
                 static_cast<unsigned>(page.width + 1), static_cast<unsigned>(page.height + 1));
  if (!shown.drawing) return fill(WhitePixelOfScreen(XtScreen(area_)), left, top, right, bottom);
  const host::Drawing &drawing = *shown.drawing;
  Colors(area_).put(XtWindow(area_), context_, drawing.image.pixels.data(), drawing.image.width, drawing.image.height,
                    page.x + drawing.x, page.y + drawing.y);
}

void PagePainter::paintNote(const std::string &note, const Place &page) {
  XmRenderTable fonts = nullptr;
  XtVaGetValues(toolkit_.shell(), XmNlabelRenderTable, &fonts, nullptr);
  const MotifString text(note);
  Dimension width = 0, height = 0;
  XmStringExtent(fonts, text, &width, &height);
  const int visibleTop = std::max(0, page.y), visibleBottom = std::min(areaPlace().height, page.y + page.height);
  XSetForeground(toolkit_.display(), context_, noteColor_);
  XmStringDraw(toolkit_.display(), XtWindow(area_), fonts, text, context_,
               static_cast<Position>(page.x + (page.width - width) / 2),
               static_cast<Position>((visibleTop + visibleBottom - height) / 2), width, XmALIGNMENT_CENTER,
               XmSTRING_DIRECTION_L_TO_R, nullptr);
}

} // namespace viewer
