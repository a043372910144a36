// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The find dialog's widgets, created at the first use and kept.
#include "viewer/window/finddialog.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

#include <algorithm>

#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"
#include "viewer/window/textediting.h"

namespace viewer {

void FindDialog::build() {
  const int gap = window_.pixels(10);
  char name[] = "find";
  form_ = XmCreateFormDialog(window_.toolkit().shell(), name, nullptr, 0);
  const MotifString title("Find");
  XtVaSetValues(form_, XmNdialogTitle, static_cast<XmString>(title), XmNautoUnmanage, False, XmNhorizontalSpacing, gap,
                XmNverticalSpacing, gap, XmNdialogStyle, XmDIALOG_MODELESS, nullptr);
  ::Widget label =
      XtVaCreateManagedWidget("findLabel", xmLabelWidgetClass, form_, XmNleftAttachment, XmATTACH_FORM,
                              XmNtopAttachment, XmATTACH_FORM, XmNtopOffset, gap + window_.pixels(4), nullptr);
  setLabel(label, "Find:");
  field_ = XtVaCreateManagedWidget("findText", xmTextFieldWidgetClass, form_, XmNcolumns, 34, XmNleftAttachment,
                                   XmATTACH_WIDGET, XmNleftWidget, label, XmNtopAttachment, XmATTACH_FORM,
                                   XmNrightAttachment, XmATTACH_FORM, nullptr);
  editAsUsual(field_);
  case_ = XtVaCreateManagedWidget("matchCase", xmToggleButtonWidgetClass, form_, XmNleftAttachment,
                                  XmATTACH_OPPOSITE_WIDGET, XmNleftWidget, field_, XmNleftOffset, 0, XmNtopAttachment,
                                  XmATTACH_WIDGET, XmNtopWidget, field_, nullptr);
  setLabel(case_, "Match case");
  words_ =
      XtVaCreateManagedWidget("wholeWords", xmToggleButtonWidgetClass, form_, XmNleftAttachment, XmATTACH_WIDGET,
                              XmNleftWidget, case_, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, field_, nullptr);
  setLabel(words_, "Whole words");
  message_ =
      XtVaCreateManagedWidget("findMessage", xmLabelWidgetClass, form_, XmNalignment, XmALIGNMENT_BEGINNING,
                              XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, XmNtopAttachment,
                              XmATTACH_WIDGET, XmNtopWidget, case_, XmNrecomputeSize, False, nullptr);
  setLabel(message_, " ");
  ::Widget beside = nullptr, first = nullptr;
  const struct {
    const char *name, *label;
    Reaction reaction;
  } buttons[] = {{"findClose", "Close", [this](const XEvent *) { close(); }},
                 {"findNext", "Find Next", [this](const XEvent *) { find(false); }},
                 {"findPrevious", "Find Previous", [this](const XEvent *) { find(true); }}};
  for (const auto &one : buttons) {
    ::Widget button = XtVaCreateManagedWidget(
        one.name, xmPushButtonWidgetClass, form_, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, message_,
        XmNbottomAttachment, XmATTACH_FORM, XmNrightAttachment, beside == nullptr ? XmATTACH_FORM : XmATTACH_WIDGET,
        XmNrightWidget, beside, XmNmarginWidth, window_.pixels(10), XmNmarginHeight, window_.pixels(4), nullptr);
    setLabel(button, one.label);
    whenever(button, XmNactivateCallback, one.reaction);
    if (first == nullptr) first = button;
    beside = button;
  }
  XtVaSetValues(form_, XmNcancelButton, first, XmNinitialFocus, field_, nullptr);
  whenever(field_, XmNactivateCallback, [this](const XEvent *) { find(false); });
}

void FindDialog::open() {
  if (form_ == nullptr) {
    build();
    // At the right edge: matches are scrolled to the middle of the page.
    const Place area = placeOf(window_.pageArea().page());
    XtWidgetGeometry wanted{};
    XtQueryGeometry(form_, nullptr, &wanted);
    XtVaSetValues(form_, XmNdefaultPosition, False, XmNx,
                  std::max(0, area.x + area.width - wanted.width - window_.pixels(20)), XmNy,
                  area.y + window_.pixels(12), nullptr);
  }
  XtManageChild(form_);
  XtPopup(XtParent(form_), XtGrabNone);
  XRaiseWindow(XtDisplay(form_), XtWindow(XtParent(form_)));
  XmProcessTraversal(field_, XmTRAVERSE_CURRENT);
  XmTextFieldSetSelection(field_, 0, XmTextFieldGetLastPosition(field_), CurrentTime);
}

void FindDialog::close() {
  if (form_ != nullptr) XtUnmanageChild(form_);
}

void FindDialog::update() {
  if (form_ == nullptr) return;
  std::string message = window_.model().finding.message();
  if (message == shownMessage_) return;
  shownMessage_ = message;
  setLabel(message_, message.empty() ? " " : message);
}

void FindDialog::find(bool backwards) {
  FindRequest request;
  request.text = textOf(field_);
  request.options.matchCase = XmToggleButtonGetState(case_) != 0;
  request.options.wholeWords = XmToggleButtonGetState(words_) != 0;
  window_.model().finding.find(request, backwards);
}

} // namespace viewer
