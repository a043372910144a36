// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/scrollbars.h"

#include <Xm/ScrollBar.h>

#include <algorithm>
#include <string>
#include <utility>

#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

::Widget create(const char *name, ::Widget parent) {
  return XtVaCreateManagedWidget(name, xmScrollBarWidgetClass, parent, XmNtraversalOn, False, XmNshowArrows, XmNONE,
                                 nullptr);
}

} // namespace

ScrollBars::ScrollBars(MainWindow &window, ::Widget parent)
    : window_(window), vertical_(create("verticalBar", parent)), horizontal_(create("horizontalBar", parent)) {
  XtVaSetValues(horizontal_, XmNorientation, XmHORIZONTAL, nullptr);
  XtUnmanageChild(horizontal_);
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
}

bool ScrollBars::update(int width) {
  const Model &model = window_.model();
  if (!held_) {
    const Slider slider = model.moving.slider();
    XtVaSetValues(vertical_, XmNmaximum, slider.range, XmNsliderSize, slider.size, XmNvalue, slider.value,
                  XmNpageIncrement, slider.size, nullptr);
  }
  const Shown &shown = model.screen.shown();
  const bool wide = shown.document && shown.pageWidth > width, changes = wide != wide_;
  if (changes) {
    wide_ = wide;
    if (wide)
      XtManageChild(horizontal_);
    else
      XtUnmanageChild(horizontal_);
  }
  if (wide)
    XtVaSetValues(horizontal_, XmNmaximum, shown.pageWidth, XmNsliderSize, width, XmNvalue,
                  std::clamp(shown.scrollX, 0, shown.pageWidth - width), XmNpageIncrement, width, nullptr);
  return changes;
}

void ScrollBars::sliderMoved() {
  int value = 0, size = 0;
  XtVaGetValues(vertical_, XmNvalue, &value, XmNsliderSize, &size, nullptr);
  window_.model().moving.setSlider(value, size);
  window_.model().changes.note(allParts);
}

void ScrollBars::movedSideways() {
  const Model &model = window_.model();
  const PageWindow *shown = model.documents.window();
  if (shown == nullptr) return;
  int value = 0;
  XtVaGetValues(horizontal_, XmNvalue, &value, nullptr);
  model.moving.drag(value - shown->scrollX(), 0);
  model.changes.note(allParts);
}

} // namespace viewer
