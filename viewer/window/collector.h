// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Has the event loop collect what the session's threads have done.
#pragma once

#include <X11/Intrinsic.h>

#include "viewer/model/arrivals.h"
#include "viewer/window/waker.h"

namespace viewer {

class Collector {
public:
  Collector(XtAppContext context, const Waker &waker, Arrivals &arrivals, const host::Application &app);
  ~Collector() { XtRemoveInput(input_); }
  Collector(const Collector &) = delete;
  Collector &operator=(const Collector &) = delete;

  /// Collects what arrived during a call of a plug-in: documents are not opened or closed within one.
  void collectMissed();

private:
  void collect();

  const Waker &waker_;
  Arrivals &arrivals_;
  const host::Application &app_;
  XtInputId input_;
  bool missed_ = false;
};

} // namespace viewer
