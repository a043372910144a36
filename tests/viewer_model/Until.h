// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Waits for what processes answer, as an event loop does.
#pragma once

#include <poll.h>

#include <chrono>
#include <functional>

namespace test {

/// Evaluates the condition, which collects, now and whenever the descriptor is readable, until it holds; false after a
/// minute.
inline bool until(int descriptor, const std::function<bool()> &done) {
  using std::chrono::milliseconds;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!done()) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now());
    pollfd ready{descriptor, POLLIN, 0};
    if (left <= milliseconds(0) || poll(&ready, 1, static_cast<int>(left.count())) <= 0) return false;
  }
  return true;
}

} // namespace test
