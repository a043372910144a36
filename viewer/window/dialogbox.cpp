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

std::string wrapped(const std::string &text) {
  constexpr size_t longest = 60;
  std::string result = text;
  size_t lineStart = 0, space = std::string::npos;
  for (size_t i = 0; i < result.size(); ++i) {
    if (result[i] == ' ') space = i;
    if (result[i] == '\n') lineStart = i + 1;
    if (i - lineStart < longest || i < lineStart || space == std::string::npos || space < lineStart) continue;
    result[space] = '\n';
    lineStart = space + 1;
  }
  return result;
}

void hide(::Widget box, unsigned char child) {
  if (::Widget part = XmMessageBoxGetChild(box, child)) XtUnmanageChild(part);
}

void destroyDialog(::Widget dialog) { XtDestroyWidget(XtParent(dialog)); }

void destroyWhenUnmapped(::Widget dialog) {
  whenever(dialog, XmNunmapCallback, [dialog](const XEvent *) { destroyDialog(dialog); });
}

} // namespace viewer
