// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/arrivals.h"

#include <memory>
#include <utility>
#include <vector>

namespace viewer {

// Notes a failure, so that the other steps are done nevertheless.
template <typename Step> void Arrivals::attempt(const Step &step) {
  try {
    step();
  } catch (const std::exception &) {
    if (!failure_) failure_ = std::current_exception();
  }
}

void Arrivals::collect() {
  waker_.clear();
  failure_ = nullptr;
  Services services; // a document may be closed meanwhile
  attempt([&] {
    services = documents_.services();
    opener_.addServices(services);
  });
  for (const auto &service : services)
    attempt([&] { service->collect(); });
  attempt([this] { opener_.takeOpened(); }); // one per call: plug-ins may take long for each
  if (opener_.hasOpened()) waker_.wake();
  attempt([this] { finding_.collect(); });
  attempt([this] { listTexts_.collect(); });
  attempt([this] { matchCount_.collect(); });
  constexpr int atOnce = 3; // further attempts wait for the next wake-up: memory may stay exhausted
  failures_ = failure_ ? failures_ + 1 : 0;
  if (!failure_) return;
  if (failures_ < atOnce) waker_.wake();
  std::rethrow_exception(std::exchange(failure_, nullptr));
}

} // namespace viewer
