// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Words from what the PDF library gives: UTF-16, and the order of the content stream.
#include "document/words.h"

#include <gmock/gmock.h>

#include <ostream>

namespace document {
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

struct Units {
  const char *name;
  std::vector<unsigned short> utf16;
  std::u32string codePoints;
};

void PrintTo(const Units &units, std::ostream *out) { *out << units.name; }

class CodePointBounds : public testing::TestWithParam<Units> {};

TEST_P(CodePointBounds, Decoded) { EXPECT_EQ(codePoints(GetParam().utf16), GetParam().codePoints); }

INSTANTIATE_TEST_SUITE_P(Of, CodePointBounds,
                         testing::Values(Units{"LastBeforeTheSurrogates", {0xD7FF}, U"\uD7FF"},
                                         Units{"FirstHigh", {0xD800}, U"\uFFFD"},
                                         Units{"LastHigh", {0xDBFF}, U"\uFFFD"}, Units{"FirstLow", {0xDC00}, U"\uFFFD"},
                                         Units{"LastLow", {0xDFFF}, U"\uFFFD"},
                                         Units{"FirstAfterTheSurrogates", {0xE000}, U"\uE000"},
                                         Units{"FirstPair", {0xD800, 0xDC00}, U"\U00010000"},
                                         Units{"LastPair", {0xDBFF, 0xDFFF}, U"\U0010FFFF"},
                                         Units{"TwoHigh", {0xD800, 0xDBFF}, U"\uFFFD\uFFFD"},
                                         Units{"TwoLow", {0xDC00, 0xDC00}, U"\uFFFD\uFFFD"},
                                         Units{"HighAndNoSurrogate", {0xD800, 0xE000}, U"\uFFFD\uE000"}),
                         [](const testing::TestParamInfo<Units> &instance) { return instance.param.name; });

TEST(CodePoints, NothingAfterTheEndIsRead) {
  const unsigned short utf16[] = {'a', 0xD83D, 0xDE00};
  EXPECT_EQ(codePoints({utf16, 2}), U"a\uFFFD");
}

TEST(OrderByContent, FollowsTheStream) { EXPECT_THAT(ordered({U"a", U"b", U"c"}, U"c a\nb\n"), ElementsAre(2, 0, 1)); }

TEST(OrderByContent, OfEqualWordsPrefersTheOneAfterTheLast) {
  EXPECT_THAT(ordered({U"the", U"end", U"the", U"cat"}, U"end the cat the"), ElementsAre(1, 2, 3, 0));
}

TEST(OrderByContent, OfEqualWordsPrefersTheOneAfterTheLastToTheFirst) {
  EXPECT_THAT(ordered({U"the", U"end", U"the", U"cat"}, U"end the"), ElementsAre(0, 1, 2, 3));
}

TEST(OrderByContent, OfEqualWordsWithNothingElseToTellTakesTheFirst) {
  EXPECT_THAT(ordered({U"x", U"p", U"x", U"q", U"y"}, U"y x"), ElementsAre(4, 0, 1, 2, 3));
}

TEST(OrderByContent, OfEqualWordsPrefersTheOneWhereTheRestFits) {
  EXPECT_THAT(ordered({U"see", U"page", U"one", U"see", U"page", U"two"}, U"see page two see page one"),
              ElementsAre(3, 4, 5, 0, 1, 2));
}

TEST(OrderByContent, OfEqualWordsTakesTheNextUnusedOtherwise) {
  EXPECT_THAT(ordered({U"x", U"x", U"y"}, U"y x x"), ElementsAre(2, 0, 1));
}

// Boxes before the first one that is found stay first: "start" is the first of all only if box 0 comes next in the
// stream. Of two equal words the second one is followed by one word more of the stream than the first one.
TEST(OrderByContent, RestIsComparedForSixteenWords) {
  const auto prefersTheSecond = [](uint32_t words) {
    std::vector<std::u32string> texts = {U"same"};
    for (uint32_t i = 1; i < words; ++i)
      texts.emplace_back(1, U'A' + i);
    std::vector<std::u32string_view> boxes(texts.begin(), texts.end() - 1);
    boxes.insert(boxes.end(), texts.begin(), texts.end());
    boxes.push_back(U"start");
    std::u32string raw = U"start";
    for (const std::u32string &text : texts)
      raw += U' ' + text;
    return ordered(boxes, raw).front() == 0;
  };
  EXPECT_TRUE(prefersTheSecond(16));
  EXPECT_FALSE(prefersTheSecond(17));
}

// Of all equal words the last one is followed by the rest of the stream.
TEST(OrderByContent, SixtyFourEqualWordsAreCompared) {
  const auto prefersTheLast = [](uint32_t count) {
    std::vector<std::u32string_view> boxes(count, U"same");
    boxes.insert(boxes.end(), {U"rest", U"start"});
    return ordered(boxes, U"start same rest").front() == 0;
  };
  EXPECT_TRUE(prefersTheLast(64));
  EXPECT_FALSE(prefersTheLast(65));
}

TEST(OrderByContent, EqualWordsThatAreUsedDoNotCount) {
  std::vector<std::u32string_view> boxes(70, U"x");
  boxes.insert(boxes.end(), 70, U"y");
  std::u32string raw;
  std::vector<uint32_t> alternating;
  for (uint32_t i = 0; i < 70; ++i) {
    raw += U"x y ";
    alternating.insert(alternating.end(), {i, 70 + i});
  }
  EXPECT_EQ(ordered(boxes, raw), alternating);
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

TEST(OrderByContent, LastCharacterOfAWordMayBeAnotherBox) {
  EXPECT_THAT(ordered({U"c", U"foo", U"b"}, U"foob c"), ElementsAre(1, 2, 0));
}

TEST(OrderByContent, FirstCharacterOfAWordMayBeAnotherBox) {
  EXPECT_THAT(ordered({U"c", U"x", U"foo"}, U"xfoo c"), ElementsAre(1, 2, 0));
}

TEST(OrderByContent, BoxOfTheWordIsPreferredToTheNextOneOfItsFirstPart) {
  EXPECT_THAT(ordered({U"foobar", U"a", U"foo"}, U"a foobar"), ElementsAre(1, 2, 0));
}

TEST(OrderByContent, BoxOfTheWordIsPreferredToOneOfItAndTheNext) {
  EXPECT_THAT(ordered({U"bc", U"x", U"c", U"b"}, U"x b c"), ElementsAre(0, 1, 3, 2));
}

TEST(OrderByContent, PartOfAWordEndsInTheWord) { EXPECT_THAT(ordered({U"x", U"bc"}, U"b cx"), ElementsAre(0, 1)); }

TEST(OrderByContent, StreamOfOneWord) { EXPECT_THAT(ordered({U"b", U"a"}, U"a"), ElementsAre(0, 1)); }

TEST(OrderByContent, NothingAfterTheStreamIsRead) {
  const std::u32string_view raw = U"a bc";
  EXPECT_THAT(ordered({U"bc", U"b", U"a"}, raw.substr(0, 3)), ElementsAre(0, 2, 1));
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
} // namespace document
