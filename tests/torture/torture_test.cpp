// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Every scenario with every fault, and the number of faults.
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/torture/Torture.h"

namespace {

using namespace torture;

Count s_total;
size_t s_scenarios;

class Sum : public testing::Environment {
  void TearDown() override {
    std::printf("torture: %zu scenarios of %zu host calls and %zu allocations, %zu faults injected\n", s_scenarios,
                s_total.calls, s_total.allocations, s_total.faults);
  }
};

[[maybe_unused]] testing::Environment *const s_sum = testing::AddGlobalTestEnvironment(new Sum);

std::vector<Scenario> allScenarios() {
  std::vector<Scenario> all;
  for (const auto &group : {lifeScenarios(), fileScenarios(), registryScenarios(), walkingScenarios(),
                            toolBarScenarios(), clientScenarios(), utilityScenarios()})
    all.insert(all.end(), group.begin(), group.end());
  return all;
}

std::string nameOf(const testing::TestParamInfo<Scenario> &row) { return row.param.name; }

class Torture : public testing::TestWithParam<Scenario> {};

TEST_P(Torture, Of) {
  const Count count = torture::torture(GetParam());
  EXPECT_GT(count.faults, 0U) << "no fault was injected";
  s_total.calls += count.calls;
  s_total.allocations += count.allocations;
  s_total.faults += count.faults;
  ++s_scenarios;
}

INSTANTIATE_TEST_SUITE_P(Every, Torture, testing::ValuesIn(allScenarios()), nameOf);

} // namespace
