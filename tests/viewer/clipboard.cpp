// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Another program that uses the clipboard:
//   clipboard own TARGET        has what is read from standard input, for requests of that target alone
//   clipboard parts TARGET      the same in parts of at most 1000 bytes (INCR)
//   clipboard endless TARGET    the same, again and again without an end
//   clipboard read SELECTION    prints the text of a selection; ends with 1 if there is none
// The first three print "owned".
#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <string>

namespace {

// Appends, because a request of the protocol has a limit.
void setProperty(Display *display, const XSelectionRequestEvent &request, const std::string &text) {
  constexpr size_t most = size_t{1} << 20;
  XDeleteProperty(display, request.requestor, request.property);
  for (size_t at = 0; at == 0 || at < text.size(); at += most) {
    const std::string part = text.substr(at, most);
    XChangeProperty(display, request.requestor, request.property, request.target, 8, PropModeAppend,
                    reinterpret_cast<const unsigned char *>(part.data()), static_cast<int>(part.size()));
  }
}

void announceParts(Display *display, const XSelectionRequestEvent &request) {
  const long size = 1;
  XSelectInput(display, request.requestor, PropertyChangeMask);
  XChangeProperty(display, request.requestor, request.property, XInternAtom(display, "INCR", False), 32,
                  PropModeReplace, reinterpret_cast<const unsigned char *>(&size), 1);
}

// How the text is sent. A part is sent when the one before has been fetched.
struct Owner {
  bool inParts, endless;
  size_t sent = 0;
  XSelectionRequestEvent request{};

  void answer(Display *display, const XSelectionRequestEvent &asked, Atom target, const std::string &text) {
    if (asked.target == target) {
      request = asked;
      sent = 0;
      inParts ? announceParts(display, asked) : setProperty(display, asked, text);
    }
    XSelectionEvent answer{SelectionNotify,
                           0,
                           True,
                           display,
                           asked.requestor,
                           asked.selection,
                           asked.target,
                           asked.target == target ? asked.property : None,
                           asked.time};
    XSendEvent(display, asked.requestor, False, 0, reinterpret_cast<XEvent *>(&answer));
  }
  void sendPart(Display *display, const std::string &text) {
    const std::string part = endless ? text : text.substr(std::min(sent, text.size()), 1000);
    sent += part.size();
    setProperty(display, request, part);
  }
};

int gone(Display * /*display*/, XErrorEvent * /*error*/) { return 0; } // the other program needs no more

[[noreturn]] void own(Display *display, Window window, Atom target, Owner owner) {
  const std::string text{std::istreambuf_iterator<char>(std::cin), {}};
  XSetErrorHandler(gone);
  XSetSelectionOwner(display, XInternAtom(display, "CLIPBOARD", False), window, CurrentTime);
  XSync(display, False);
  std::cout << "owned" << std::endl;
  for (;;) {
    XEvent event;
    XNextEvent(display, &event);
    if (event.type == SelectionRequest) owner.answer(display, event.xselectionrequest, target, text);
    if (event.type == PropertyNotify && event.xproperty.state == PropertyDelete && owner.inParts)
      owner.sendPart(display, text);
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
  if (const std::string what = argv[1]; what != "read")
    own(display, window, XInternAtom(display, argv[2], False), {what != "own", what == "endless"});
  const int status = read(display, window, argv[2]);
  XCloseDisplay(display);
  return status;
}
