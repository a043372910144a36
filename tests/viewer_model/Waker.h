// A thread that has something to collect wakes the test. A test waits for it, and fails after a limit.
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
  /// Asks now and after each wake-up, until the answer is yes; false when that takes too long.
  bool until(const std::function<bool()> &done) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    for (;;) {
      const size_t before = wakes();
      if (done()) return true;
      std::unique_lock lock(mutex_);
      if (!woken_.wait_until(lock, limit, [&] { return wakes_ != before; })) return false;
    }
  }

private:
  std::mutex mutex_;
  std::condition_variable woken_;
  size_t wakes_ = 0;
};

} // namespace test
