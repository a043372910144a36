// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/windowtitle.h"

#include <X11/Shell.h>
#include <Xm/AtomMgr.h>

namespace viewer {

void WindowTitle::show(const std::string &title) {
  if (title == shown_) return;
  shown_ = title;
  ::Display *display = XtDisplay(shell_);
  XtVaSetValues(shell_, XmNtitle, title.c_str(), XmNiconName, title.c_str(), nullptr);
  if (XtWindow(shell_) == 0) return;
  const ::Atom name = XmInternAtom(display, const_cast<char *>("_NET_WM_NAME"), False),
               utf8 = XmInternAtom(display, const_cast<char *>("UTF8_STRING"), False);
  XChangeProperty(display, XtWindow(shell_), name, utf8, 8, PropModeReplace,
                  reinterpret_cast<const unsigned char *>(title.c_str()), static_cast<int>(title.size()));
}

} // namespace viewer
