// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The connection to the display, the toolkit's application context, and the viewer's top-level shell.
#pragma once

#include <Xm/Xm.h>

#include "viewer/window/options.h"

namespace viewer {

class Toolkit {
public:
  /// Throws host::HostError if the display cannot be opened or has too few colours.
  explicit Toolkit(const ToolkitOptions &options);
  ~Toolkit();
  Toolkit(const Toolkit &) = delete;
  Toolkit &operator=(const Toolkit &) = delete;

  XtAppContext context() const { return context_; }
  ::Widget shell() const { return shell_; }
  ::Display *display() const { return display_; }
  /// Dots per inch of the screen: the resource Xft.dpi, otherwise 96.
  double dpi() const { return dpi_; }
  double scale() const { return dpi_ / 96; }
  /// A length given in pixels at 96 dots per inch, in pixels of the screen.
  int pixels(double length) const { return static_cast<int>(length * scale() + 0.5); }
  /// The initial size of the window, unless a window manager changes it: about as wide as a page of its natural size
  /// and as high as the screen allows, or the size that the user has requested.
  struct Size {
    int width, height;
  };
  Size windowSize() const;
  /// Soon sets the keyboard focus to the window below the pointer, if no window has it: a menu that is unmapped while
  /// it has the focus leaves no window with it, and without a window manager nothing restores it.
  void restoreFocusSoon();
  /// Called when the windows have been destroyed: X errors are ignored from now on.
  void abandon();

private:
  XtAppContext context_;
  ::Display *display_;
  ::Widget shell_;
  double dpi_ = 96;
};

} // namespace viewer
