// The highlight list.
#include <gtest/gtest.h>

#include "plugin/glt/glt.h"
#include "tests/plugin/glt/lists.h"

namespace {

TEST(HighlightList, NewListIsEmptyAndHasNoHighlights) {
  const ListOwner list({});
  int32_t page = -7;
  uint16_t pos = 7, len = 7;
  EXPECT_EQ(HLL_GetPageCount(list), 0U);
  EXPECT_EQ(HLL_GetWordCount(list), 0U);
  EXPECT_EQ(HLL_GetHL(list, 0, 0, &page, &pos, &len), 0);
  EXPECT_EQ(page, -7);
}

TEST(HighlightList, FirstLengthOfAPositionWins) {
  const ListOwner list({});
  EXPECT_EQ(HLL_AddHL(list, 7, 3, 2), 1);
  EXPECT_EQ(HLL_AddHL(list, 7, 3, 5), 1);
  EXPECT_EQ(highlightsOf(list), (Highlights{{7, 3, 2}}));
  EXPECT_EQ(HLL_GetWordCount(list), 1U);
}

TEST(HighlightList, PagesStandInOrderOfAdding) {
  const ListOwner list({{9, 1, 1}, {2, 1, 1}, {9, 2, 1}, {5, 1, 1}});
  uint32_t index = 99;
  EXPECT_EQ(highlightsOf(list), (Highlights{{9, 1, 1}, {9, 2, 1}, {2, 1, 1}, {5, 1, 1}}));
  EXPECT_EQ(HLL_FindPagePos(list, 2, &index), 1);
  EXPECT_EQ(index, 1U);
  EXPECT_EQ(HLL_FindPagePos(list, 4, &index), 0);
  EXPECT_EQ(index, 1U) << "untouched";
}

} // namespace
