// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Prints the numbers of a window's property on one line: `property NAME`. The window is the first one that has it.
#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <cstdlib>
#include <iostream>

namespace {

bool print(Display *display, Window window, Atom property) {
  constexpr long most = 1 << 20; // elements
  Atom type = None;
  int format = 0;
  unsigned long count = 0, rest = 0;
  unsigned char *value = nullptr;
  XGetWindowProperty(display, window, property, 0, most, False, AnyPropertyType, &type, &format, &count, &rest, &value);
  const bool there = type != None && format == 32;
  for (unsigned long i = 0; there && i < count; ++i)
    std::cout << (reinterpret_cast<const unsigned long *>(value)[i] & 0xFFFFFFFFU) << ' ';
  if (value != nullptr) XFree(value);
  if (there) return true;
  Window root = None, parent = None, *children = nullptr;
  unsigned number = 0;
  if (XQueryTree(display, window, &root, &parent, &children, &number) == 0) return false;
  bool found = false;
  for (unsigned i = 0; i < number && !found; ++i)
    found = print(display, children[i], property);
  if (children != nullptr) XFree(children);
  return found;
}

} // namespace

int main(int count, char **arguments) {
  Display *display = count == 2 ? XOpenDisplay(nullptr) : nullptr;
  if (display == nullptr) return EXIT_FAILURE;
  const bool found = print(display, DefaultRootWindow(display), XInternAtom(display, arguments[1], False));
  XCloseDisplay(display);
  return found ? EXIT_SUCCESS : EXIT_FAILURE;
}
