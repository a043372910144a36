// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/arrivals.h"

#include <utility>

namespace viewer {

// Notes a failure, so that the other steps are done nevertheless.
template <typename Step> bool Arrivals::attempt(const Step &step) {
  try {
    step();
    return true;
  } catch (const std::exception &) {
    if (!failure_) failure_ = std::current_exception();
    return false;
  }
}

void Arrivals::collect() {
  failure_ = nullptr;
  Renderer::Results arrived = renderer_.collect();
  results_.opened.splice(results_.opened.end(), arrived.opened);
  results_.rendered.splice(results_.rendered.end(), arrived.rendered);
  results_.changed.splice(results_.changed.end(), arrived.changed);
  if (!results_.opened.empty()) { // one per call: plug-ins may take long for each
    std::list<OpenedFile> opened;
    opened.splice(opened.begin(), results_.opened, results_.opened.begin());
    attempt([&] { documents_.takeOpened(opened.front()); });
    if (!results_.opened.empty()) wake_();
  }
  std::erase_if(results_.changed,
                [this](uint64_t number) { return attempt([&] { documents_.reportChanged(number); }); });
  std::erase_if(results_.rendered, [this](RenderedPage &page) { return attempt([&] { tiles_.take(page); }); });
  attempt([this] { finding_.collect(); });
  attempt([this] { finding_.showProgress(); });
  constexpr int atOnce = 3; // further attempts wait for the next wake-up: memory may stay exhausted
  failures_ = failure_ ? failures_ + 1 : 0;
  if (!failure_) return;
  if (failures_ < atOnce) wake_();
  std::rethrow_exception(std::exchange(failure_, nullptr));
}

} // namespace viewer
