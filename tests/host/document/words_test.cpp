// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Words from what the PDF library gives: UTF-16, and the order of the content stream.
#include "host/document/words.h"

#include <gmock/gmock.h>

namespace host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<uint32_t> ordered(const std::vector<std::u32string_view> &boxes, std::u32string_view raw) {
  return orderByContent(boxes, raw);
}

TEST(CodePoints, SurrogatePairIsOneCodePoint) {
  const unsigned short utf16[] = {'a', 0xD83D, 0xDE00, 'b'};
  EXPECT_EQ(codePoints(utf16), U"a\U0001F600b");
}

TEST(CodePoints, LoneSurrogateIsReplaced) {
  const unsigned short utf16[] = {0xD83D, 'a', 0xDE00};
  EXPECT_EQ(codePoints(utf16), U"\uFFFDa\uFFFD");
}

TEST(CodePoints, SurrogateAtTheEndIsReplaced) {
  const unsigned short utf16[] = {'a', 0xD83D};
  EXPECT_EQ(codePoints(utf16), U"a\uFFFD");
}

TEST(OrderByContent, FollowsTheStream) { EXPECT_THAT(ordered({U"a", U"b", U"c"}, U"c a\nb\n"), ElementsAre(2, 0, 1)); }

TEST(OrderByContent, OfEqualWordsPrefersTheOneAfterTheLast) {
  EXPECT_THAT(ordered({U"the", U"end", U"the", U"cat"}, U"end the cat the"), ElementsAre(1, 2, 3, 0));
}

TEST(OrderByContent, OfEqualWordsPrefersTheOneWhereTheRestFits) {
  EXPECT_THAT(ordered({U"see", U"page", U"one", U"see", U"page", U"two"}, U"see page two see page one"),
              ElementsAre(3, 4, 5, 0, 1, 2));
}

TEST(OrderByContent, OfEqualWordsTakesTheNextUnusedOtherwise) {
  EXPECT_THAT(ordered({U"x", U"x", U"y"}, U"y x x"), ElementsAre(2, 0, 1));
}

TEST(OrderByContent, BoxNotInTheStreamStaysAfterItsPredecessor) {
  EXPECT_THAT(ordered({U"a", U"lost", U"b"}, U"b a"), ElementsAre(2, 0, 1));
}

TEST(OrderByContent, BoxNotInTheStreamAndWithoutPredecessorIsFirst) {
  EXPECT_THAT(ordered({U"lost", U"a", U"b"}, U"b a"), ElementsAre(0, 2, 1));
}

TEST(OrderByContent, WordOfTheStreamWithoutABoxIsSkipped) {
  EXPECT_THAT(ordered({U"a", U"b"}, U"b hidden a"), ElementsAre(1, 0));
}

TEST(OrderByContent, WordsRunTogetherInTheStreamAreTakenApart) {
  EXPECT_THAT(ordered({U"c", U"foo", U"bar"}, U"foobar c"), ElementsAre(1, 2, 0));
}

TEST(OrderByContent, BoxWithASpaceInItIsFound) {
  EXPECT_THAT(ordered({U"z", U"two words"}, U"z two words"), ElementsAre(0, 1));
}

TEST(OrderByContent, NoStreamLeavesReadingOrder) { EXPECT_THAT(ordered({U"a", U"b"}, U""), ElementsAre(0, 1)); }

TEST(OrderByContent, NoBoxesGiveNone) { EXPECT_THAT(ordered({}, U"a b"), IsEmpty()); }

TEST(OrderByContent, EveryBoxOfALargePageAppearsOnce) {
  std::vector<std::u32string_view> boxes(5000, U"same");
  std::u32string raw;
  for (int i = 0; i < 6000; ++i)
    raw += i % 3 == 0 ? U"other " : U"same ";
  std::vector<uint32_t> order = ordered(boxes, raw);
  std::sort(order.begin(), order.end());
  ASSERT_EQ(order.size(), boxes.size());
  for (uint32_t i = 0; i < order.size(); ++i)
    ASSERT_EQ(order[i], i);
}

} // namespace
} // namespace host
