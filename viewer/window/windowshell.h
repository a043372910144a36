// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The window as the window manager and other programs see it: its size and title, its way to the screen, and its end.
#pragma once

#include <X11/Intrinsic.h>

#include <functional>

#include "viewer/window/windowtitle.h"

namespace viewer {

class Toolkit;

class WindowShell {
public:
  /// @param closed is called when the window manager closes the window or another program has destroyed it
  WindowShell(Toolkit &toolkit, std::function<void()> closed);
  ~WindowShell();
  WindowShell(const WindowShell &) = delete;
  WindowShell &operator=(const WindowShell &) = delete;

  /// Creates the X windows without mapping them.
  void realize();
  void map();
  /// Waits until the window is on the screen, for half a second at most. A dialog is placed over it, and a window
  /// manager may place the window anywhere.
  void awaitPosition();
  WindowTitle &title() { return title_; }

private:
  static void handle(::Widget widget, XtPointer self, XEvent *event, Boolean *continueToDispatch);

  Toolkit &toolkit_;
  std::function<void()> closed_;
  WindowTitle title_;
  bool mapped_ = false, destroyed_ = false;
};

} // namespace viewer
