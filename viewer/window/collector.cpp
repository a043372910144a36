// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/collector.h"

#include "viewer/window/motif.h"

namespace viewer {

Collector::Collector(XtAppContext context, const Waker &waker, Arrivals &arrivals, const host::Application &app)
    : waker_(waker), arrivals_(arrivals), app_(app) {
  const auto ready = [](XtPointer self, int *, XtInputId *) {
    auto &collector = *static_cast<Collector *>(self);
    collector.waker_.clear();
    collector.collect();
  };
  input_ = XtAppAddInput(context, waker.end(), reinterpret_cast<XtPointer>(XtInputReadMask), ready, this);
}

void Collector::collect() {
  missed_ = app_.calling();
  if (!missed_) guarded([this] { arrivals_.collect(); });
}

void Collector::collectMissed() {
  if (missed_) collect();
}

} // namespace viewer
