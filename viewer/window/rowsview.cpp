// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/rowsview.h"

#include <Xm/DrawingA.h>
#include <Xm/ScrollBar.h>

#include <algorithm>
#include <chrono>

#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

// The time that the texts of rows may take in one iteration of the event loop.
constexpr auto atMost = std::chrono::milliseconds(4);
// The toolkit's scroll bars count in int.
constexpr uint32_t mostRows = 10'000'000;
constexpr int wheelRows = 3;

::Widget createRows(::Widget parent) {
  return XtVaCreateManagedWidget("rows", xmDrawingAreaWidgetClass, parent, XmNmarginWidth, 0, XmNmarginHeight, 0,
                                 XmNtraversalOn, True, nullptr);
}

} // namespace

RowsView::RowsView(MainWindow &window, ::Widget parent, ::Widget label)
    : window_(window), rows_(createRows(parent)),
      bar_(XtVaCreateManagedWidget("rowsBar", xmScrollBarWidgetClass, parent, XmNshowArrows, XmNONE, XmNtraversalOn,
                                   False, nullptr)),
      painter_(window, rows_, label) {
  whenever(rows_, XmNexposeCallback, [this](const XEvent *event) {
    if (event == nullptr || event->xexpose.count == 0) paint();
  });
  whenever(rows_, XmNinputCallback, [this](const XEvent *event) {
    if (event != nullptr && event->type == ButtonPress) press(event->xbutton);
  });
  for (const char *callback : {XmNvalueChangedCallback, XmNdragCallback})
    whenever(bar_, callback, [this](const XEvent *) {
      int value = 0;
      XtVaGetValues(bar_, XmNvalue, &value, nullptr);
      scrollTo(value);
    });
  addRowsKeys(window.toolkit().context(), rows_, *this);
  // The cursor is visible only while the rows have the keyboard.
  const auto focusChanged = [](::Widget, XtPointer self, XEvent *, Boolean *) {
    guarded([self] { static_cast<RowsView *>(self)->paint(); });
  };
  XtAddEventHandler(rows_, FocusChangeMask, False, focusChanged, this);
}

RowsView::~RowsView() {
  if (timer_ != 0) XtRemoveTimeOut(timer_);
}

int RowsView::barWidth(const MainWindow &window) { return window.pixels(14); }

void RowsView::put(const Place &place) {
  place_ = place;
  layOut();
}

// The scroll bar is there only if there is something to scroll.
void RowsView::layOut() {
  const bool scrolls = position_.rows() > position_.whole();
  const int bar = scrolls ? barWidth(window_) : 0, height = std::max(1, place_.height);
  XtVaSetValues(rows_, XmNx, place_.x, XmNy, place_.y, XmNwidth, std::max(1, place_.width - bar), XmNheight, height,
                nullptr);
  if (!scrolls) return XtUnmanageChild(bar_);
  XtVaSetValues(bar_, XmNx, place_.x + place_.width - bar, XmNy, place_.y, XmNwidth, bar, XmNheight, height, nullptr);
  XtManageChild(bar_);
}

void RowsView::focus() { XmProcessTraversal(rows_, XmTRAVERSE_CURRENT); }

uint32_t RowsView::count() const {
  const host::PluginList *list = window_.model().listTexts.list();
  return list == nullptr ? 0 : std::min(list->rows, mostRows);
}

// A current row that was visible stays visible.
void RowsView::resize() {
  const bool scrolled = XtIsManaged(bar_) != 0, visible = current_ && position_.shows(*current_);
  const uint32_t before = position_.whole();
  position_.resize(count(), static_cast<uint32_t>(std::max(0, place_.height) / painter_.rowHeight()));
  if (visible && position_.whole() != before && !position_.shows(*current_)) position_.goTo(*current_);
  if (scrolled != (position_.rows() > position_.whole())) layOut();
}

void RowsView::scrollTo(int64_t row) {
  position_.scrollTo(row);
  show();
}

void RowsView::follow() {
  const host::PluginList *list = window_.model().listTexts.list();
  const uint64_t number = list == nullptr ? 0 : list->number;
  const auto now = list == nullptr ? std::optional<uint32_t>() : list->current;
  const bool isNew = number != list_, moved = now != current_;
  list_ = number;
  current_ = now;
  if (isNew) position_.moveCursor(0);
  if (now && (isNew || moved)) position_.goTo(*now);
}

void RowsView::update() {
  resize();
  follow();
  show();
}

void RowsView::show() {
  const uint32_t all = std::max(1U, position_.rows()), visible = std::min(all, position_.whole());
  XtVaSetValues(bar_, XmNmaximum, all, XmNsliderSize, visible, XmNvalue, position_.first(), XmNpageIncrement, visible,
                nullptr);
  fill();
}

// Asks for what is visible; the rest follows in further iterations of the event loop. Nothing can be asked while a
// plug-in's alert is open: each call that may show one is followed by an update.
void RowsView::fill() {
  const bool complete = window_.model().listTexts.fetch(position_.first(), position_.whole() + 1, atMost);
  paint();
  if (complete || timer_ != 0 || window_.app().calling()) return;
  constexpr unsigned long soon = 1; // milliseconds
  const auto goOn = [](XtPointer self, XtIntervalId *) {
    auto &view = *static_cast<RowsView *>(self);
    view.timer_ = 0;
    guarded([&view] { view.fill(); });
  };
  timer_ = XtAppAddTimeOut(window_.toolkit().context(), soon, goOn, this);
}

void RowsView::paint() {
  if (XtWindow(rows_) == 0) return;
  ++paints_;
  Dimension width = 0, height = 0;
  XtVaGetValues(rows_, XmNwidth, &width, XmNheight, &height, nullptr);
  const bool hasKeyboard = XmGetFocusWidget(rows_) == rows_;
  int y = 0;
  for (uint32_t row = position_.first(); row < position_.rows() && y < height; ++row, y += painter_.rowHeight())
    painter_.paint(window_.model().listTexts.text(row), y, {current_ == row, position_.cursor() == row && hasKeyboard});
  if (y < height) XClearArea(XtDisplay(rows_), XtWindow(rows_), 0, y, width, static_cast<unsigned>(height - y), False);
}

void RowsView::choose(uint32_t row) {
  window_.model().listTexts.choose(row);
  window_.model().changes.note(allParts);
}

void RowsView::press(const XButtonEvent &event) {
  if (event.button == Button4) return scrollTo(int64_t{position_.first()} - wheelRows);
  if (event.button == Button5) return scrollTo(int64_t{position_.first()} + wheelRows);
  const int64_t row = position_.first() + int64_t{event.y} / painter_.rowHeight();
  if (event.button == Button1 && row < position_.rows()) choose(static_cast<uint32_t>(row));
}

void RowsView::moveCursor(int64_t row) {
  position_.moveCursor(row);
  show();
}

void RowsView::act(const std::string &what) {
  const int64_t row = position_.cursor(), page = position_.whole();
  if (what == "up") moveCursor(row - 1);
  if (what == "down") moveCursor(row + 1);
  if (what == "pageUp") moveCursor(row - page);
  if (what == "pageDown") moveCursor(row + page);
  if (what == "first") moveCursor(0);
  if (what == "last") moveCursor(int64_t{position_.rows()} - 1);
  if (what == "choose") choose(position_.cursor());
  if (what == "leave") window_.focusPage();
}

void RowsView::addTo(PanelState &state) const {
  state.first = position_.first();
  state.current = current_ ? int64_t{*current_} : -1;
  state.rowHeight = painter_.rowHeight();
  state.place = placeOf(rows_);
  state.paints = paints_;
  for (uint32_t row = position_.first(); row < position_.end(); ++row) {
    const host::ListText *text = window_.model().listTexts.text(row);
    state.texts.push_back(text == nullptr ? "" : text->text);
  }
}

} // namespace viewer
