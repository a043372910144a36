// Rung by a thread that has something to collect. A test waits for it and never longer than a limit, which fails it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>

namespace test {

class Bell {
public:
  void ring() {
    {
      const std::lock_guard lock(mutex_);
      ++rings_;
    }
    rung_.notify_all();
  }
  size_t rings() {
    const std::lock_guard lock(mutex_);
    return rings_;
  }
  /// Asks now and after each ring, until the answer is yes; false when that takes too long.
  bool until(const std::function<bool()> &done) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    for (;;) {
      const size_t heard = rings();
      if (done()) return true;
      std::unique_lock lock(mutex_);
      if (!rung_.wait_until(lock, limit, [&] { return rings_ != heard; })) return false;
    }
  }

private:
  std::mutex mutex_;
  std::condition_variable rung_;
  size_t rings_ = 0;
};

} // namespace test
