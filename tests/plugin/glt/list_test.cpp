// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The highlight list: adding, finding, copying, deleting. list_growth_test.cpp has the growth of its arrays.
#include <gtest/gtest.h>

#include <map>

#include "plugin/glt/glt.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"
#include "tests/support/FailingMemory.h"
#include "tests/support/Rows.h"

namespace {

// Reading

TEST(HighlightList, NewListIsEmptyAndHasNoHighlights) {
  const ListOwner list({});
  int32_t page = -7;
  uint16_t pos = 7, len = 7;
  EXPECT_EQ(HLL_GetPageCount(list), 0U);
  EXPECT_EQ(HLL_GetWordCount(list), 0U);
  EXPECT_EQ(HLL_GetHL(list, 0, 0, &page, &pos, &len), 0);
  EXPECT_EQ(HLL_GetHL(list, UINT32_MAX, UINT16_MAX, &page, &pos, &len), 0);
  EXPECT_EQ(page, -7);
}

TEST(HighlightList, HasTheUserDataOfItsCreatorUntilOtherIsSet) {
  int creator = 0, other = 0;
  const ListOwner list({}, &creator);
  EXPECT_EQ(HLL_GetData(list), &creator);
  HLL_SetData(list, &other);
  EXPECT_EQ(HLL_GetData(list), &other);
}

struct Access : Row {
  uint32_t pageIndex;
  uint16_t wordIndex;
  bool found;
  Highlight highlight;
};
class Accessor : public testing::TestWithParam<Access> {};

TEST_P(Accessor, GivesTheHighlightOrTouchesNothing) {
  const ListOwner list({{9, 10, 1}, {9, 20, 2}, {4, 30, 3}});
  Highlight h = {-1, 1, 1};
  EXPECT_EQ(HLL_GetHL(list, GetParam().pageIndex, GetParam().wordIndex, &h.page, &h.pos, &h.len), GetParam().found);
  EXPECT_EQ(h, GetParam().highlight);
}

constexpr Highlight untouched = {-1, 1, 1};
INSTANTIATE_TEST_SUITE_P(HighlightList, Accessor,
                         testing::ValuesIn<Access>({
                             {{"First"}, 0, 0, true, {9, 10, 1}},
                             {{"LastOfItsPage"}, 0, 1, true, {9, 20, 2}},
                             {{"SecondPage"}, 1, 0, true, {4, 30, 3}},
                             {{"WordIndexEqualToCount"}, 0, 2, false, untouched},
                             {{"WordIndexBeyond"}, 1, 65535, false, untouched},
                             {{"PageIndexEqualToCount"}, 2, 0, false, untouched},
                             {{"PageIndexIsUnsigned"}, UINT32_MAX, 0, false, untouched},
                         }),
                         rowName<Access>);

TEST(HighlightList, NullReadsAsAnEmptyList) {
  Highlight h = untouched;
  uint32_t index = 99;
  EXPECT_EQ(HLL_GetPageCount(nullptr), 0U);
  EXPECT_EQ(HLL_GetWordCount(nullptr), 0U);
  EXPECT_EQ(HLL_GetHL(nullptr, 0, 0, &h.page, &h.pos, &h.len), 0);
  EXPECT_EQ(HLL_FindPagePos(nullptr, 0, &index), 0);
  EXPECT_EQ(index, 99U);
}

// Adding and finding

TEST(HighlightList, FirstLengthOfAPositionWins) {
  const ListOwner list({});
  EXPECT_EQ(HLL_AddHL(list, 7, 3, 2), 1);
  EXPECT_EQ(HLL_AddHL(list, 7, 3, 5), 1);
  EXPECT_EQ(highlightsOf(list), (Highlights{{7, 3, 2}}));
  EXPECT_EQ(HLL_GetWordCount(list), 1U);
}

TEST(HighlightList, SamePositionOnAnotherPageIsAnotherHighlight) {
  const ListOwner list({{7, 3, 2}, {8, 3, 5}});
  EXPECT_EQ(highlightsOf(list), (Highlights{{7, 3, 2}, {8, 3, 5}}));
  EXPECT_EQ(HLL_GetWordCount(list), 2U);
}

TEST(HighlightList, PagesAreInOrderOfAdding) {
  const ListOwner list({{9, 1, 1}, {2, 1, 1}, {9, 2, 1}, {5, 1, 1}});
  uint32_t index = 99;
  EXPECT_EQ(highlightsOf(list), (Highlights{{9, 1, 1}, {9, 2, 1}, {2, 1, 1}, {5, 1, 1}}));
  EXPECT_EQ(HLL_FindPagePos(list, 2, &index), 1);
  EXPECT_EQ(index, 1U);
  EXPECT_EQ(HLL_FindPagePos(list, 4, &index), 0);
  EXPECT_EQ(index, 1U) << "untouched";
}

TEST(HighlightList, HighlightsOfAPageAreInOrderOfAdding) {
  const ListOwner list({{1, 30, 1}, {1, 10, 1}, {1, 20, 1}});
  EXPECT_EQ(highlightsOf(list), (Highlights{{1, 30, 1}, {1, 10, 1}, {1, 20, 1}}));
}

TEST(HighlightList, KeepsNumbersOfFullWidth) {
  const Highlights extremes = {{INT32_MIN, 0, 0}, {INT32_MAX, 65535, 65535}, {-1, 65535, 0}};
  const ListOwner list({extremes[0], extremes[1], extremes[2]});
  uint32_t index = 0;
  EXPECT_EQ(highlightsOf(list), extremes);
  EXPECT_EQ(HLL_FindPagePos(list, -1, &index), 1);
  EXPECT_EQ(index, 2U);
}

TEST(HighlightList, FindsPageRecordsAndHighlights) {
  const ListOwner list({{9, 1, 1}, {2, 5, 6}});
  EXPECT_EQ(HLLFindPage(list, 2), &list.list()->pages[1]);
  EXPECT_EQ(HLLFindPage(list, 3), nullptr);
  EXPECT_EQ(HLPFindWord(HLLFindPage(list, 2), 5)->len, 6);
  EXPECT_EQ(HLPFindWord(HLLFindPage(list, 2), 1), nullptr);
}

TEST(HighlightList, NewPageRecordIsEmpty) {
  const ListOwner list({{9, 1, 1}});
  const HLP *page = HLLInsertPage(list, 4);
  EXPECT_EQ(page, &list.list()->pages[1]);
  EXPECT_EQ(page->page, 4);
  EXPECT_EQ(page->words, nullptr);
  EXPECT_EQ(page->count, 0);
  EXPECT_EQ(page->capacity, 0);
}

TEST(HighlightList, NullHasNoDataAndTakesNone) {
  int data = 0;
  HLL_SetData(nullptr, &data);
  EXPECT_EQ(HLL_GetData(nullptr), nullptr);
}

TEST(HighlightList, AddingToNoListReturnsOne) { EXPECT_EQ(HLL_AddHL(nullptr, 1, 2, 3), 1); }

TEST(HighlightList, PageAtAnIndexIsNullBeyondTheEnd) {
  const ListOwner list({{9, 1, 1}});
  EXPECT_EQ(HLLPageAt(list, 0)->page, 9);
  EXPECT_EQ(HLLPageAt(list, 1), nullptr);
  EXPECT_EQ(HLLPageAt(list, UINT32_MAX), nullptr);
  EXPECT_EQ(HLLPageAt(nullptr, 0), nullptr);
}

// Copying and deleting

TEST(HighlightList, CopyHasTheSameDataPagesAndHighlights) {
  int data = 0;
  const ListOwner list({{9, 5, 1}, {2, 4, 2}, {9, 3, 3}}, &data);
  HLL *copy = GLT_CopyHLL(list);
  EXPECT_NE(copy, list.list());
  EXPECT_EQ(HLL_GetData(copy), &data);
  EXPECT_EQ(highlightsOf(copy), highlightsOf(list));
  EXPECT_EQ(HLL_GetWordCount(copy), 3U);
  GLT_DeleteHLL(copy);
}

TEST(HighlightList, CopyIsDeep) {
  HLL *copy = nullptr;
  {
    const ListOwner list({{9, 5, 1}});
    copy = GLT_CopyHLL(list);
    HLL_AddHL(list, 9, 6, 1);
  }
  EXPECT_EQ(highlightsOf(copy), (Highlights{{9, 5, 1}}));
  GLT_DeleteHLL(copy);
}

TEST(HighlightList, CopyCountsWhatIsStoredAndNotWhatWasAccepted) {
  const ListOwner list({{9, 5, 1}});
  list.list()->wordCount = 40;
  HLL *copy = GLT_CopyHLL(list);
  EXPECT_EQ(HLL_GetWordCount(copy), 1U);
  GLT_DeleteHLL(copy);
}

TEST(HighlightList, CopyGrowsByTheRulesAndDropsEmptyPages) {
  const ListOwner list({{9, 5, 1}});
  HLLInsertPage(list, 3);
  HLLCheck(list, 100);
  HLL *copy = GLT_CopyHLL(list);
  EXPECT_EQ(copy->pageCapacity, 8U);
  EXPECT_EQ(HLL_GetPageCount(copy), 1U) << "a page without highlights is not copied";
  GLT_DeleteHLL(copy);
}

TEST(HighlightList, CopyOfAnEmptyListIsEmpty) {
  const ListOwner list({});
  HLL *copy = GLT_CopyHLL(list);
  EXPECT_EQ(HLL_GetPageCount(copy), 0U);
  EXPECT_EQ(copy->pages, nullptr);
  GLT_DeleteHLL(copy);
}

TEST(HighlightList, WithAPageThatHasNoArrayIsDeletedCompletely) {
  const size_t blocks = liveBlocks(), freedTwice = blocksFreedTwice();
  HLL *list = GLT_NewHLL(nullptr);
  HLL_AddHL(list, 1, 1, 1);
  HLLInsertPage(list, 2);
  HLL_AddHL(list, 3, 1, 1);
  EXPECT_GT(liveBlocks(), blocks);
  GLT_DeleteHLL(list);
  EXPECT_EQ(liveBlocks(), blocks);
  EXPECT_EQ(blocksFreedTwice(), freedTwice);
}

// Memory

TEST(HighlightListMemory, NewAndCopyAreNullWithoutAHeader) {
  const ListOwner list({{1, 1, 1}});
  {
    const FailingMemory memory(0);
    EXPECT_EQ(GLT_NewHLL(nullptr), nullptr);
  }
  const FailingMemory memory(0);
  EXPECT_EQ(GLT_CopyHLL(list), nullptr);
}

TEST(HighlightListMemory, WordCountRisesThoughTheHighlightIsNotStored) {
  const ListOwner list({});
  HLLInsertPage(list, 7);
  {
    const FailingMemory memory(0);
    EXPECT_EQ(HLL_AddHL(list, 7, 3, 2), 1);
  }
  EXPECT_EQ(HLL_GetWordCount(list), 1U);
  EXPECT_EQ(highlightsOf(list), Highlights{});
}

TEST(HighlightListMemory, FullArrayOfAPageStaysAsItIs) {
  const ListOwner list({});
  for (uint16_t pos = 1; pos <= 15; ++pos)
    HLL_AddHL(list, 1, pos, 1);
  {
    const FailingMemory memory(0);
    EXPECT_EQ(HLL_AddHL(list, 1, 16, 1), 1);
  }
  EXPECT_EQ(highlightsOf(list).size(), 15U);
  EXPECT_EQ(list.list()->pages->capacity, 16);
  EXPECT_EQ(HLL_GetWordCount(list), 16U);
}

TEST(HighlightListMemory, PageThatCannotBeMadeDropsTheHighlight) {
  const ListOwner list({});
  {
    const FailingMemory memory(0);
    EXPECT_EQ(HLL_AddHL(list, 7, 3, 2), 1);
  }
  EXPECT_EQ(HLL_GetPageCount(list), 0U);
  EXPECT_EQ(list.list()->pageCapacity, 0U);
}

TEST(HighlightListMemory, PageArrayThatCannotGrowStaysAsItIs) {
  const ListOwner list({});
  for (int32_t page = 1; page <= 7; ++page)
    HLL_AddHL(list, page, 1, 1);
  {
    const FailingMemory memory(0);
    EXPECT_EQ(HLLCheck(list, 8), 0);
    EXPECT_EQ(HLL_AddHL(list, 8, 1, 1), 1);
  }
  HLL_AddHL(list, 9, 1, 1);
  EXPECT_EQ(highlightsOf(list).back(), (Highlight{9, 1, 1})) << "and grows when there is memory again";
}

struct PartOfACopy : Row {
  size_t failing; ///< which allocation
  Highlights copied;
  uint32_t accepted; ///< the copy's word count
};
class CopyWithoutMemory : public testing::TestWithParam<PartOfACopy> {};

TEST_P(CopyWithoutMemory, HasTheHighlightsThatCouldBeAdded) {
  const ListOwner list({{1, 1, 1}, {2, 2, 2}});
  HLL *copy = nullptr;
  {
    const FailingMemory memory(GetParam().failing);
    copy = GLT_CopyHLL(list);
  }
  EXPECT_EQ(highlightsOf(copy), GetParam().copied);
  EXPECT_EQ(HLL_GetWordCount(copy), GetParam().accepted);
  GLT_DeleteHLL(copy);
}

INSTANTIATE_TEST_SUITE_P(HighlightListMemory, CopyWithoutMemory,
                         testing::ValuesIn<PartOfACopy>({
                             {{"PagesAreAskedForAgain"}, 1, {{2, 2, 2}}, 1},
                             {{"WordsOfTheFirstPage"}, 2, {{2, 2, 2}}, 2},
                             {{"WordsOfTheSecondPage"}, 3, {{1, 1, 1}}, 2},
                             {{"NoneFails"}, 4, {{1, 1, 1}, {2, 2, 2}}, 2},
                         }),
                         rowName<PartOfACopy>);

TEST(HighlightListMemory, CopyLosesOneHighlightWhereThePagesCannotBeAllocated) {
  const ListOwner list({{1, 1, 1}, {1, 2, 2}});
  HLL *copy = nullptr;
  {
    const FailingMemory memory(1);
    copy = GLT_CopyHLL(list);
  }
  EXPECT_EQ(highlightsOf(copy), (Highlights{{1, 2, 2}}));
  EXPECT_EQ(HLL_GetWordCount(copy), 1U);
  GLT_DeleteHLL(copy);
}

// The array for 16 is larger than the one for the first highlight.
TEST(HighlightListMemory, CopyLosesNoneWhereASmallerArrayCanBeAllocated) {
  for (const uint16_t entries : {15, 16}) {
    const ListOwner list({});
    for (uint16_t pos = 0; pos < entries; ++pos)
      HLL_AddHL(list, 1, pos, 1);
    HLL *copy = nullptr;
    {
      const FailingMemory memory(2);
      copy = GLT_CopyHLL(list);
    }
    EXPECT_EQ(highlightsOf(copy).size(), entries == 15 ? 14U : 16U);
    EXPECT_EQ(HLL_GetWordCount(copy), entries);
    GLT_DeleteHLL(copy);
  }
}

// A search begins where the last one ended, in any list: its result must not depend on that.
TEST(HighlightList, PagesAreFoundInAnyOrderOfSearches) {
  const ListOwner many({{9, 1, 1}, {2, 1, 1}, {7, 1, 1}, {5, 1, 1}, {4, 1, 1}}), few({{7, 1, 1}, {9, 1, 1}}), none({});
  for (const HLL *before : {many.list(), few.list(), none.list()})
    for (const int32_t first : {9, 2, 7, 5, 4, 3})
      for (const int32_t wanted : {9, 2, 7, 5, 4, 3}) {
        uint32_t ignored = 0, index = 77;
        HLL_FindPagePos(before, first, &ignored);
        EXPECT_EQ(HLL_FindPagePos(many, wanted, &index), wanted != 3);
        EXPECT_EQ(index,
                  wanted == 3 ? 77U : (std::map<int32_t, uint32_t>{{9, 0}, {2, 1}, {7, 2}, {5, 3}, {4, 4}}[wanted]));
      }
}

// The translation of a list in place may leave two entries at one position.
TEST(HighlightList, CopyOfAPageWithAPositionTwiceKeepsTheFirst) {
  const ListOwner list({{1, 1, 1}, {2, 5, 1}, {2, 6, 2}, {2, 7, 3}, {3, 5, 4}});
  list.list()->pages[1].words[2].pos = 5;
  HLL *copy = GLT_CopyHLL(list);
  EXPECT_EQ(highlightsOf(copy), (Highlights{{1, 1, 1}, {2, 5, 1}, {2, 6, 2}, {3, 5, 4}}));
  EXPECT_EQ(HLL_GetWordCount(copy), 4U);
  GLT_DeleteHLL(copy);
}

/// Entries whose positions differ by more than the bits of a machine word, and repeat after a while.
void fill(HLL *list, int32_t pages, uint16_t entries) {
  for (int32_t page = 0; page < pages; ++page)
    for (uint16_t i = 0; i < entries; ++i)
      HLL_AddHL(list, page, static_cast<uint16_t>(i * 2731), i);
}

TEST(HighlightList, CopyOfAPageOfAnyLengthWithAPositionTwiceKeepsTheFirst) {
  for (const uint16_t entries : {2, 15, 16, 17, 24})
    for (uint16_t first = 0; first < entries; ++first)
      for (uint16_t second = first + 1; second < entries; ++second) {
        const ListOwner list({});
        fill(list, 2, entries);
        list.list()->pages[0].words[second].pos = list.list()->pages[0].words[first].pos;
        Highlights expected = highlightsOf(list);
        expected.erase(expected.begin() + second);
        HLL *copy = GLT_CopyHLL(list);
        ASSERT_EQ(highlightsOf(copy), expected) << first << " and " << second << " of " << entries;
        ASSERT_EQ(HLL_GetWordCount(copy), expected.size());
        GLT_DeleteHLL(copy);
      }
}

TEST(HighlightList, NewArraysAreZero) {
  {
    const ListOwner used({}); // its blocks are likely to be allocated again
    fill(used, 7, 15);
  }
  const ListOwner list({{1, 1, 1}});
  const HLL &all = *list.list();
  for (uint16_t i = 1; i < all.pages->capacity; ++i)
    EXPECT_TRUE(all.pages->words[i].pos == 0 && all.pages->words[i].len == 0) << i;
  for (uint32_t i = 1; i < all.pageCapacity; ++i)
    EXPECT_TRUE(all.pages[i].page == 0 && all.pages[i].words == nullptr) << i;
}

TEST(HighlightList, AddingAllocatesOnlyWhenAnArrayIsFull) {
  const ListOwner list({});
  const FailingMemory memory(SIZE_MAX);
  fill(list, 1, 15);
  EXPECT_EQ(memory.allocations(), 2U) << "the pages and the page";
  fill(list, 1, 16);
  EXPECT_EQ(memory.allocations(), 3U);
}

TEST(HighlightList, CopyAllocatesOncePerPage) {
  for (const uint16_t entries : {1, 2, 15, 16, 17, 24, 300}) {
    const ListOwner list({});
    fill(list, 5, entries);
    HLL_AddHL(list, 4, UINT16_MAX, 1); // the last position
    const FailingMemory memory(SIZE_MAX);
    HLL *copy = GLT_CopyHLL(list);
    EXPECT_EQ(memory.allocations(), 2U + 5U) << "the header, the pages and one array per page, of " << entries;
    EXPECT_EQ(highlightsOf(copy), highlightsOf(list));
    GLT_DeleteHLL(copy);
  }
}

TEST(HighlightList, CopyHasTheCapacitiesThatAddingGives) {
  const ListOwner list({});
  for (int32_t page = 0; page < 20; ++page)
    for (uint16_t pos = 0; pos < page * 5 + 1; ++pos)
      HLL_AddHL(list, page, pos, 1);
  HLPCheck(&list.list()->pages[3], 500); // more than its entries need
  HLL *copy = GLT_CopyHLL(list);
  EXPECT_EQ(highlightsOf(copy), highlightsOf(list));
  EXPECT_EQ(copy->pageCapacity, 24U);
  for (uint32_t i = 0; i < copy->pageCount; ++i)
    EXPECT_EQ(copy->pages[i].capacity, (copy->pages[i].count / 16 + 1) * 16) << i;
  GLT_DeleteHLL(copy);
}

TEST(HighlightList, CopyLeavesOutPagesWithoutEntries) {
  const ListOwner list({{1, 1, 1}});
  HLLInsertPage(list, 2);
  HLL_AddHL(list, 3, 3, 3);
  HLL *copy = GLT_CopyHLL(list);
  EXPECT_EQ(HLL_GetPageCount(copy), 2U);
  EXPECT_EQ(highlightsOf(copy), (Highlights{{1, 1, 1}, {3, 3, 3}}));
  GLT_DeleteHLL(copy);
}

TEST(HighlightListMemory, CopyOfAPageThatCannotBeAllocatedAtOnceAddsOneByOne) {
  const ListOwner list({});
  for (uint16_t pos = 0; pos < 20; ++pos)
    HLL_AddHL(list, 1, pos, 1);
  HLL *copy = nullptr;
  {
    const FailingMemory memory(2); // after the header and the pages
    copy = GLT_CopyHLL(list);
    EXPECT_TRUE(memory.failed());
  }
  EXPECT_EQ(highlightsOf(copy), highlightsOf(list));
  EXPECT_EQ(HLL_GetWordCount(copy), 20U);
  GLT_DeleteHLL(copy);
}

TEST(HighlightList, MakesNoHostCall) {
  const RecordingHost host;
  const ListOwner list({{1, 1, 1}, {2, 2, 2}});
  GLT_DeleteHLL(GLT_CopyHLL(list));
  EXPECT_EQ(host.story(), "\n");
}

TEST(PageArray, IsLeftAloneWhenAskedForMoreThanAPageCanHold) {
  const ListOwner list({{7, 1, 1}});
  HLP *page = HLLFindPage(list, 7);
  const HL *words = page->words;
  for (const uint16_t needed : {uint16_t{65520}, uint16_t{65535}})
    EXPECT_EQ(HLPCheck(page, needed), 0) << needed;
  EXPECT_EQ(page->words, words);
  EXPECT_EQ(page->capacity, 16);
}

} // namespace
