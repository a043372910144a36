// Living inside another program's window, as in a browser.
#pragma once

#include <Xm/Xm.h>

#include <string>

namespace viewer {

class MainWindow;
class Toolkit;

class Embedding {
public:
  /// Puts the realised, unmapped shell into the window of that number (decimal, or hexadecimal with 0x), as large as
  /// it. Throws host::HostError when there is no such window.
  Embedding(Toolkit &toolkit, MainWindow &window, const std::string &into);
  ~Embedding();
  Embedding(const Embedding &) = delete;
  Embedding &operator=(const Embedding &) = delete;

private:
  static void handle(::Widget widget, XtPointer self, XEvent *event, Boolean *goesOn);
  void fill();

  Toolkit &toolkit_;
  MainWindow &window_;
  ::Window outer_ = 0;
  bool gone_ = false;
};

} // namespace viewer
