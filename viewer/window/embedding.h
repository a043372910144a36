// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Embeds the viewer in another program's window, as in a browser.
#pragma once

#include <Xm/Xm.h>

#include <string>

namespace viewer {

class MainWindow;
class Toolkit;

class Embedding {
public:
  /// Reparents the realised, unmapped shell to the window of that number (decimal, or hexadecimal with 0x) and resizes
  /// it to fill that window. Throws host::HostError if there is no such window.
  Embedding(Toolkit &toolkit, MainWindow &window, const std::string &into);
  ~Embedding();
  Embedding(const Embedding &) = delete;
  Embedding &operator=(const Embedding &) = delete;

private:
  static void handle(::Widget widget, XtPointer self, XEvent *event, Boolean *continueToDispatch);
  void fill();

  Toolkit &toolkit_;
  MainWindow &window_;
  ::Window outer_ = 0;
  bool destroyed_ = false;
};

} // namespace viewer
