// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Wakes the event loop from another thread.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include "host/kernel/error.h"

namespace viewer {

class Waker {
public:
  /// Throws host::HostError if the process has no file descriptor left.
  Waker() {
    if (pipe2(ends_, O_CLOEXEC | O_NONBLOCK) != 0) throw host::HostError(tavrel::errGeneric, "no pipe can be made");
  }
  ~Waker() {
    close(ends_[0]);
    close(ends_[1]);
  }
  Waker(const Waker &) = delete;
  Waker &operator=(const Waker &) = delete;

  /// A file descriptor that is readable after wake(), until clear().
  int end() const { return ends_[0]; }
  void wake() const {
    const char byte = 0;
    if (write(ends_[1], &byte, 1) < 0) return; // full: a wake-up is pending
  }
  void clear() const {
    char bytes[64];
    while (read(ends_[0], bytes, sizeof bytes) > 0) {
    }
  }

private:
  int ends_[2];
};

} // namespace viewer
