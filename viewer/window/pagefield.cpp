// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/pagefield.h"

#include <Xm/Label.h>
#include <Xm/TextF.h>

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

} // namespace

std::array<::Widget, 2> PageField::create(::Widget bar) {
  fieldText_.clear();
  countText_.clear();
  field_ = XtVaCreateManagedWidget("pageField", xmTextFieldWidgetClass, bar, XmNcolumns, digits, XmNmarginHeight,
                                   window_.pixels(3), XmNmarginWidth, window_.pixels(4), XmNcursorPositionVisible,
                                   False, nullptr);
  whenever(field_, XmNfocusCallback,
           [this](const XEvent *) { XtVaSetValues(field_, XmNcursorPositionVisible, True, nullptr); });
  whenever(field_, XmNlosingFocusCallback,
           [this](const XEvent *) { XtVaSetValues(field_, XmNcursorPositionVisible, False, nullptr); });
  count_ = XtVaCreateManagedWidget("pageCount", xmLabelWidgetClass, bar, XmNmarginHeight, window_.pixels(5),
                                   XmNalignment, XmALIGNMENT_BEGINNING, XmNrecomputeSize, False, nullptr);
  setLabel(count_, " ");
  reserve(count_, "of " + std::string(digits, '0'));
  editAsUsual(field_);
  whenever(field_, XmNactivateCallback, [this](const XEvent *) { take(); });
  const std::string leaves = withoutOtherModifiers("<Key>osfCancel: do(Escape)");
  XtOverrideTranslations(field_, XtParseTranslationTable(leaves.c_str()));
  return {field_, count_};
}

void PageField::update() {
  const Model &model = window_.model();
  const bool there = model.documents.front() != nullptr;
  const std::string number = there ? std::to_string(model.documents.page() + 1) : "";
  const std::string count = there ? "of " + std::to_string(model.documents.pageCount()) : "";
  if (number != fieldText_) {
    fieldText_ = number;
    XmTextFieldSetString(field_, fieldText_.data());
  }
  if (count != countText_) {
    countText_ = count;
    setLabel(count_, count);
    reserve(count_, count);
  }
  setSensitive(field_, there);
}

void PageField::restore() {
  fieldText_.clear();
  update();
}

void PageField::take() {
  fieldText_ = textOf(field_); // what the field shows now
  goToTypedPage(window_.model(), fieldText_);
  window_.focusPage();
}

} // namespace viewer
