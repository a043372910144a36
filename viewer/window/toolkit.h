// The connection to the display, the toolkit's application context, and the viewer's top-level shell.
#pragma once

#include <Xm/Xm.h>

#include "viewer/window/options.h"

namespace viewer {

class Toolkit {
public:
  /// What must be done before there are threads: the locale, and where X may keep what it reads.
  static void prepare();
  /// Throws host::HostError when the display cannot be opened or shows too few colours.
  explicit Toolkit(const ToolkitOptions &options);
  ~Toolkit();
  Toolkit(const Toolkit &) = delete;
  Toolkit &operator=(const Toolkit &) = delete;

  XtAppContext context() const { return context_; }
  ::Widget shell() const { return shell_; }
  ::Display *display() const { return display_; }
  /// Dots per inch of the screen, as far as anybody has said (Xft.dpi), else 96.
  double dpi() const { return dpi_; }
  /// A length of so many pixels at 96 dots per inch.
  int pixels(double length) const { return static_cast<int>(length * dpi_ / 96 + 0.5); }
  /// The size that the window is going to have, unless a window manager thinks otherwise: as wide as a page of its
  /// natural size, as high as the screen lets it, or what the user has asked for.
  struct Size {
    int width, height;
  };
  Size windowSize() const;
  /// Gives the keyboard back to the window below the pointer, soon and only where no window has it: a menu that is
  /// taken from the screen while it has the keyboard leaves it to nobody, and without a window manager nobody takes it
  /// back.
  void restoreFocusSoon();
  /// From now on the windows are gone, and what is left to do with them is no error.
  void abandon();

private:
  XtAppContext context_;
  ::Display *display_;
  ::Widget shell_;
  double dpi_ = 96;
};

} // namespace viewer
