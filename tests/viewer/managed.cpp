// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Waits for a window manager, which sets a property of the root window: `managed PROPERTY`.
#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <cstdlib>

namespace {

bool has(Display *display, Atom property) {
  Atom type = None;
  int format = 0;
  unsigned long count = 0, rest = 0;
  unsigned char *value = nullptr;
  XGetWindowProperty(display, DefaultRootWindow(display), property, 0, 0, False, AnyPropertyType, &type, &format,
                     &count, &rest, &value);
  if (value != nullptr) XFree(value);
  return type != None;
}

} // namespace

int main(int count, char **arguments) {
  Display *display = count == 2 ? XOpenDisplay(nullptr) : nullptr;
  if (display == nullptr) return EXIT_FAILURE;
  const Atom property = XInternAtom(display, arguments[1], False);
  XSelectInput(display, DefaultRootWindow(display), PropertyChangeMask);
  while (!has(display, property)) {
    XEvent event;
    XNextEvent(display, &event);
  }
  XCloseDisplay(display);
  return EXIT_SUCCESS;
}
