// A display for a program that was started without one.
#pragma once

#include <sys/types.h>

namespace tools {

class Display {
public:
  /// With DISPLAY set, nothing is done. Else a private X server of this process is started, which needs a moment.
  /// Throws CommandFailure (exitHostFailure) when that is impossible.
  Display();
  ~Display(); ///< ends the private server
  Display(const Display &) = delete;
  Display &operator=(const Display &) = delete;

  /// Waits until the private server takes connections, and sets DISPLAY. Throws likewise.
  void await();

private:
  void end();

  pid_t server_ = 0;
  int number_ = -1; ///< where the server writes which display it is
};

} // namespace tools
