// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/eventloop.h"

#include <algorithm>
#include <utility>

namespace viewer {
namespace {

using Clock = std::chrono::steady_clock;

// Ends the loop's wait and clears the timer.
void timeIsUp(XtPointer timer, XtIntervalId * /*id*/) { *static_cast<XtIntervalId *>(timer) = 0; }

} // namespace

EventLoop::EventLoop(XtAppContext context, std::function<void()> update)
    : context_(context), update_(std::move(update)) {}

void EventLoop::run(const std::function<bool()> &until) {
  while (!quits_ && !until()) {
    XtAppProcessEvent(context_, XtIMAll); // waits
    const Clock::time_point woken = Clock::now();
    while (!quits_ && !until() && XtAppPending(context_) != 0 && Clock::now() - woken < frame)
      XtAppProcessEvent(context_, XtIMAll);
    update_();
    const std::chrono::duration<double, std::milli> took = Clock::now() - woken;
    longestIteration_ = std::max(longestIteration_, took.count());
  }
}

EventLoop::Alarm::~Alarm() {
  if (timer_ != 0) XtRemoveTimeOut(timer_);
}

void EventLoop::Alarm::set(std::chrono::milliseconds delay) {
  if (timer_ == 0) timer_ = XtAppAddTimeOut(context_, static_cast<unsigned long>(delay.count()), timeIsUp, &timer_);
}

} // namespace viewer
