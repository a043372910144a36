// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The function that wakes the owner, called by threads that may outlive it.
#pragma once

#include <functional>
#include <mutex>
#include <utility>

namespace host {

class Wake {
public:
  explicit Wake(std::function<void()> function) : function_(std::move(function)) {}
  void call() {
    const std::lock_guard lock(mutex_);
    if (function_) function_();
  }
  /// Waits for the calls under way; there are none afterwards.
  void end() {
    const std::lock_guard lock(mutex_);
    function_ = {};
  }

private:
  std::mutex mutex_; ///< held during a call
  std::function<void()> function_;
};

} // namespace host
