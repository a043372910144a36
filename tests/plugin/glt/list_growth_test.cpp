// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The growth of a highlight list's arrays, and the limit of a page.
#include <gtest/gtest.h>

#include "plugin/glt/glt.h"
#include "tests/plugin/glt/lists.h"
#include "tests/support/Rows.h"

namespace {

// Growing

struct Growth : Row {
  uint32_t start, needed, capacity;
};
class PageGrowth : public testing::TestWithParam<Growth> {};
class WordGrowth : public testing::TestWithParam<Growth> {};

/// Brings a list to a page capacity that is a multiple of 8.
void givePages(HLL *list, uint32_t capacity) {
  if (capacity != 0) HLLCheck(list, capacity - 1);
  ASSERT_EQ(list->pageCapacity, capacity);
}

TEST_P(PageGrowth, IsByTheNextMultipleOfEightAbove) {
  const ListOwner list({});
  givePages(list, GetParam().start);
  EXPECT_EQ(HLLCheck(list, GetParam().needed), 1);
  EXPECT_EQ(list.list()->pageCapacity, GetParam().capacity);
}

INSTANTIATE_TEST_SUITE_P(HighlightList, PageGrowth,
                         testing::ValuesIn<Growth>({
                             {{"None"}, 0, 0, 8},
                             {{"First"}, 0, 1, 8},
                             {{"Seventh"}, 8, 7, 8},
                             {{"Eighth"}, 8, 8, 16},
                             {{"Fifteenth"}, 16, 15, 16},
                             {{"Sixteenth"}, 16, 16, 24},
                             {{"AboveHalfStays"}, 24, 8, 24},
                             {{"HalfShrinks"}, 32, 8, 16},
                             {{"LessThanHalfShrinks"}, 32, 1, 8},
                             {{"HalfOfSixteenShrinks"}, 16, 1, 8},
                         }),
                         rowName<Growth>);

TEST_P(WordGrowth, IsByTheNextMultipleOfSixteenAbove) {
  const ListOwner list({});
  HLP *page = HLLInsertPage(list, 1);
  if (GetParam().start != 0) HLPCheck(page, static_cast<uint16_t>(GetParam().start - 1));
  ASSERT_EQ(page->capacity, GetParam().start);
  EXPECT_EQ(HLPCheck(page, static_cast<uint16_t>(GetParam().needed)), 1);
  EXPECT_EQ(page->capacity, GetParam().capacity);
}

INSTANTIATE_TEST_SUITE_P(HighlightList, WordGrowth,
                         testing::ValuesIn<Growth>({
                             {{"First"}, 0, 1, 16},
                             {{"Fifteenth"}, 16, 15, 16},
                             {{"Sixteenth"}, 16, 16, 32},
                             {{"ThirtySecond"}, 32, 32, 48},
                             {{"AboveHalfStays"}, 48, 16, 48},
                             {{"HalfShrinks"}, 64, 16, 32},
                             {{"Largest"}, 65504, 65519, 65520},
                         }),
                         rowName<Growth>);

TEST(HighlightList, EighthPageGrowsTheArrayFromEightToSixteen) {
  const ListOwner list({{1, 1, 1}});
  EXPECT_EQ(list.list()->pageCapacity, 8U);
  for (int32_t page = 2; page <= 7; ++page)
    HLL_AddHL(list, page, 1, 1);
  EXPECT_EQ(list.list()->pageCapacity, 8U);
  HLL_AddHL(list, 8, 1, 1);
  EXPECT_EQ(list.list()->pageCapacity, 16U);
}

TEST(HighlightList, SixteenthHighlightGrowsItsPageFromSixteenToThirtyTwo) {
  const ListOwner list({});
  for (uint16_t pos = 1; pos <= 15; ++pos)
    HLL_AddHL(list, 1, pos, 1);
  EXPECT_EQ(list.list()->pages->capacity, 16);
  HLL_AddHL(list, 1, 16, 1);
  EXPECT_EQ(list.list()->pages->capacity, 32);
  EXPECT_EQ(highlightsOf(list).size(), 16U);
}

// The limit of a page

/// A list with one page, number 1, of as many highlights as a page can hold. Added without the search for duplicates.
class FullPage : public testing::Test {
protected:
  FullPage() {
    HLP *page = HLLInsertPage(list_, 1);
    for (uint16_t pos = 0; pos < 65519; ++pos)
      HLPInsertWord(page, pos, 1);
    list_.list()->wordCount = 65519;
  }
  const HLP *page() const { return list_.list()->pages; }
  ListOwner list_ = ListOwner({});
};

TEST_F(FullPage, Holds65519Highlights) {
  EXPECT_EQ(page()->count, 65519);
  EXPECT_EQ(page()->capacity, 65520);
  EXPECT_EQ(page()->words[65518].pos, 65518);
}

TEST_F(FullPage, RefusesTheNextWhileTheWordCountRises) {
  EXPECT_EQ(HLL_AddHL(list_, 1, 65519, 1), 1);
  EXPECT_EQ(HLL_GetWordCount(list_), 65520U);
  EXPECT_EQ(page()->count, 65519);
  EXPECT_EQ(page()->words[65518].pos, 65518) << "the stored highlights stay";
}

TEST_F(FullPage, RefusesWithoutTouchingItsArray) {
  const HL *words = page()->words;
  EXPECT_EQ(HLPInsertWord(list_.list()->pages, 65519, 1), nullptr);
  EXPECT_EQ(page()->words, words);
  EXPECT_EQ(page()->capacity, 65520);
}

TEST_F(FullPage, LeavesOtherPagesTheirCapacity) {
  HLL_AddHL(list_, 2, 1, 1);
  EXPECT_EQ(list_.list()->pages[1].count, 1);
}

TEST_F(FullPage, StillFindsDuplicates) {
  EXPECT_EQ(HLL_AddHL(list_, 1, 65518, 9), 1);
  EXPECT_EQ(HLL_GetWordCount(list_), 65519U);
}

} // namespace
