// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/information.h"

#include <Xm/MessageB.h>

#include "host/view/alerts.h"
#include "viewer/model/wrapped.h"
#include "viewer/window/dialogbox.h"
#include "viewer/window/messagesymbol.h"
#include "viewer/window/motif.h"
#include "viewer/window/toolkit.h"

namespace viewer {

void Informations::show(const std::string &title, const std::string &text) {
  show("information", XmDIALOG_INFORMATION, title, text);
}

void Informations::showError(const std::string &title, const std::string &text) {
  show("error", XmDIALOG_ERROR, title, text);
}

void Informations::show(const std::string &name, unsigned char type, const std::string &title,
                        const std::string &text) {
  if (const auto other = open_->find(title); other != open_->end()) {
    XRaiseWindow(XtDisplay(other->second), XtWindow(XtParent(other->second)));
    return;
  }
  ::Widget box = XmCreateMessageDialog(toolkit_.shell(), const_cast<char *>(name.c_str()), nullptr, 0);
  const MotifString message(wrapped(text));
  XtVaSetValues(box, XmNdialogType, type, XmNmessageString, static_cast<XmString>(message), XmNdialogStyle,
                XmDIALOG_MODELESS, nullptr);
  showSymbol(box, type == XmDIALOG_ERROR ? tavrel::alertError : tavrel::alertNote, toolkit_.scale());
  setTitle(box, title);
  hide(box, XmDIALOG_CANCEL_BUTTON);
  hide(box, XmDIALOG_HELP_BUTTON);
  whenever(box, XmNokCallback, [box](const XEvent *) { destroyDialog(box); });
  destroyWhenUnmapped(box);
  (*open_)[title] = box;
  whenever(box, XmNdestroyCallback, [title, open = open_](const XEvent *) { open->erase(title); });
  XtManageChild(box);
}

} // namespace viewer
