// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A program with a window in which another program is embedded: prints the window's number, then executes each line of
// its input, "resize WIDTH HEIGHT" or "destroy", and prints the line afterwards. Ends with its input.
#include <X11/Xlib.h>

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

int main() {
  Display *display = XOpenDisplay(nullptr);
  if (display == nullptr) return EXIT_FAILURE;
  const Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), 40, 30, 700, 600, 0, 0,
                                            BlackPixel(display, DefaultScreen(display)));
  XMapWindow(display, window);
  XSync(display, False);
  std::cout << window << std::endl;
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    std::string command;
    unsigned width = 0, height = 0;
    words >> command >> width >> height;
    if (command == "resize") XResizeWindow(display, window, width, height);
    if (command == "destroy") XDestroyWindow(display, window);
    XSync(display, False);
    std::cout << line << std::endl;
  }
  XCloseDisplay(display);
  return EXIT_SUCCESS;
}
