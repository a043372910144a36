// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The order in which plug-ins end, by who uses whose tables.
#include "host/kernel/unloadorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using Order = std::vector<tavrel::ExtensionID>;

struct OrderRow {
  const char *name;
  std::set<host::TableUse> uses; // client, provider
  Order expected;                // of the plug-ins 1 to 4, loaded in this order
};

void PrintTo(const OrderRow &row, std::ostream *out) { *out << row.name; }

const OrderRow rows[] = {
    {"NewestFirstWithoutTables", {}, {4, 3, 2, 1}},
    {"ClientsBeforeTheirProvider", {{1, 4}, {2, 4}}, {3, 2, 1, 4}},
    {"AClientOfAClientFirst", {{1, 2}, {2, 4}}, {3, 1, 2, 4}},
    {"OldProvidersLast", {{4, 1}, {3, 1}}, {4, 3, 2, 1}},
    {"TheNewestOfACircle", {{1, 3}, {3, 1}}, {4, 3, 2, 1}},
    {"AClientOfACircleBeforeIt", {{1, 2}, {2, 3}, {3, 2}}, {4, 1, 3, 2}},
    {"TheProviderOfACircleAfterIt", {{1, 2}, {2, 1}, {1, 4}}, {3, 2, 1, 4}},
    {"OneThatUsesItsOwnTable", {{4, 4}}, {4, 3, 2, 1}},
    {"UsesByPluginsThatEndedDoNotCount", {{9, 4}, {4, 9}}, {4, 3, 2, 1}},
};

struct UnloadOrder : testing::TestWithParam<OrderRow> {};

TEST_P(UnloadOrder, Is) {
  Order running = {1, 2, 3, 4}, order;
  while (!running.empty()) {
    order.push_back(host::nextToEnd(running, GetParam().uses));
    ASSERT_EQ(std::erase(running, order.back()), 1U);
  }
  EXPECT_EQ(order, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Rows, UnloadOrder, testing::ValuesIn(rows),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace
