// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The threads of Threads: which one takes which request when.
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "host/document/sources.h"
#include "host/document/wake.h"

namespace host {

class Pool : public std::enable_shared_from_this<Pool> {
public:
  /// Another thread begins a request once all others have been busy for that time.
  static constexpr auto busyLimit = std::chrono::milliseconds(100);

  explicit Pool(std::function<void()> wake) : wake_(std::move(wake)) {}

  /// Starts the first thread. To be called once; throws where that is not possible.
  void begin();

  Desk desk;
  /// To be called, with the desk locked, when there is something to do on it: one more thread looks for work.
  void enlist() noexcept;
  bool underWay(uint64_t id) const noexcept; ///< with the desk locked

  /// See Threads.
  bool finish(std::chrono::milliseconds timeout);
  /// Finishes, and leaves a thread that takes longer to itself. To be called before the last owner lets go of it.
  void end(std::chrono::milliseconds timeout);

private:
  struct Worker {
    std::optional<uint64_t> order; ///< being answered
    std::optional<Time> since;     ///< when it was begun; until its thread is free again
    bool idle = false;
  };

  void addThread();
  void run(Worker &worker);
  Time freeFrom() const noexcept;
  Urgency least() const noexcept;
  void wait(std::unique_lock<std::mutex> &lock, Worker &worker, bool forOrders, Time until);
  void take(Worker &worker, Job &job) noexcept;
  void put(std::unique_lock<std::mutex> &lock, Worker &worker, Job job, bool answered);

  Wake wake_;
  // Protected by the desk's mutex.
  std::condition_variable first_, others_, end_;
  std::array<Worker, mostThreads> workers_;
  std::array<std::thread, mostThreads> threads_;
  size_t started_ = 0, ended_ = 0;
};

} // namespace host
