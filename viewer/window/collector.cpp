// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/collector.h"

#include <utility>

#include "viewer/window/motif.h"

namespace viewer {

Collector::Collector(XtAppContext context, int descriptor, Arrivals &arrivals, const host::Application &app)
    : context_(context), descriptor_(descriptor), arrivals_(arrivals), app_(app) {
  listen();
}

void Collector::listen() {
  const auto ready = [](XtPointer self, int *, XtInputId *) { static_cast<Collector *>(self)->collect(); };
  input_ = XtAppAddInput(context_, descriptor_, reinterpret_cast<XtPointer>(XtInputReadMask), ready, this);
}

void Collector::ignore() {
  if (const XtInputId input = std::exchange(input_, 0)) XtRemoveInput(input);
}

// The descriptor stays readable meanwhile, and is not listened to.
void Collector::collect() {
  if (app_.calling()) return ignore();
  guarded([this] { arrivals_.collect(); });
}

void Collector::collectMissed() {
  if (input_ != 0) return;
  listen();
  collect();
}

} // namespace viewer
