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
#include <optional>
#include <utility>
#include <vector>

#include "viewer/model/aside.h"
#include "viewer/window/findkeys.h"
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
  constexpr int columns = 44; // so wide that the number of matches has space beside the buttons
  field_ = XtVaCreateManagedWidget("findText", xmTextFieldWidgetClass, form_, XmNcolumns, columns, XmNleftAttachment,
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
  ::Widget beside = nullptr;
  std::vector<::Widget> made;
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
    made.push_back(button);
    beside = button;
  }
  count_ = XtVaCreateManagedWidget("findCount", xmLabelWidgetClass, form_, XmNalignment, XmALIGNMENT_BEGINNING,
                                   XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_WIDGET,
                                   XmNrightWidget, beside, XmNtopAttachment, XmATTACH_OPPOSITE_WIDGET, XmNtopWidget,
                                   beside, XmNtopOffset, 0, XmNbottomAttachment, XmATTACH_OPPOSITE_WIDGET,
                                   XmNbottomWidget, beside, XmNbottomOffset, 0, XmNrecomputeSize, False, nullptr);
  setLabel(count_, " ");
  addFindKeys(field_, {case_, words_, made[0], made[1], made[2]}, [this](bool backwards) { find(backwards); });
  // Return in the field or on a check box presses the default button.
  XtVaSetValues(form_, XmNcancelButton, made[0], XmNdefaultButton, made[1], XmNinitialFocus, field_, nullptr);
  whenever(field_, XmNvalueChangedCallback, [this](const XEvent *) { update(); });
  for (::Widget option : {case_, words_})
    whenever(option, XmNvalueChangedCallback, [this](const XEvent *) { update(); });
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
  uncovered_ = {};
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
  const auto show = [](::Widget label, std::string &shown, const std::string &text) {
    if (text == shown) return;
    shown = text;
    setLabel(label, text.empty() ? " " : text);
  };
  const Model &model = window_.model();
  const bool asked = request() == model.finding.request(); // what was found before is not of this text
  const std::string &message = model.finding.message();
  show(message_, shownMessage_, !asked ? "" : message.empty() ? model.matchCount.progress() : message);
  show(count_, shownCount_, asked ? model.matchCount.number() : "");
  moveAside();
}

// Once for each match: the user may move the dialog anywhere.
void FindDialog::moveAside() {
  const std::optional<CurrentMatch> match = window_.model().finding.current();
  if (!match || XtIsManaged(form_) == False) return;
  const std::tuple<const void *, int32_t, size_t> found{window_.model().documents.front(), match->page, match->index};
  if (std::exchange(uncovered_, found) == found) return;
  const Place around = placeOf(window_.pageArea().page()), page = window_.pageArea().pagePlace();
  const int gap = window_.pixels(12), title = window_.pixels(36); // of the window manager's frame, too
  const Place area{around.x + page.x + static_cast<int>(match->left) - gap,
                   around.y + page.y + static_cast<int>(match->top) - gap,
                   static_cast<int>(match->right - match->left) + 2 * gap,
                   static_cast<int>(match->bottom - match->top) + gap + title};
  ::Widget shell = XtParent(form_);
  const Place now = placeOf(shell), aside = asideOf(now, area, around);
  if (aside.x != now.x || aside.y != now.y) XtVaSetValues(shell, XmNx, aside.x, XmNy, aside.y, nullptr);
}

FindRequest FindDialog::request() const {
  FindRequest request;
  request.text = textOf(field_);
  request.options.matchCase = XmToggleButtonGetState(case_) != 0;
  request.options.wholeWords = XmToggleButtonGetState(words_) != 0;
  return request;
}

void FindDialog::find(bool backwards) { window_.model().finding.find(request(), backwards); }

} // namespace viewer
