// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The cache of rendered pages: its bound, and which pages are dropped.
#include "viewer/model/cache.h"

#include <gtest/gtest.h>

namespace viewer {
namespace {

constexpr size_t bytesAPage = 10 * 10 * sizeof(uint32_t);

host::Image image(uint32_t color = 0, int side = 10) {
  return {side, side, std::vector<uint32_t>(static_cast<size_t>(side) * static_cast<size_t>(side), color)};
}
PageKey page(int32_t number, uint64_t document = 1) { return {document, number, 72}; }

// With capacity for three pages.
struct PageCacheTest : testing::Test {
  PageCache cache{3 * bytesAPage};
  void insert(int32_t first, int32_t last) {
    for (int32_t number = first; number <= last; ++number)
      cache.insert(page(number), image());
  }
};

TEST_F(PageCacheTest, GivesWhatWasInserted) {
  cache.insert(page(4), image(0xFF123456));
  ASSERT_NE(cache.find(page(4)), nullptr);
  EXPECT_EQ(cache.find(page(4))->pixels[0], 0xFF123456);
}

TEST_F(PageCacheTest, APageThatWasNotInsertedIsNotFound) {
  EXPECT_EQ(cache.find(page(0)), nullptr);
  EXPECT_FALSE(cache.has(page(0)));
}

TEST_F(PageCacheTest, TheSamePageAtAnotherSizeIsAnother) {
  cache.insert({1, 0, 72}, image());
  EXPECT_FALSE(cache.has({1, 0, 144}));
}

TEST_F(PageCacheTest, TheSamePageOfAnotherDocumentIsAnother) {
  cache.insert(page(0, 1), image());
  EXPECT_FALSE(cache.has(page(0, 2)));
}

TEST_F(PageCacheTest, AsManyStayAsFit) {
  insert(0, 2);
  EXPECT_EQ(cache.size(), 3U);
  EXPECT_EQ(cache.bytes(), cache.bound());
}

TEST_F(PageCacheTest, TheLeastRecentlyUsedPageIsDropped) {
  insert(0, 3);
  EXPECT_FALSE(cache.has(page(0)));
  EXPECT_TRUE(cache.has(page(1)) && cache.has(page(2)) && cache.has(page(3)));
}

TEST_F(PageCacheTest, FindingAPageUsesIt) {
  insert(0, 2);
  cache.find(page(0));
  insert(3, 3);
  EXPECT_TRUE(cache.has(page(0)));
  EXPECT_FALSE(cache.has(page(1)));
}

TEST_F(PageCacheTest, HasDoesNotCountAsUse) {
  insert(0, 2);
  EXPECT_TRUE(cache.has(page(0)));
  insert(3, 3);
  EXPECT_FALSE(cache.has(page(0)));
}

TEST_F(PageCacheTest, APageLargerThanTheBoundStaysAlone) {
  insert(0, 1);
  cache.insert(page(2), image(0, 100));
  EXPECT_TRUE(cache.has(page(2)));
  EXPECT_EQ(cache.size(), 1U);
}

TEST_F(PageCacheTest, APageLargerThanTheBoundIsDroppedAtTheNextInsert) {
  cache.insert(page(0), image(0, 100));
  insert(1, 1);
  EXPECT_FALSE(cache.has(page(0)));
  EXPECT_EQ(cache.bytes(), bytesAPage);
}

TEST_F(PageCacheTest, AnotherImageReplacesTheOneBefore) {
  cache.insert(page(0), image(1));
  cache.insert(page(0), image(2, 5));
  EXPECT_EQ(cache.find(page(0))->pixels[0], 2U);
  EXPECT_EQ(cache.size(), 1U);
  EXPECT_EQ(cache.bytes(), bytesAPage / 4);
}

TEST_F(PageCacheTest, AReplacedPageIsTheOneUsedLast) {
  insert(0, 2);
  insert(0, 0);
  insert(3, 3);
  EXPECT_TRUE(cache.has(page(0)));
}

TEST_F(PageCacheTest, ADocumentsPagesAreDroppedTogether) {
  cache.insert(page(0, 1), image());
  cache.insert(page(0, 2), image());
  cache.insert(page(1, 1), image());
  cache.drop(1);
  EXPECT_EQ(cache.size(), 1U);
  EXPECT_TRUE(cache.has(page(0, 2)));
  EXPECT_EQ(cache.bytes(), bytesAPage);
}

TEST_F(PageCacheTest, DroppingAnUnknownDocumentChangesNothing) {
  insert(0, 0);
  cache.drop(7);
  EXPECT_EQ(cache.bytes(), bytesAPage);
}

} // namespace
} // namespace viewer
