// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A backend that answers what a test says, when it says so.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <set>
#include <vector>

#include "host/document/service.h"

namespace test {

/// What a test sees of a backend, which a service owns.
struct Backstage {
  host::Orders asked;              ///< not answered, in the order of asking
  host::Orders answered;           ///< not taken yet
  std::vector<uint64_t> cancelled; ///< ids
  std::map<uint64_t, host::Urgency> urgencies;
  std::set<uint64_t> underWay;
  std::vector<std::chrono::milliseconds> waits;                          ///< how long the owner would have waited
  std::function<void(Backstage &backstage)> whileWaited = [](auto &) {}; ///< before a wait ends

  /// The oldest request that is not answered; an error of the test if it is of another kind.
  template <typename Kind> const Kind &oldest() const { return std::get<Kind>(asked.front().request); }
  /// Answers it.
  template <typename Value> void answer(Value value) {
    ASSERT_FALSE(asked.empty());
    asked.front().answer.value = std::move(value);
    answered.splice(answered.end(), asked, asked.begin());
  }
};

class FakeBackend final : public host::Backend {
public:
  explicit FakeBackend(Backstage &backstage) : backstage_(backstage) {}

  void start(host::Orders order) noexcept override { backstage_.asked.splice(backstage_.asked.end(), order); }
  void setUrgency(uint64_t id, host::Urgency urgency) noexcept override { backstage_.urgencies[id] = urgency; }
  void cancel(uint64_t id) noexcept override {
    backstage_.cancelled.push_back(id);
    std::erase_if(backstage_.asked, [=](const host::Order &order) { return order.id == id; });
  }
  bool underWay(uint64_t id) const noexcept override { return backstage_.underWay.contains(id); }
  host::Orders take() noexcept override { return std::exchange(backstage_.answered, {}); }
  host::Orders await(uint64_t id, host::Time deadline) noexcept override {
    using std::chrono::milliseconds;
    backstage_.waits.push_back(std::chrono::ceil<milliseconds>(
        std::min(deadline - std::chrono::steady_clock::now(), host::Time::duration(std::chrono::hours(1)))));
    backstage_.whileWaited(backstage_);
    host::Orders one;
    const auto found = std::find_if(backstage_.answered.begin(), backstage_.answered.end(),
                                    [=](const host::Order &order) { return order.id == id; });
    if (found != backstage_.answered.end()) one.splice(one.begin(), backstage_.answered, found);
    return one;
  }

private:
  Backstage &backstage_;
};

} // namespace test
