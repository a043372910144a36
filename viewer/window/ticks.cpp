// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/ticks.h"

#include <Xm/DrawingA.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "viewer/window/colors.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {

Ticks::Ticks(MainWindow &window, ::Widget parent)
    : window_(window),
      area_(XtVaCreateManagedWidget("ticks", xmDrawingAreaWidgetClass, parent, XmNmarginWidth, 0, XmNmarginHeight, 0,
                                    XmNresizePolicy, XmRESIZE_NONE, XmNtraversalOn, False, nullptr)) {
  ::Display *display = XtDisplay(area_);
  context_ = XCreateGC(display, DefaultRootWindow(display), 0, nullptr);
  XSetForeground(display, context_, colorResource(window.toolkit().shell(), "tickColor", "TickColor", "#D8A200"));
  whenever(area_, XmNexposeCallback, [this](const XEvent *) { paint(); });
  whenever(area_, XmNinputCallback, [this](const XEvent *event) {
    if (event != nullptr && event->type == ButtonPress) press(event->xbutton.y);
  });
}

Ticks::~Ticks() { XFreeGC(window_.toolkit().display(), context_); }

void Ticks::update() {
  std::vector<int32_t> pages = window_.model().documents.markedPages();
  if (pages == pages_) return;
  pages_ = std::move(pages);
  paint();
}

void Ticks::paint() {
  if (XtWindow(area_) == 0) return;
  ::Display *display = XtDisplay(area_);
  XClearWindow(display, XtWindow(area_));
  Dimension width = 0, height = 0;
  XtVaGetValues(area_, XmNwidth, &width, XmNheight, &height, nullptr);
  const int pages = std::max(1, window_.model().documents.pageCount());
  const int thickness = std::max(2, window_.pixels(2));
  for (const int32_t page : pages_) {
    const int y = static_cast<int>((page + 0.5) * height / pages) - thickness / 2;
    XFillRectangle(display, XtWindow(area_), context_, 1, y, width - 2U, static_cast<unsigned>(thickness));
  }
}

// Goes to the page of the nearest tick.
void Ticks::press(int y) {
  Dimension height = 1;
  XtVaGetValues(area_, XmNheight, &height, nullptr);
  if (pages_.empty() || height == 0) return;
  const double pressed = 1.0 * y * window_.model().documents.pageCount() / height - 0.5;
  const auto nearest = std::min_element(pages_.begin(), pages_.end(), [=](int32_t a, int32_t b) {
    return std::abs(a - pressed) < std::abs(b - pressed);
  });
  const Model &model = window_.model();
  model.moving.goToPage(*nearest);
  if (model.documents.front() == nullptr || window_.app().calling()) return;
  window_.app().markedPageChosen(*model.documents.front());
  model.changes.note(allParts);
}

} // namespace viewer
