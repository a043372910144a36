// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Wakes an event loop.
#pragma once

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

#include "host/document/descriptor.h"
#include "host/kernel/error.h"

namespace host {

class Waker {
public:
  /// Throws HostError if the process has no file descriptor left.
  Waker() : event_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!event_) throw HostError(tavrel::errGeneric, noDescriptors);
  }

  /// Readable after wake(), until clear().
  int descriptor() const { return event_.number(); }
  void wake() const {
    const uint64_t once = 1;
    if (write(descriptor(), &once, sizeof once) < 0) return; // as often as it can count: it is readable
  }
  void clear() const {
    uint64_t times = 0;
    if (read(descriptor(), &times, sizeof times) < 0) return; // it was clear
  }

private:
  Descriptor event_;
};

} // namespace host
