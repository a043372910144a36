// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/listpanel.h"

#include <Xm/DrawingA.h>
#include <Xm/Label.h>

#include <algorithm>

#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

constexpr int widthInDigits = 36;
constexpr int leastDigits = 8;
constexpr double margin = 8, edgeWidth = 5; // in pixels at 96 dots per inch

} // namespace

ListPanel::ListPanel(MainWindow &window, ::Widget parent, ::Widget page)
    : window_(window), page_(page),
      // Its size is not that of its children.
      panel_(XtVaCreateWidget("sidePanel", xmDrawingAreaWidgetClass, parent, XmNmarginWidth, 0, XmNmarginHeight, 0,
                              XmNresizePolicy, XmRESIZE_NONE, nullptr)),
      title_(XtVaCreateManagedWidget("title", xmLabelWidgetClass, panel_, XmNalignment, XmALIGNMENT_BEGINNING,
                                     XmNrecomputeSize, False, XmNmarginWidth, window.pixels(margin), nullptr)),
      rows_(std::make_unique<RowsView>(window, panel_, title_)) {
  setLabel(title_, " ");
  ::Widget above = nullptr, below = nullptr;
  XtVaGetValues(page, XmNtopWidget, &above, XmNbottomWidget, &below, nullptr);
  XtVaSetValues(panel_, XmNleftAttachment, XmATTACH_FORM, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, above,
                XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, below, nullptr);
  whenever(panel_, XmNresizeCallback, [this](const XEvent *) { layOut(); });
  // A narrower window does not change the panel itself.
  XtAddEventHandler(parent, StructureNotifyMask, False, resized, this);
  edge_ = std::make_unique<PanelEdge>(parent, above, below, window.pixels(edgeWidth), [this](int left) {
    draggedWidth_ = left;
    place();
  });
}

// As wide as a short line of text, but the page is the larger part of the window, unless the user has dragged the edge.
int ListPanel::width() const {
  Dimension all = 0;
  XtVaGetValues(window_.toolkit().shell(), XmNwidth, &all, nullptr);
  const auto withText = [this](int digits) { return rows_->painter().digits(digits) + RowsView::barWidth(window_); };
  if (draggedWidth_ == 0) return std::min(withText(widthInDigits), all * 2 / 5);
  const int least = withText(leastDigits);
  return std::clamp(draggedWidth_, least, std::max(least, all * 4 / 5));
}

void ListPanel::resized(::Widget /*parent*/, XtPointer self, XEvent *event, Boolean * /*continueToDispatch*/) {
  auto &panel = *static_cast<ListPanel *>(self);
  if (event->type == ConfigureNotify && panel.isShown()) guarded([&] { panel.place(); });
}

// The form asks a child for its width, and a drawing area has none: all are placed by their distance from the left.
void ListPanel::place() {
  const int right = width();
  XtVaSetValues(panel_, XmNrightAttachment, XmATTACH_OPPOSITE_FORM, XmNrightOffset, -right, nullptr);
  edge_->show(right);
  XtVaSetValues(page_, XmNleftOffset, right + edge_->width(), nullptr);
}

void ListPanel::layOut() {
  Dimension width = 0, height = 0;
  XtVaGetValues(panel_, XmNwidth, &width, XmNheight, &height, nullptr);
  const int top = rows_->painter().rowHeight() + window_.pixels(margin);
  XtVaSetValues(title_, XmNx, 0, XmNy, 0, XmNwidth, width, XmNheight, top, nullptr);
  rows_->put({0, top, width, height - top});
  update();
}

void ListPanel::toggle() {
  if (isShown()) {
    window_.focusPage();
    XtVaSetValues(page_, XmNleftOffset, 0, nullptr);
    XtUnmanageChild(panel_);
    edge_->hide();
    return;
  }
  place();
  XtManageChild(panel_);
  layOut();
  rows_->focus();
}

void ListPanel::update() {
  if (!isShown()) return;
  const host::PluginList *list = window_.model().listTexts.list();
  const std::string title = list == nullptr ? "No list" : list->title + " (" + std::to_string(list->rows) + ")";
  if (title != titleText_) setLabel(title_, titleText_ = title);
  rows_->update();
}

PanelState ListPanel::state() const {
  PanelState state;
  state.shown = isShown();
  state.title = titleText_;
  if (state.shown) rows_->addTo(state);
  return state;
}

} // namespace viewer
