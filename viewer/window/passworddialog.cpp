// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/passworddialog.h"

#include <Xm/SelectioB.h>

#include "viewer/window/dialogbox.h"
#include "viewer/window/motif.h"
#include "viewer/window/textediting.h"
#include "viewer/window/toolkit.h"

namespace viewer {
void askForPassword(Toolkit &toolkit, const std::string &question,
                    const std::function<void(const std::string &)> &take) {
  char name[] = "password";
  ::Widget box = XmCreatePromptDialog(toolkit.shell(), name, nullptr, 0);
  const MotifString text(question);
  XtVaSetValues(box, XmNselectionLabelString, static_cast<XmString>(text), XmNdialogStyle,
                XmDIALOG_FULL_APPLICATION_MODAL, nullptr);
  setTitle(box, "Password");
  XtUnmanageChild(XmSelectionBoxGetChild(box, XmDIALOG_HELP_BUTTON));
  ::Widget field = XmSelectionBoxGetChild(box, XmDIALOG_TEXT);
  editAsUsual(field, Shows::stars);
  whenever(box, XmNokCallback, [box, field, take](const XEvent *) {
    const std::string password = editedText(field);
    destroyDialog(box);
    take(password);
  });
  whenever(box, XmNcancelCallback, [box](const XEvent *) { destroyDialog(box); });
  destroyWhenUnmapped(box);
  XtManageChild(box);
}

} // namespace viewer
