// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The search of a page's entries, in every implementation that this machine supports.
#include "plugin/glt/gltSearch.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/plugin/glt/lists.h"

namespace {

class Search : public testing::TestWithParam<HLSearch> {
protected:
  void SetUp() override {
    if (!GetParam().supported()) GTEST_SKIP() << "this machine has no " << GetParam().name;
  }
};

/// Entries at 0, 3, 6 ... whose lengths are positions without an entry, and positions with their two bytes exchanged.
std::vector<HL> entries(uint32_t count) {
  std::vector<HL> all;
  for (uint32_t i = 0; i < count; ++i)
    all.push_back({static_cast<uint16_t>(3 * i), static_cast<uint16_t>(i % 2 == 0 ? 3 * i + 1 : 3 * i << 8U)});
  return all;
}

constexpr uint32_t longest = 300, block = 64;

TEST_P(Search, NeverSkipsTheEntryThatIsLookedFor) {
  for (uint32_t count = 1; count <= longest; ++count) {
    const std::vector<HL> all = entries(count);
    for (uint32_t i = 0; i < count; ++i) {
      const uint32_t skipped = GetParam().skip(all.data(), count, all[i].pos);
      ASSERT_LE(skipped, i) << "of " << count;
      ASSERT_LT(i - skipped, block) << "of " << count;
    }
  }
}

TEST_P(Search, SkipsAllButLessThanABlockWhereThereIsNoSuchEntry) {
  for (uint32_t count = 0; count <= longest; ++count) {
    const std::vector<HL> all = entries(count);
    for (const uint16_t absent : {1, 4, 3 * 4 + 1, 3 * 256 + 1, 0x100, 0x301, 0xFFFE}) {
      const uint32_t skipped = GetParam().skip(all.data(), count, absent);
      ASSERT_LE(skipped, count) << absent;
      ASSERT_LT(count - skipped, block) << absent;
    }
  }
}

TEST_P(Search, DistinguishesPositionsOfTheCompleteRange) {
  std::vector<HL> all(block, HL{0x8000, 0x7FFF});
  for (const uint16_t pos : {0, 1, 0x7FFF, 0x8001, 0xFFFF}) {
    EXPECT_EQ(GetParam().skip(all.data(), block, pos), block) << pos;
    all[block - 1].pos = pos;
    EXPECT_LT(GetParam().skip(all.data(), block, pos), block) << pos;
    all[block - 1].pos = 0x8000;
  }
  EXPECT_EQ(GetParam().skip(all.data(), block, 0x8000), 0U);
}

INSTANTIATE_TEST_SUITE_P(HighlightList, Search, testing::ValuesIn(searches, searches + searchCount),
                         [](const auto &form) { return std::string(form.param.name); });

TEST(HighlightSearch, TheFirstImplementationThatTheMachineSupportsIsUsed) {
  EXPECT_EQ(HLPSkip, firstSupported(searches)->skip);
  bool (*const no)() = [] { return false; };
  bool (*const yes)() = [] { return true; };
  const HLSearch some[] = {{"a", no, nullptr}, {"b", no, nullptr}, {"c", yes, nullptr}, {"d", yes, nullptr}};
  EXPECT_EQ(firstSupported(some), &some[2]);
}

// A long page, filled in an order that is neither ascending nor descending: every position is stored once.
TEST(HighlightList, ALongPageKeepsTheFirstOfEveryPositionInOrderOfAdding) {
  const ListOwner list({});
  constexpr uint32_t most = 3000, step = 40503; // no common factor with 65,536
  for (uint32_t i = 0; i < most; ++i)
    HLL_AddHL(list, 1, static_cast<uint16_t>(i * step), 1);
  for (uint32_t i = 0; i < most; i += 7)
    HLL_AddHL(list, 1, static_cast<uint16_t>(i * step), 2);
  const HLP &page = list.list()->pages[0];
  ASSERT_EQ(page.count, most);
  EXPECT_EQ(HLL_GetWordCount(list), most);
  for (uint32_t i = 0; i < most; ++i)
    ASSERT_TRUE(page.words[i].pos == static_cast<uint16_t>(i * step) && page.words[i].len == 1) << i;
}

} // namespace
