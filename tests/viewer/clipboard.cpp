// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Another program that uses the clipboard:
//   clipboard own TARGET         has what is read from standard input, for requests of that target alone; prints
//   "owned" clipboard read SELECTION     prints the text of a selection; ends with 1 if there is none
#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <cstdlib>
#include <iostream>
#include <iterator>
#include <string>

namespace {

[[noreturn]] void own(Display *display, Window window, Atom target) {
  const std::string text{std::istreambuf_iterator<char>(std::cin), {}};
  XSetSelectionOwner(display, XInternAtom(display, "CLIPBOARD", False), window, CurrentTime);
  XSync(display, False);
  std::cout << "owned" << std::endl;
  for (;;) {
    XEvent event;
    XNextEvent(display, &event);
    if (event.type != SelectionRequest) continue;
    const XSelectionRequestEvent &request = event.xselectionrequest;
    XSelectionEvent answer{SelectionNotify,
                           0,
                           True,
                           display,
                           request.requestor,
                           request.selection,
                           request.target,
                           request.target == target ? request.property : None,
                           request.time};
    if (request.target == target)
      XChangeProperty(display, request.requestor, request.property, target, 8, PropModeReplace,
                      reinterpret_cast<const unsigned char *>(text.data()), static_cast<int>(text.size()));
    XSendEvent(display, request.requestor, False, 0, reinterpret_cast<XEvent *>(&answer));
    XFlush(display);
  }
}

int read(Display *display, Window window, const char *selection) {
  const Atom property = XInternAtom(display, "ANSWER", False);
  XConvertSelection(display, XInternAtom(display, selection, False), XInternAtom(display, "UTF8_STRING", False),
                    property, window, CurrentTime);
  XEvent event;
  do
    XNextEvent(display, &event);
  while (event.type != SelectionNotify);
  if (event.xselection.property == None) return EXIT_FAILURE;
  Atom type = None;
  int format = 0;
  unsigned long count = 0, left = 0;
  unsigned char *text = nullptr;
  XGetWindowProperty(display, window, property, 0, 1 << 20, False, AnyPropertyType, &type, &format, &count, &left,
                     &text);
  std::cout << std::string(reinterpret_cast<char *>(text), count);
  XFree(text);
  return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char **argv) {
  Display *display = XOpenDisplay(nullptr);
  if (display == nullptr || argc != 3) return EXIT_FAILURE;
  const Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0);
  if (argv[1] == std::string("own")) own(display, window, XInternAtom(display, argv[2], False));
  const int status = read(display, window, argv[2]);
  XCloseDisplay(display);
  return status;
}
