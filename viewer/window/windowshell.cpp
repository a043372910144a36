// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/windowshell.h"

#include <Xm/AtomMgr.h>
#include <Xm/Protocols.h>
#include <Xm/Xm.h>
#include <poll.h>

#include <chrono>
#include <utility>

#include "viewer/window/motif.h"
#include "viewer/window/toolkit.h"

namespace viewer {

WindowShell::WindowShell(Toolkit &toolkit, std::function<void()> closed)
    : toolkit_(toolkit), closed_(std::move(closed)), title_(toolkit.shell()) {
  ::Atom close = XmInternAtom(toolkit.display(), const_cast<char *>("WM_DELETE_WINDOW"), False);
  const auto closeNow = [](::Widget, XtPointer self, XtPointer) { static_cast<WindowShell *>(self)->closed_(); };
  XmAddWMProtocolCallback(toolkit.shell(), close, closeNow, this);
  XtAddEventHandler(toolkit.shell(), StructureNotifyMask, False, handle, this);
}

WindowShell::~WindowShell() { XtRemoveEventHandler(toolkit_.shell(), StructureNotifyMask, False, handle, this); }

void WindowShell::realize() {
  ::Widget shell = toolkit_.shell();
  const Toolkit::Size size = toolkit_.windowSize();
  XtVaSetValues(shell, XmNwidth, size.width, XmNheight, size.height, nullptr);
  XtVaSetValues(shell, XmNminWidth, toolkit_.pixels(320), XmNminHeight, toolkit_.pixels(240), XmNbaseWidth, 0,
                XmNbaseHeight, 0, nullptr);
  XtRealizeWidget(shell);
}

void WindowShell::map() { XtMapWidget(toolkit_.shell()); }

// Only X events are handled: this may be called while a plug-in waits for an answer.
void WindowShell::awaitPosition() {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::milliseconds(500);
  while (!mapped_ && !destroyed_) {
    if ((XtAppPending(toolkit_.context()) & XtIMXEvent) != 0) {
      XtAppProcessEvent(toolkit_.context(), XtIMXEvent);
      continue;
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd server{ConnectionNumber(toolkit_.display()), POLLIN, 0};
    if (left <= 0 || poll(&server, 1, static_cast<int>(left)) <= 0) return;
  }
}

void WindowShell::handle(::Widget widget, XtPointer self, XEvent *event, Boolean * /*continueToDispatch*/) {
  auto &shell = *static_cast<WindowShell *>(self);
  if (event->xany.window != XtWindow(widget)) return;
  if (event->type == MapNotify) shell.mapped_ = true;
  if (event->type != DestroyNotify || std::exchange(shell.destroyed_, true)) return;
  shell.toolkit_.abandon();
  guarded(shell.closed_);
}

} // namespace viewer
