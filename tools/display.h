// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A display for a program that was started without one.
#pragma once

#include <sys/types.h>

namespace tools {

class Display {
public:
  /// If DISPLAY is set, does nothing. Else starts a private X server; await() waits until it is ready. Throws
  /// CommandFailure (exitHostFailure) if it cannot be started.
  Display();
  ~Display(); ///< ends the private server
  Display(const Display &) = delete;
  Display &operator=(const Display &) = delete;

  /// Waits until the private server accepts connections, and sets DISPLAY. Throws likewise.
  void await();

private:
  void end();

  pid_t server_ = 0;
  int number_ = -1; ///< the server writes its display number here
};

} // namespace tools
