// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/pagearea.h"

#include <X11/cursorfont.h>
#include <Xm/DrawingA.h>

#include <algorithm>

#include "viewer/window/actions.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

// In pixels at 96 dots per inch.
constexpr double marginWidth = 12, barWidth = 14, ticksWidth = 8;

::Widget create(const char *name, ::Widget parent) {
  return XtVaCreateManagedWidget(name, xmDrawingAreaWidgetClass, parent, XmNmarginWidth, 0, XmNmarginHeight, 0,
                                 XmNresizePolicy, XmRESIZE_NONE, XmNtraversalOn, True, nullptr);
}

// The wheel scrolls beside the page as on it. The event ends here: the scroll bar would scroll, too.
void wheelBeside(::Widget /*widget*/, XtPointer window, XEvent *event, Boolean *continueToDispatch) {
  const unsigned button = event->xbutton.button;
  if (button != Button4 && button != Button5) return;
  *continueToDispatch = False;
  if (event->type == ButtonPress)
    guarded([&] { static_cast<MainWindow *>(window)->run(*findCommand(button == Button4 ? "WheelUp" : "WheelDown")); });
}

} // namespace

PageArea::PageArea(MainWindow &window, ::Widget parent)
    : window_(window), form_(create("pageArea", parent)), area_(create("page", form_)), bars_(window, form_),
      ticks_(window, form_), painter_(window.toolkit(), area_) {
  XtOverrideTranslations(area_, XtParseTranslationTable(pageTranslations().c_str()));
  // The user's come last: Motif overrides translations that are set at the widget's creation.
  String keys = nullptr;
  XtResource resource{const_cast<char *>(XmNtranslations),
                      const_cast<char *>(XmCTranslations),
                      const_cast<char *>(XmRString),
                      sizeof(String),
                      0,
                      const_cast<char *>(XmRImmediate),
                      nullptr};
  XtGetApplicationResources(area_, &keys, &resource, 1, nullptr, 0);
  if (keys != nullptr) {
    usersTranslations_ = keys;
    XtOverrideTranslations(area_, XtParseTranslationTable(keys));
  }
  for (::Widget beside : {bars_.vertical(), ticks_.widget()})
    XtInsertEventHandler(beside, ButtonPressMask | ButtonReleaseMask, False, wheelBeside, &window_, XtListHead);
  whenever(area_, XmNexposeCallback, [this](const XEvent *event) {
    if (event == nullptr || event->xexpose.count == 0) show();
  });
  whenever(form_, XmNresizeCallback, [this](const XEvent *) { layOut(); });
}

int PageArea::margin(const Toolkit &toolkit) { return toolkit.pixels(marginWidth); }

int PageArea::windowWidth(const Toolkit &toolkit, int shellWidth) {
  return shellWidth - toolkit.pixels(barWidth) - toolkit.pixels(ticksWidth) - 2 * margin(toolkit);
}

void PageArea::layOut() {
  Dimension width = 0, height = 0;
  XtVaGetValues(form_, XmNwidth, &width, XmNheight, &height, nullptr);
  const int bar = window_.pixels(barWidth), ticks = window_.pixels(ticksWidth);
  const int areaWidth = std::max(1, width - bar - ticks), areaHeight = std::max(1, height - (bars_.isWide() ? bar : 0));
  const auto put = [](::Widget widget, int x, int y, int itsWidth, int itsHeight) {
    XtVaSetValues(widget, XmNx, x, XmNy, y, XmNwidth, std::max(1, itsWidth), XmNheight, std::max(1, itsHeight),
                  nullptr);
  };
  put(area_, 0, 0, areaWidth, areaHeight);
  put(bars_.vertical(), areaWidth, 0, bar, height);
  put(ticks_.widget(), areaWidth + bar, 0, ticks, height);
  put(bars_.horizontal(), 0, areaHeight, areaWidth, bar);
  if (areaWidth == width_ && areaHeight == height_) return;
  width_ = areaWidth;
  height_ = areaHeight;
  const int around = margin(window_.toolkit());
  window_.model().moving.setWindow(std::max(1, width_ - 2 * around), std::max(1, height_ - 2 * around), around);
}

Place PageArea::pagePlace() const {
  const Shown &shown = window_.model().screen.shown();
  const int around = margin(window_.toolkit());
  const int spaceX = width_ - 2 * around - shown.pageWidth;
  return {around + std::max(0, spaceX / 2) - shown.scrollX, around - shown.scrollY, shown.pageWidth, shown.pageHeight};
}

void PageArea::show() { painter_.paint(window_.model().screen.shown(), pagePlace(), note_); }

void PageArea::note(const std::string &text) {
  if (text == note_) return;
  note_ = text;
  show();
}

void PageArea::update() {
  if (bars_.update(std::max(1, width_ - 2 * margin(window_.toolkit())))) layOut();
  ticks_.update();
}

void PageArea::beginDrag(const XEvent &event) {
  window_.focusPage();
  dragX_ = event.xbutton.x_root;
  dragY_ = event.xbutton.y_root;
  dragging_ = true;
  const Cursor hand = XCreateFontCursor(XtDisplay(area_), XC_fleur);
  XDefineCursor(XtDisplay(area_), XtWindow(area_), hand);
  XFreeCursor(XtDisplay(area_), hand);
}

void PageArea::drag(const XEvent &event) {
  if (!dragging_) return;
  window_.model().moving.drag(dragX_ - event.xmotion.x_root, dragY_ - event.xmotion.y_root);
  dragX_ = event.xmotion.x_root;
  dragY_ = event.xmotion.y_root;
}

void PageArea::endDrag() {
  dragging_ = false;
  XUndefineCursor(XtDisplay(area_), XtWindow(area_));
}

} // namespace viewer
