// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/dialogbox.h"

#include <Xm/MessageB.h>

#include "viewer/window/motif.h"

namespace viewer {

void setTitle(::Widget dialog, const std::string &title) {
  const MotifString text(title);
  XtVaSetValues(dialog, XmNdialogTitle, static_cast<XmString>(text), nullptr);
}

void hide(::Widget box, unsigned char child) {
  if (::Widget part = XmMessageBoxGetChild(box, child)) XtUnmanageChild(part);
}

void destroyDialog(::Widget dialog) { XtDestroyWidget(XtParent(dialog)); }

void destroyWhenUnmapped(::Widget dialog) {
  whenever(dialog, XmNunmapCallback, [dialog](const XEvent *) { destroyDialog(dialog); });
}

} // namespace viewer
