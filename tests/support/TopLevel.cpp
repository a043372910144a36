// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A minimal X toolkit application.
#include "tests/support/TopLevel.h"

#include <X11/Intrinsic.h>
#include <X11/Shell.h>
#include <X11/StringDefs.h>

TopLevel::TopLevel(const std::string &display, const std::string &name) {
  XtToolkitInitialize();
  application_ = XtCreateApplicationContext();
  int argc = 0;
  Display *opened = XtOpenDisplay(application_, display.c_str(), name.c_str(), "Tavrel", nullptr, 0, &argc, nullptr);
  if (opened == nullptr) return;
  widget_ = XtVaAppCreateShell(name.c_str(), "Tavrel", applicationShellWidgetClass, opened, XtNmappedWhenManaged, False,
                               XtNwidth, 10, XtNheight, 10, nullptr);
  XtRealizeWidget(widget_);
}

TopLevel::~TopLevel() {
  if (widget_ != nullptr) XtDestroyWidget(widget_);
  XtDestroyApplicationContext(application_);
}

void onDestruction(Widget widget, const std::function<void()> &notify) {
  const auto call = [](Widget, XtPointer function, XtPointer) {
    (*static_cast<const std::function<void()> *>(function))();
  };
  XtAddCallback(widget, XtNdestroyCallback, call, const_cast<std::function<void()> *>(&notify));
}
