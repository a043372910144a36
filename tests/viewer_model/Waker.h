// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A thread with results to collect wakes the test. The test waits for it, and fails after a timeout.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>

namespace test {

class Waker {
public:
  void wake() {
    {
      const std::lock_guard lock(mutex_);
      ++wakes_;
    }
    woken_.notify_all();
  }
  size_t wakes() {
    const std::lock_guard lock(mutex_);
    return wakes_;
  }
  /// Evaluates the condition now and after each wake-up until it holds; false after the timeout.
  bool until(const std::function<bool()> &done) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    for (;;) {
      const size_t before = wakes();
      if (done()) return true;
      std::unique_lock lock(mutex_);
      if (!woken_.wait_until(lock, deadline, [&] { return wakes_ != before; })) return false;
    }
  }

private:
  std::mutex mutex_;
  std::condition_variable woken_;
  size_t wakes_ = 0;
};

} // namespace test
