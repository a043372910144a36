// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The widgets of the tool bar. They are created again when buttons are added, removed or moved, which happens once or
// twice in a model.
#include "viewer/window/toolbarview.h"

#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/TextF.h>

#include <algorithm>
#include <cstdlib>

#include "viewer/window/actions.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"
#include "viewer/window/textediting.h"
#include "viewer/window/translations.h"

namespace viewer {
namespace {

constexpr int digits = 5; // of a page's number, for which there is space

// Makes a label wide enough for a text. It never becomes narrower: the buttons after it would move.
void reserve(::Widget label, const std::string &text) {
  XmRenderTable fonts = nullptr;
  Dimension width = 0, margin = 0;
  XtVaGetValues(label, XmNrenderTable, &fonts, XmNwidth, &width, XmNmarginWidth, &margin, nullptr);
  const MotifString string(text);
  const auto wanted = static_cast<Dimension>(XmStringWidth(fonts, string) + 2 * margin);
  if (wanted > width) XtVaSetValues(label, XmNwidth, wanted, nullptr);
}

// A gap follows these.
constexpr const char *endsOfGroups[] = {"Open", "NextPage", "FitPage"};

} // namespace

ToolBarView::ToolBarView(MainWindow &window, ::Widget parent) : window_(window) {
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
  const Model &model = window_.model();
  const bool there = model.documents.front() != nullptr;
  const std::string number = there ? std::to_string(model.documents.page() + 1) : "";
  const std::string count = there ? "of " + std::to_string(model.documents.pageCount()) : "";
  if (number != fieldText_) {
    fieldText_ = number;
    XmTextFieldSetString(pageField_, fieldText_.data());
  }
  if (count != countText_) {
    countText_ = count;
    setLabel(pageCount_, count);
    reserve(pageCount_, count);
  }
  setSensitive(pageField_, there);
}

void ToolBarView::rebuild(const std::vector<host::ToolButton *> &order) {
  for (const Button &button : buttons_)
    XtDestroyWidget(button.widget);
  for (::Widget widget : others_)
    XtDestroyWidget(widget);
  buttons_.clear();
  others_.clear();
  pageField_ = pageCount_ = nullptr; // were among others_
  fieldText_.clear();
  countText_.clear();
  for (host::ToolButton *model : order) {
    addButton(model);
    const std::string &name = buttons_.back().name;
    if (name == "NextPage") addPageField();
    if (std::any_of(std::begin(endsOfGroups), std::end(endsOfGroups), [&](const char *end) { return name == end; }))
      addGap();
  }
  if (pageField_ == nullptr) addPageField();
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

void ToolBarView::addPageField() {
  pageField_ = XtVaCreateManagedWidget("pageField", xmTextFieldWidgetClass, bar_, XmNcolumns, digits, XmNmarginHeight,
                                       window_.pixels(3), XmNmarginWidth, window_.pixels(4), XmNcursorPositionVisible,
                                       False, nullptr);
  whenever(pageField_, XmNfocusCallback,
           [this](const XEvent *) { XtVaSetValues(pageField_, XmNcursorPositionVisible, True, nullptr); });
  whenever(pageField_, XmNlosingFocusCallback,
           [this](const XEvent *) { XtVaSetValues(pageField_, XmNcursorPositionVisible, False, nullptr); });
  pageCount_ = XtVaCreateManagedWidget("pageCount", xmLabelWidgetClass, bar_, XmNmarginHeight, window_.pixels(5),
                                       XmNalignment, XmALIGNMENT_BEGINNING, XmNrecomputeSize, False, nullptr);
  setLabel(pageCount_, " ");
  reserve(pageCount_, "of " + std::string(digits, '0'));
  others_.insert(others_.end(), {pageField_, pageCount_});
  editAsUsual(pageField_);
  whenever(pageField_, XmNactivateCallback, [this](const XEvent *) { takePage(); });
  const std::string leaves = withoutOtherModifiers("<Key>osfCancel: do(Escape)");
  XtOverrideTranslations(pageField_, XtParseTranslationTable(leaves.c_str()));
}

void ToolBarView::restorePage() {
  fieldText_.clear();
  update();
}

void ToolBarView::takePage() {
  fieldText_ = textOf(pageField_); // what the field shows now
  goToTypedPage(window_.model(), fieldText_);
  window_.focusPage();
}

} // namespace viewer
