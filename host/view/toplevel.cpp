// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/toplevel.h"

#include <X11/Intrinsic.h>
#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xlib.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/kernel/error.h"

namespace host {
namespace {

int reportError(::Display *display, XErrorEvent *event) {
  char text[128] = "";
  XGetErrorText(display, event->error_code, text, sizeof text);
  std::fprintf(stderr, "tavrel: the display refused request %d: %s\n", event->request_code, text);
  return 0;
}

int reportLoss(::Display *display) {
  std::fprintf(stderr, "tavrel: lost the connection to display %s\n", DisplayString(display));
  std::fflush(stdout); // what was written before
  // Not exit(): it would destroy what threads still use. Handlers of quick_exit remove unfinished files and end a
  // private display.
  std::quick_exit(EXIT_FAILURE);
}

} // namespace

void reportWindowErrors() {
  XSetErrorHandler(reportError);
  XSetIOErrorHandler(reportLoss);
}

TopLevel::TopLevel() {
  reportWindowErrors();
  ::Display *display = XOpenDisplay(nullptr);
  if (display == nullptr)
    throw HostError(tavrel::errGeneric, std::string("display ") + XDisplayName(nullptr) + ": cannot be opened");
  XtToolkitInitialize();
  int argc = 0;
  XtDisplayInitialize(XtCreateApplicationContext(), display, "tavrel", "Tavrel", nullptr, 0, &argc, nullptr);
  // The shell needs no size as long as it is not realised.
  Arg values[] = {{const_cast<char *>(XtNmappedWhenManaged), False}};
  widget_ = XtAppCreateShell("tavrel", "Tavrel", applicationShellWidgetClass, display, values, XtNumber(values));
}

TopLevel::~TopLevel() {
  XtAppContext context = XtWidgetToApplicationContext(widget_);
  XtDestroyWidget(widget_);             // the context does not destroy it
  XtDestroyApplicationContext(context); // closes the display
}

} // namespace host
