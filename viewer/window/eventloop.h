// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The event loop: handles the toolkit's events, and lets the window be brought up to date at most once per frame, so
// that neither a stream of events nor a plug-in that requests a drawing in each drawing makes it unresponsive.
#pragma once

#include <X11/Intrinsic.h>

#include <chrono>
#include <functional>

namespace viewer {

class EventLoop {
public:
  /// @param update is called at the end of each iteration
  EventLoop(XtAppContext context, std::function<void()> update);
  EventLoop(const EventLoop &) = delete;
  EventLoop &operator=(const EventLoop &) = delete;

  /// Handles events until quit() is called or `until` returns true. May be called within an iteration.
  void run(const std::function<bool()> &until);
  void quit() { quits_ = true; }
  /// The longest iteration so far, in milliseconds, from waking up to waiting again.
  double longestIteration() const { return longestIteration_; }

  /// A time at which an iteration takes place, also without an event.
  class Alarm {
  public:
    explicit Alarm(XtAppContext context) : context_(context) {}
    ~Alarm();
    Alarm(const Alarm &) = delete;
    Alarm &operator=(const Alarm &) = delete;
    /// Does nothing if it is set already.
    void set(std::chrono::milliseconds delay);

  private:
    XtAppContext context_;
    XtIntervalId timer_ = 0;
  };

  static constexpr auto frame = std::chrono::milliseconds(16);

private:
  XtAppContext context_;
  std::function<void()> update_;
  double longestIteration_ = 0;
  bool quits_ = false;
};

} // namespace viewer
