// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The page finder: a list filled with it is the one that HLL_AddHL makes.
#include <gtest/gtest.h>

#include "plugin/glt/gltPageFinder.h"
#include "tests/plugin/glt/lists.h"
#include "tests/support/FailingMemory.h"
#include "tests/support/Rows.h"

namespace {

struct Order : Row {
  int32_t (*page)(int32_t i);
};
class PageFinderOrder : public testing::TestWithParam<Order> {};

constexpr int32_t hits = 3000;

TEST_P(PageFinderOrder, MakesTheListThatAddingMakes) {
  const ListOwner expected({}), list({});
  PageFinder finder = {};
  for (int32_t i = 0; i < hits; ++i) {
    const auto pos = static_cast<uint16_t>(i % 7);
    HLL_AddHL(expected, GetParam().page(i), pos, 1);
    finderAdd(finder, list, GetParam().page(i), pos, 1);
  }
  finderRelease(finder);
  EXPECT_EQ(highlightsOf(list), highlightsOf(expected));
  EXPECT_EQ(HLL_GetWordCount(list), HLL_GetWordCount(expected));
}

INSTANTIATE_TEST_SUITE_P(HighlightList, PageFinderOrder,
                         testing::ValuesIn<Order>({
                             {{"Ascending"}, [](int32_t i) { return i; }},
                             {{"Descending"}, [](int32_t i) { return -i; }},
                             {{"EachTwice"}, [](int32_t i) { return i / 2; }},
                             {{"InTurn"}, [](int32_t i) { return i % 500; }},
                             {{"Scattered"}, [](int32_t i) { return i * 7919 % 2003; }},
                             {{"FarApart"}, [](int32_t i) { return INT32_MIN + i % 1000 * 4000000; }},
                             {{"AtTheThreshold"},
                              [](int32_t i) { return i % (static_cast<int32_t>(worthFinding) + 1); }},
                         }),
                         rowName<Order>);

TEST(PageFinder, FindsThePagesOfALongListAndNoOthers) {
  const ListOwner list({});
  for (int32_t i = 0; i < hits; ++i)
    HLL_AddHL(list, i * 3, 0, 1);
  PageFinder finder = {};
  for (int32_t i = 0; i < hits; ++i) {
    EXPECT_EQ(finderFind(finder, list, i * 3), &list.list()->pages[i]);
    EXPECT_EQ(finderFind(finder, list, i * 3 + 1), nullptr);
  }
  EXPECT_NE(finder.slots, nullptr) << "or the list alone was searched";
  finderRelease(finder);
}

TEST(PageFinder, TakesNoMemoryForAShortList) {
  const ListOwner list({{1, 1, 1}});
  PageFinder finder = {};
  for (int32_t i = 0; i < static_cast<int32_t>(worthFinding); ++i)
    finderAdd(finder, list, i, 1, 1);
  EXPECT_EQ(finder.slots, nullptr);
}

TEST(PageFinder, FindsPagesWithoutMemory) {
  const ListOwner list({});
  for (int32_t i = 0; i < hits; ++i)
    HLL_AddHL(list, i, 0, 1);
  PageFinder finder = {};
  const FailingMemory none(0, FailingMemory::fromThereOn);
  EXPECT_EQ(finderFind(finder, list, 70), &list.list()->pages[70]);
  EXPECT_EQ(finderFind(finder, list, -1), nullptr);
  EXPECT_EQ(finder.slots, nullptr);
}

TEST(PageFinder, MakesTheSameListWhicheverTableCannotBeMade) {
  const auto pageOf = [](int32_t i) { return i * 7919 % 2003; };
  const auto filled = [&](HLL *list, bool tablesFail) {
    PageFinder finder = {};
    for (int32_t i = 0; i < hits; ++i) {
      if (tablesFail && list->pageCount > finder.limit && list->pageCount >= worthFinding) {
        const FailingMemory none(0);
        finderFind(finder, list, -1);
        EXPECT_TRUE(none.failed());
      }
      finderAdd(finder, list, pageOf(i), 1, 1);
    }
    finderRelease(finder);
    return highlightsOf(list);
  };
  const ListOwner expected({}), list({});
  EXPECT_EQ(filled(list, true), filled(expected, false));
}

TEST(PageFinder, LeavesNothingAfterItsRelease) {
  const ListOwner list({});
  const size_t before = liveBlocks();
  PageFinder finder = {};
  for (int32_t i = 0; i < hits; ++i) {
    HLLInsertPage(list, i);
    finderFind(finder, list, -1);
  }
  EXPECT_EQ(liveBlocks(), before + 2) << "the list's pages and the table";
  finderRelease(finder);
  EXPECT_EQ(liveBlocks(), before + 1);
  EXPECT_EQ(finder.slots, nullptr);
}

} // namespace
