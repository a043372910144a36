// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Paints the page and its surroundings. The window shows the session's last drawing, so that an exposure never calls a
// plug-in.
#include "viewer/window/pagearea.h"

#include <X11/cursorfont.h>
#include <Xm/DrawingA.h>
#include <Xm/ScrollBar.h>

#include <algorithm>
#include <cmath>

#include "viewer/window/actions.h"
#include "viewer/window/colors.h"
#include "viewer/window/mainwindow.h"

namespace viewer {
namespace {

// In pixels at 96 dots per inch.
constexpr double marginWidth = 12, barWidth = 14, ticksWidth = 8;

} // namespace

PageArea::PageArea(MainWindow &window, ::Widget parent) : window_(window) {
  const auto create = [](const char *name, WidgetClass type, ::Widget above) {
    return XtVaCreateManagedWidget(name, type, above, XmNmarginWidth, 0, XmNmarginHeight, 0, XmNresizePolicy,
                                   XmRESIZE_NONE, XmNtraversalOn, False, XmNshowArrows, XmNONE, nullptr);
  };
  form_ = create("pageArea", xmDrawingAreaWidgetClass, parent);
  XtVaSetValues(form_, XmNtraversalOn, True, nullptr);
  area_ = create("page", xmDrawingAreaWidgetClass, form_);
  XtVaSetValues(area_, XmNtraversalOn, True, nullptr);
  vertical_ = create("verticalBar", xmScrollBarWidgetClass, form_);
  horizontal_ = create("horizontalBar", xmScrollBarWidgetClass, form_);
  XtVaSetValues(horizontal_, XmNorientation, XmHORIZONTAL, nullptr);
  XtUnmanageChild(horizontal_);
  ticksArea_ = create("ticks", xmDrawingAreaWidgetClass, form_);
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
  XtVaGetValues(area_, XmNbackground, &background_, nullptr);
  border_ = color("pageBorder", "PageBorder", "#A9ACB1");
  tick_ = color("tickColor", "TickColor", "#D8A200");
  noteColor_ = color("noteColor", "NoteColor", "#70757C");
  context_ = XCreateGC(window.toolkit().display(), DefaultRootWindow(window.toolkit().display()), 0, nullptr);
  XSetGraphicsExposures(window.toolkit().display(), context_, False);
  whenever(area_, XmNexposeCallback, [this](const XEvent *event) {
    if (event == nullptr || event->xexpose.count == 0) paint();
  });
  whenever(form_, XmNresizeCallback, [this](const XEvent *) { layOut(); });
  whenever(ticksArea_, XmNexposeCallback, [this](const XEvent *) { paintTicks(); });
  whenever(ticksArea_, XmNinputCallback, [this](const XEvent *event) {
    if (event != nullptr && event->type == ButtonPress) tickPressed(event->xbutton.y);
  });
  for (const char *callback : {XmNvalueChangedCallback, XmNdragCallback}) {
    const bool held = std::string(callback) == XmNdragCallback;
    whenever(vertical_, callback, [this, held](const XEvent *) {
      held_ = held;
      sliderMoved();
    });
    whenever(horizontal_, callback, [this](const XEvent *) { movedSideways(); });
  }
  // The trough does what the keys do: the toolkit's increment knows nothing of pages.
  for (const auto &[callback, command] :
       {std::pair{XmNpageIncrementCallback, "PageDown"}, std::pair{XmNpageDecrementCallback, "PageUp"}})
    whenever(vertical_, callback, [this, command = findCommand(command)](const XEvent *) {
      window_.run(*command);
      window_.model().changes.note(partPage); // the toolkit has moved the slider
    });
  for (::Widget beside : {vertical_, ticksArea_})
    XtOverrideTranslations(beside, XtParseTranslationTable("<Btn5Down>: do(WheelDown)\n<Btn4Down>: do(WheelUp)\n"));
}

int PageArea::margin(const Toolkit &toolkit) { return toolkit.pixels(marginWidth); }

int PageArea::windowWidth(const Toolkit &toolkit, int shellWidth) {
  return shellWidth - toolkit.pixels(barWidth) - toolkit.pixels(ticksWidth) - 2 * margin(toolkit);
}

PageArea::~PageArea() { XFreeGC(window_.toolkit().display(), context_); }

Pixel PageArea::color(const char *name, const char *className, const char *otherwise) const {
  Pixel pixel = 0;
  XtResource resource{
      const_cast<char *>(name),      const_cast<char *>(className), const_cast<char *>(XmRPixel), sizeof(Pixel), 0,
      const_cast<char *>(XmRString), const_cast<char *>(otherwise)};
  XtGetApplicationResources(window_.toolkit().shell(), &pixel, &resource, 1, nullptr, 0);
  return pixel;
}

void PageArea::layOut() {
  Dimension width = 0, height = 0;
  XtVaGetValues(form_, XmNwidth, &width, XmNheight, &height, nullptr);
  const int bar = window_.pixels(barWidth), ticks = window_.pixels(ticksWidth);
  const int areaWidth = std::max(1, width - bar - ticks), areaHeight = std::max(1, height - (wide_ ? bar : 0));
  const auto put = [](::Widget widget, int x, int y, int itsWidth, int itsHeight) {
    XtVaSetValues(widget, XmNx, x, XmNy, y, XmNwidth, std::max(1, itsWidth), XmNheight, std::max(1, itsHeight),
                  nullptr);
  };
  put(area_, 0, 0, areaWidth, areaHeight);
  put(vertical_, areaWidth, 0, bar, height);
  put(ticksArea_, areaWidth + bar, 0, ticks, height);
  put(horizontal_, 0, areaHeight, areaWidth, bar);
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

void PageArea::show() { paint(); }

void PageArea::paint() {
  if (XtWindow(area_) == 0) return;
  ::Display *display = XtDisplay(area_);
  const ::Window target = XtWindow(area_);
  const Shown &shown = window_.model().screen.shown();
  if (!shown.document) {
    XClearWindow(display, target);
    if (!note_.empty()) paintNote({0, 0, width_, height_});
    return;
  }
  const Place page = pagePlace();
  // Only the area outside of the page is cleared, so that nothing flickers.
  const auto fill = [&](Pixel pixel, int left, int top, int right, int bottom) {
    if (right <= left || bottom <= top) return;
    XSetForeground(display, context_, pixel);
    XFillRectangle(display, target, context_, left, top, static_cast<unsigned>(right - left),
                   static_cast<unsigned>(bottom - top));
  };
  const int left = std::max(0, page.x), top = std::max(0, page.y);
  const int right = std::min(width_, page.x + page.width), bottom = std::min(height_, page.y + page.height);
  fill(background_, 0, 0, width_, top);
  fill(background_, 0, bottom, width_, height_);
  fill(background_, 0, top, left, bottom);
  fill(background_, right, top, width_, bottom);
  XSetForeground(display, context_, border_);
  XDrawRectangle(display, target, context_, page.x - 1, page.y - 1, static_cast<unsigned>(page.width + 1),
                 static_cast<unsigned>(page.height + 1));
  if (shown.drawing) {
    const host::Drawing &drawing = *shown.drawing;
    Colors(area_).put(target, context_, drawing.image.pixels.data(), drawing.image.width, drawing.image.height,
                      page.x + drawing.x, page.y + drawing.y);
  } else {
    fill(WhitePixelOfScreen(XtScreen(area_)), left, top, right, bottom);
  }
  if (!note_.empty()) paintNote(page);
}

void PageArea::note(const std::string &text) {
  if (text == note_) return;
  note_ = text;
  paint();
}

void PageArea::paintNote(const Place &page) {
  XmRenderTable fonts = nullptr;
  XtVaGetValues(window_.toolkit().shell(), XmNlabelRenderTable, &fonts, nullptr);
  const MotifString text(note_);
  Dimension width = 0, height = 0;
  XmStringExtent(fonts, text, &width, &height);
  const int visibleTop = std::max(0, page.y), visibleBottom = std::min(height_, page.y + page.height);
  XSetForeground(XtDisplay(area_), context_, noteColor_);
  XmStringDraw(XtDisplay(area_), XtWindow(area_), fonts, text, context_,
               static_cast<Position>(page.x + (page.width - width) / 2),
               static_cast<Position>((visibleTop + visibleBottom - height) / 2), width, XmALIGNMENT_CENTER,
               XmSTRING_DIRECTION_L_TO_R, nullptr);
}

void PageArea::update() {
  const Model &model = window_.model();
  if (!held_) {
    const Slider slider = model.moving.slider();
    XtVaSetValues(vertical_, XmNmaximum, slider.range, XmNsliderSize, slider.size, XmNvalue, slider.value,
                  XmNpageIncrement, slider.size, nullptr);
  }
  const Shown &shown = model.screen.shown();
  const int window = std::max(1, width_ - 2 * margin(window_.toolkit()));
  const bool wide = shown.document && shown.pageWidth > window;
  if (wide != wide_) {
    wide_ = wide;
    if (wide)
      XtManageChild(horizontal_);
    else
      XtUnmanageChild(horizontal_);
    layOut();
  }
  if (wide)
    XtVaSetValues(horizontal_, XmNmaximum, shown.pageWidth, XmNsliderSize, std::min(window, shown.pageWidth), XmNvalue,
                  std::clamp(shown.scrollX, 0, std::max(0, shown.pageWidth - window)), XmNincrement,
                  margin(window_.toolkit()), XmNpageIncrement, window, nullptr);
  if (std::vector<int32_t> ticks = model.documents.markedPages(); ticks != ticks_) {
    ticks_ = std::move(ticks);
    paintTicks();
  }
}

void PageArea::paintTicks() {
  if (XtWindow(ticksArea_) == 0) return;
  ::Display *display = XtDisplay(ticksArea_);
  XClearWindow(display, XtWindow(ticksArea_));
  if (ticks_.empty()) return;
  Dimension width = 0, height = 0;
  XtVaGetValues(ticksArea_, XmNwidth, &width, XmNheight, &height, nullptr);
  XSetForeground(display, context_, tick_);
  const int pages = std::max(1, window_.model().documents.pageCount());
  const int thickness = std::max(2, window_.pixels(2));
  for (const int32_t page : ticks_) {
    const int y = static_cast<int>((page + 0.5) * height / pages) - thickness / 2;
    XFillRectangle(display, XtWindow(ticksArea_), context_, 1, y, width - 2U, static_cast<unsigned>(thickness));
  }
}

// Goes to the page of the nearest tick.
void PageArea::tickPressed(int y) {
  Dimension height = 1;
  XtVaGetValues(ticksArea_, XmNheight, &height, nullptr);
  if (ticks_.empty() || height == 0) return;
  const double pressed = 1.0 * y * window_.model().documents.pageCount() / height - 0.5;
  const auto nearest = std::min_element(ticks_.begin(), ticks_.end(), [=](int32_t a, int32_t b) {
    return std::abs(a - pressed) < std::abs(b - pressed);
  });
  window_.model().moving.goToPage(*nearest);
}

void PageArea::sliderMoved() {
  int value = 0, size = 0;
  XtVaGetValues(vertical_, XmNvalue, &value, XmNsliderSize, &size, nullptr);
  window_.model().moving.setSlider(value, size);
  window_.model().changes.note(allParts);
}

void PageArea::movedSideways() {
  const Model &model = window_.model();
  if (model.documents.view() == nullptr) return;
  int value = 0;
  XtVaGetValues(horizontal_, XmNvalue, &value, nullptr);
  model.moving.drag(value - model.documents.view()->scrollX(), 0);
  model.changes.note(allParts);
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
