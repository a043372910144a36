// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The widgets of the tool bar. They are created again when buttons are added, removed or moved, which happens once or
// twice in a model.
#include "viewer/window/toolbarview.h"

#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>

#include <algorithm>

#include "viewer/window/actions.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

// A gap follows these.
constexpr const char *endsOfGroups[] = {"Open", "NextPage", "FitPage"};

} // namespace

ToolBarView::ToolBarView(MainWindow &window, ::Widget parent) : window_(window), pageField_(window) {
  bar_ = XtVaCreateManagedWidget("toolbar", xmRowColumnWidgetClass, parent, XmNorientation, XmHORIZONTAL, XmNpacking,
                                 XmPACK_TIGHT, XmNmarginHeight, window.pixels(3), XmNmarginWidth, window.pixels(6),
                                 XmNspacing, window.pixels(2), XmNadjustLast, False, nullptr);
  icons_ = std::make_unique<Icons>(bar_, window.toolkit().scale());
}

void ToolBarView::update() {
  const std::vector<host::ToolButton *> order = window_.app().toolBar()->visible();
  const bool same =
      std::equal(order.begin(), order.end(), buttons_.begin(), buttons_.end(),
                 [](const host::ToolButton *model, const Button &button) { return model == button.model; });
  if (!same) rebuild(order);
  for (Button &button : buttons_) {
    if (button.tip != button.model->tip) {
      button.tip = button.model->tip;
      const MotifString tip(button.tip);
      XtVaSetValues(button.widget, XmNtoolTipString, static_cast<XmString>(tip), nullptr);
    }
    button.enabled = button.model->enabled;
    setSensitive(button.widget, button.enabled);
  }
  pageField_.update();
}

void ToolBarView::rebuild(const std::vector<host::ToolButton *> &order) {
  for (const Button &button : buttons_)
    XtDestroyWidget(button.widget);
  for (::Widget widget : others_)
    XtDestroyWidget(widget);
  buttons_.clear();
  others_.clear();
  bool hasField = false;
  const auto addField = [&] {
    const auto created = pageField_.create(bar_);
    others_.insert(others_.end(), created.begin(), created.end());
    hasField = true;
  };
  for (host::ToolButton *model : order) {
    addButton(model);
    const std::string &name = buttons_.back().name;
    if (name == "NextPage") addField();
    if (std::any_of(std::begin(endsOfGroups), std::end(endsOfGroups), [&](const char *end) { return name == end; }))
      addGap();
  }
  if (!hasField) addField();
}

void ToolBarView::addButton(host::ToolButton *model) {
  const std::string name = host::Runtime::current().atoms.name(model->name);
  ::Widget widget = XtVaCreateManagedWidget(widgetName(name).c_str(), xmPushButtonWidgetClass, bar_, XmNtraversalOn,
                                            False, XmNmarginWidth, window_.pixels(4), XmNmarginHeight,
                                            window_.pixels(4), XmNrecomputeSize, True, nullptr);
  buttons_.push_back({model, name, widget, {}, true});
  const Pixmap plain = icons_->get(name, static_cast<Pixmap>(model->icon), false);
  if (plain == 0)
    setLabel(widget, name);
  else
    XtVaSetValues(widget, XmNlabelType, XmPIXMAP, XmNlabelPixmap, plain, XmNlabelInsensitivePixmap,
                  icons_->get(name, static_cast<Pixmap>(model->icon), true), nullptr);
  whenever(widget, XmNactivateCallback, [this, model](const XEvent *event) { window_.press(*model, event); });
}

void ToolBarView::addGap() {
  others_.push_back(XtVaCreateManagedWidget("gap", xmLabelWidgetClass, bar_, XmNwidth, window_.pixels(10),
                                            XmNrecomputeSize, False, nullptr));
  setLabel(others_.back(), "");
}

} // namespace viewer
