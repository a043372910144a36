// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Has the event loop collect what the documents' processes have answered.
#pragma once

#include <X11/Intrinsic.h>

#include "viewer/model/arrivals.h"

namespace viewer {

class Collector {
public:
  /// Collects when the descriptor is readable. All arguments outlive this object.
  Collector(XtAppContext context, int descriptor, Arrivals &arrivals, const host::Application &app);
  ~Collector() { ignore(); }
  Collector(const Collector &) = delete;
  Collector &operator=(const Collector &) = delete;

  /// Collects what arrived during a call of a plug-in: documents are not opened or closed within one.
  void collectMissed();

private:
  void listen();
  void ignore();
  void collect();

  XtAppContext context_;
  int descriptor_;
  Arrivals &arrivals_;
  const host::Application &app_;
  XtInputId input_ = 0; ///< 0 while something is missed
};

} // namespace viewer
