// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The threads, and the queue of tasks that they share.
#include "tools/workers.h"

#include <sched.h>

#include <algorithm>
#include <system_error>

namespace tools {

size_t usableProcessors() {
  constexpr size_t most = 8;
  cpu_set_t allowed; // the standard library may count all processors of the machine
  const bool known = sched_getaffinity(0, sizeof allowed, &allowed) == 0;
  return known ? std::min(most, static_cast<size_t>(CPU_COUNT(&allowed))) : 1;
}

Workers::Workers(size_t threads) {
  threads_.reserve(threads);
  try {
    while (threads_.size() < threads)
      threads_.emplace_back([this] { run(); });
  } catch (const std::system_error &) { // the system allows no more threads
  }
}

Workers::~Workers() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
    tasks_.clear();
  }
  work_.notify_all();
  for (std::thread &thread : threads_)
    thread.join();
}

size_t Workers::worthHaving(int32_t pages) {
  const size_t threads = std::min(usableProcessors(), static_cast<size_t>(pages));
  return threads > 1 ? threads : 0;
}

void Workers::add(Task task) {
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  work_.notify_one();
}

void Workers::run() {
  std::unique_lock lock(mutex_);
  while (true) {
    work_.wait(lock, [this] { return ends_ || !tasks_.empty(); });
    if (ends_) return;
    Task task = std::move(tasks_.front());
    tasks_.pop_front();
    lock.unlock();
    task();
    task = {}; // frees what it holds, for instance an image
    lock.lock();
  }
}

} // namespace tools
