// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The batches of a page view: while one is open, nothing is drawn. A plug-in that raises cannot close its own.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "host/kernel/error.h"

namespace host {

class Batches {
public:
  Batches() {
    constexpr size_t usualDepth = 16; // nested calls into plug-ins then need no allocation
    saved_.reserve(usualDepth);
  }

  /// Called when batches have been closed; others may still be open.
  std::function<void()> closed;

  size_t depth() const { return depth_; }
  void begin() { ++depth_; }
  /// Throws errBadArgument when none is open.
  void end() {
    if (depth_ == 0) throw HostError(tavrel::errBadArgument, "no batch is open");
    --depth_;
    if (closed) closed();
  }

  // Around a call into a plug-in: batches that it leaves open are closed, batches that it closes too often are opened
  // again. expectCall reserves the memory for one call.
  void expectCall() { saved_.reserve(saved_.size() + 1); }
  void beforeCall() { saved_.push_back(depth_); }
  void afterCall() noexcept {
    // A view that was opened during the call has saved none.
    depth_ = saved_.empty() ? 0 : saved_.back();
    if (!saved_.empty()) saved_.pop_back();
    if (closed) closed();
  }

private:
  size_t depth_ = 0;
  std::vector<size_t> saved_; ///< a value for each call into a plug-in that is under way
};

} // namespace host
