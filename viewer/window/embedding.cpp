// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The outer window: its size is followed, and the viewer ends when it is destroyed.
#include "viewer/window/embedding.h"

#include <X11/IntrinsicP.h>
#include <X11/Shell.h>

#include <cstdlib>

#include "host/kernel/error.h"
#include "viewer/window/mainwindow.h"

namespace viewer {
namespace {

bool s_refused;
int noteError(::Display * /*display*/, XErrorEvent * /*event*/) {
  s_refused = true;
  return 0;
}

// The outer window may be destroyed at any moment, and ours with it. Requests that are sent before we are notified
// fail, which is no error.
XErrorHandler s_otherErrors;
int ignoreLostWindows(::Display *display, XErrorEvent *event) {
  constexpr int ownErrors = 128; // errors of extensions start here: a picture of a destroyed window
  if (event->error_code == BadWindow || event->error_code == BadDrawable || event->error_code >= ownErrors) return 0;
  return s_otherErrors(display, event);
}

} // namespace

Embedding::Embedding(Toolkit &toolkit, MainWindow &window, const std::string &into)
    : toolkit_(toolkit), window_(window) {
  char *end = nullptr;
  outer_ = std::strtoul(into.c_str(), &end, 0);
  ::Display *display = toolkit.display();
  s_refused = into.empty() || *end != '\0' || outer_ == 0;
  if (!s_refused) {
    const auto before = XSetErrorHandler(noteError);
    XSelectInput(display, outer_, StructureNotifyMask);
    XReparentWindow(display, XtWindow(toolkit.shell()), outer_, 0, 0);
    XSync(display, False);
    XSetErrorHandler(before);
  }
  if (s_refused) throw host::HostError(tavrel::errGeneric, "window " + into + ": there is no such window");
  s_otherErrors = XSetErrorHandler(ignoreLostWindows);
  // Not registered with the shell, which would handle the events as its own.
  XtRegisterDrawable(display, outer_, window.pageArea().page());
  XtAddEventHandler(window.pageArea().page(), StructureNotifyMask, False, handle, this);
  fill();
}

Embedding::~Embedding() {
  XtRemoveEventHandler(window_.pageArea().page(), StructureNotifyMask, False, handle, this);
  XtUnregisterDrawable(toolkit_.display(), outer_);
}

void Embedding::fill() {
  XWindowAttributes outer{};
  if (XGetWindowAttributes(toolkit_.display(), outer_, &outer) != 0)
    XtResizeWidget(toolkit_.shell(), static_cast<Dimension>(outer.width), static_cast<Dimension>(outer.height), 0);
}

void Embedding::handle(::Widget /*widget*/, XtPointer self, XEvent *event, Boolean * /*continueToDispatch*/) {
  auto &embedding = *static_cast<Embedding *>(self);
  if (embedding.destroyed_ || event->xany.window != embedding.outer_) return;
  if (event->type == DestroyNotify) { // our window is destroyed with it
    embedding.destroyed_ = true;
    embedding.toolkit_.abandon();
    embedding.window_.quit();
  } else if (event->type == ConfigureNotify) {
    embedding.fill();
  }
}

} // namespace viewer
