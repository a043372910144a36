// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/alert.h"

#include <Xm/MessageB.h>

#include <algorithm>

#include "viewer/model/wrapped.h"
#include "viewer/window/dialogbox.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/messagesymbol.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

unsigned char typeOf(int32_t icon) {
  switch (icon) {
  case tavrel::alertError:
    return XmDIALOG_ERROR;
  case tavrel::alertQuestion:
    return XmDIALOG_QUESTION;
  case tavrel::alertNote:
    return XmDIALOG_INFORMATION;
  default:
    return XmDIALOG_MESSAGE;
  }
}

// The three buttons of a message box, from left to right.
struct Slot {
  const char *label, *callback;
  unsigned char child;
};
const Slot slots[] = {{XmNokLabelString, XmNokCallback, XmDIALOG_OK_BUTTON},
                      {XmNcancelLabelString, XmNcancelCallback, XmDIALOG_CANCEL_BUTTON},
                      {XmNhelpLabelString, XmNhelpCallback, XmDIALOG_HELP_BUTTON}};

} // namespace

int32_t showAlert(MainWindow &window, const host::Alert &alert) {
  char name[] = "alert";
  ::Widget box = XmCreateMessageDialog(window.toolkit().shell(), name, nullptr, 0);
  const MotifString message(wrapped(alert.message));
  XtVaSetValues(box, XmNdialogType, typeOf(alert.icon), XmNmessageString, static_cast<XmString>(message),
                XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL, nullptr);
  showSymbol(box, alert.icon, window.toolkit().scale());
  setTitle(box, "Tavrel");

  const auto count =
      std::count_if(alert.buttons.begin(), alert.buttons.end(), [](const auto &label) { return label.has_value(); });
  int32_t answer = 0, last = 0;
  bool answered = false;
  for (size_t i = 0; i < alert.buttons.size(); ++i) {
    const bool onlyWayOut = count == 0 && i == 0;
    if (!alert.buttons[i] && !onlyWayOut) {
      hide(box, slots[i].child);
      continue;
    }
    const int32_t number = onlyWayOut ? 0 : static_cast<int32_t>(i) + 1;
    last = number;
    const MotifString label(alert.buttons[i].value_or("OK"));
    XtVaSetValues(box, slots[i].label, static_cast<XmString>(label), nullptr);
    whenever(box, slots[i].callback, [&answer, &answered, number](const XEvent *) {
      answer = number;
      answered = true;
    });
  }
  whenever(box, XmNunmapCallback, [&answered, &answer, &last](const XEvent *) {
    if (answered) return;
    answer = last;
    answered = true;
  });
  XtManageChild(box);
  if (alert.beep) XBell(XtDisplay(box), 0);
  window.loop([&] { return answered; });
  if (!answered) answer = last; // the viewer ends
  answered = true;
  destroyDialog(box);
  return answer;
}

} // namespace viewer
