// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Worker threads, which encode images. And how many processors there are for them and for the processes that read
// documents.
#pragma once

#include <condition_variable>
#include <deque>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace tools {

/// The processors that this process may use, but at most 8: more than the main thread can keep busy.
size_t usableProcessors();

class Workers {
public:
  /// Starts so many threads, or fewer if the system allows no more.
  explicit Workers(size_t threads);
  ~Workers(); ///< drops tasks that have not started, waits for those that have
  Workers(const Workers &) = delete;
  Workers &operator=(const Workers &) = delete;

  /// How many threads are useful for so many pages: one for each usable processor, at most one a page; none if that is
  /// one.
  static size_t worthHaving(int32_t pages);

  size_t threads() const { return threads_.size(); }

  /// Runs the work on a thread. Work is started in the order of the calls. Its result or exception is in the future.
  template <typename Work> auto order(Work work) {
    std::packaged_task<std::invoke_result_t<Work &>()> task(std::move(work));
    auto result = task.get_future();
    add(Task([task = std::move(task)]() mutable { task(); }));
    return result;
  }

private:
  using Task = std::packaged_task<void()>;
  void add(Task task);
  void run();

  std::mutex mutex_; ///< protects the two members below
  std::deque<Task> tasks_;
  bool ends_ = false;
  std::condition_variable work_;
  std::vector<std::thread> threads_; ///< last: they use all of the above
};

} // namespace tools
