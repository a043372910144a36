// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Selections: which boxes ranges of characters and words cover, and one selection for equal ranges.
#include "host/document/select.h"

#include <gmock/gmock.h>

#include <limits>
#include <ostream>

#include "document/here.h"
#include "support/IsBox.h"
#include "support/pdf.h"

namespace host {
namespace {

using tavrel::TextRange;
using test::IsBox;
using testing::ElementsAre;
using testing::IsEmpty;

// A word whose characters are ten wide, from `left` on, on the base line 0 and ten high.
WordText word(std::u32string text, uint32_t offset, double left) {
  WordText result{.text = std::move(text), .offset = offset};
  for (size_t i = 0; i < result.text.size(); ++i) {
    const double from = left + 10.0 * static_cast<double>(i);
    result.characters.push_back({from, 10, from + 10, 0});
  }
  result.bounds = {left, 10, left + 10.0 * static_cast<double>(result.text.size()), 0};
  return result;
}

// "abc de"
PageText twoWords() { return {.words = {word(U"abc", 0, 0), word(U"de", 4, 100)}}; }

std::vector<Box> characters(const PageText &page, const std::vector<Span> &spans) {
  return characterBoxes(page, spans);
}

// ---- characters ----

TEST(CharacterBoxes, PartOfAWord) { EXPECT_THAT(characters(twoWords(), {{1, 2}}), ElementsAre(IsBox(10, 0, 20, 10))); }

TEST(CharacterBoxes, OneBoxAWord) {
  EXPECT_THAT(characters(twoWords(), {{2, 5}}), ElementsAre(IsBox(20, 0, 30, 10), IsBox(100, 0, 110, 10)));
}

TEST(CharacterBoxes, SeparatorCoversNothing) { EXPECT_THAT(characters(twoWords(), {{3, 4}}), IsEmpty()); }

TEST(CharacterBoxes, BeyondTheEndIsClamped) {
  EXPECT_THAT(characters(twoWords(), {{5, 5000}}), ElementsAre(IsBox(110, 0, 120, 10)));
  EXPECT_THAT(characters(twoWords(), {{6, 5000}}), IsEmpty());
}

TEST(CharacterBoxes, TwoPartsOfAWordAreTwoBoxes) {
  EXPECT_THAT(characters(twoWords(), {{0, 1}, {2, 3}}), ElementsAre(IsBox(0, 0, 10, 10), IsBox(20, 0, 30, 10)));
}

TEST(CharacterBoxes, LettersOfALigatureInTwoRangesAreOneBox) {
  PageText page = twoWords();
  page.words[0].characters.assign(3, Box{0, 10, 30, 0});
  EXPECT_THAT(characters(page, {{0, 1}, {2, 3}}), ElementsAre(IsBox(0, 0, 30, 10)));
}

TEST(CharacterBoxes, CharacterWithoutAreaAddsNothing) {
  PageText page = twoWords();
  page.words[0].characters[2] = Box{};
  EXPECT_THAT(characters(page, {{1, 3}}), ElementsAre(IsBox(10, 0, 20, 10)));
}

TEST(CharacterBoxes, CharacterWithoutWidthOrHeightAddsNothing) {
  for (const Box &line : {Box{500, 10, 500, 0}, Box{500, 5, 600, 5}}) {
    PageText page = twoWords();
    page.words[0].characters[2] = line;
    EXPECT_THAT(characters(page, {{1, 3}}), ElementsAre(IsBox(10, 0, 20, 10)));
  }
}

TEST(CharacterBoxes, BoxesWithTheSameUpperLeftCornerAreTwo) {
  PageText page = twoWords();
  page.words[0].characters[1] = Box{0, 10, 20, 0};
  EXPECT_THAT(characters(page, {{0, 1}, {1, 2}}), ElementsAre(IsBox(0, 0, 10, 10), IsBox(0, 0, 20, 10)));
}

struct Bare {
  const char *name;
  int quarterTurns;
  Box first, middle; // the first character, and the second and third one
};

void PrintTo(const Bare &word, std::ostream *out) { *out << word.name; }

class WithoutCharacterBoxes : public testing::TestWithParam<Bare> {};

TEST_P(WithoutCharacterBoxes, ShareOfTheWordIsUsedInstead) {
  PageText page{.words = {WordText{.text = U"abcd", .bounds = {0, 40, 40, 0}, .characters = std::vector<Box>(4)}}};
  page.words[0].quarterTurns = GetParam().quarterTurns;
  const auto is = [](const Box &box) { return IsBox(box.left, box.bottom, box.right, box.top); };
  EXPECT_THAT(characters(page, {{0, 1}}), ElementsAre(is(GetParam().first)));
  EXPECT_THAT(characters(page, {{1, 3}}), ElementsAre(is(GetParam().middle)));
}

INSTANTIATE_TEST_SUITE_P(Of, WithoutCharacterBoxes,
                         testing::Values(Bare{"ToTheRight", 0, {0, 40, 10, 0}, {10, 40, 30, 0}},
                                         Bare{"Down", 1, {0, 40, 40, 30}, {0, 30, 40, 10}},
                                         Bare{"ToTheLeft", 2, {30, 40, 40, 0}, {10, 40, 30, 0}},
                                         Bare{"Up", 3, {0, 10, 40, 0}, {0, 30, 40, 10}}),
                         [](const testing::TestParamInfo<Bare> &instance) { return instance.param.name; });

// ---- words ----

TEST(WordBoxes, OneBoxAWordInReadingOrder) {
  const std::vector<Span> spans = {{0, 2}};
  EXPECT_THAT(wordBoxes(twoWords(), spans, {}), ElementsAre(IsBox(0, 0, 30, 10), IsBox(100, 0, 120, 10)));
}

TEST(WordBoxes, NumberedInAnotherOrder) {
  const std::vector<Span> spans = {{0, 1}};
  const std::vector<uint32_t> order = {1, 0};
  EXPECT_THAT(wordBoxes(twoWords(), spans, order), ElementsAre(IsBox(100, 0, 120, 10)));
}

TEST(WordBoxes, BeyondTheEndIsClamped) {
  const std::vector<Span> spans = {{1, 70'000}};
  EXPECT_THAT(wordBoxes(twoWords(), spans, {}), ElementsAre(IsBox(100, 0, 120, 10)));
}

// ---- selections of a document ----

class SelectionTest : public testing::Test {
protected:
  // Page 0: "alpha beta" in reading order, "beta" drawn first. Page 1: "alpha".
  SelectionTest()
      : document(document::openedHere(
            folder.pdf({{.texts = {{.x = 50, .y = 100, .text = "beta"}, {.x = 50, .y = 500, .text = "alpha"}}},
                        {.texts = {{.x = 50, .y = 500, .text = "alpha"}}}}),
            "")) {}

  const Selection *characters(const std::vector<TextRange> &ranges, int32_t page = 0) {
    return document->selectCharacters(page, ranges);
  }
  const Selection *words(const std::vector<TextRange> &ranges, int16_t version = readingOrderVersion) {
    return document->selectWords(0, ranges, version);
  }

  test::ScratchFolder folder;
  std::unique_ptr<Document> document;
};

TEST_F(SelectionTest, EqualRangesAreTheSameSelection) {
  EXPECT_EQ(characters({{0, 3}}), characters({{0, 3}}));
  EXPECT_EQ(words({{0, 1}, {1, 1}}), words({{0, 1}, {1, 1}}));
  EXPECT_EQ(document->selectionCount(), 2U);
}

TEST_F(SelectionTest, OtherRangesPagesKindsAndVersionsAreOthers) {
  const std::set<const Selection *> different = {characters({{0, 1}}), characters({{0, 2}}), characters({{0, 1}}, 1),
                                                 words({{0, 1}}), words({{0, 1}}, contentOrderVersion)};
  EXPECT_EQ(different.size(), 5U);
  EXPECT_EQ(document->selectionCount(), 5U);
}

TEST_F(SelectionTest, KnowsItsPage) {
  EXPECT_EQ(characters({{0, 1}})->page, 0);
  EXPECT_EQ(characters({{0, 1}}, 1)->page, 1);
}

TEST_F(SelectionTest, WordsAreNumberedByTheirVersion) {
  EXPECT_GT(words({{0, 1}}, readingOrderVersion)->bounds.bottom, 400) << "alpha is read first";
  EXPECT_LT(words({{0, 1}}, contentOrderVersion)->bounds.bottom, 200) << "beta is drawn first";
}

TEST_F(SelectionTest, BoundsGoAroundAllBoxes) {
  const Selection *selection = words({{0, 2}});
  ASSERT_EQ(selection->boxes.size(), 2U);
  EXPECT_THAT(selection->bounds, IsBox(50, 100 - 1.57, 80, 500 + 6.29));
}

TEST_F(SelectionTest, NothingCoveredIsNoSelection) {
  EXPECT_EQ(characters({}), nullptr);
  EXPECT_EQ(characters({{0, 0}}), nullptr);
  EXPECT_EQ(characters({{1, 0}}), nullptr);
  EXPECT_EQ(characters({{5, 1}}), nullptr) << "the separator";
  EXPECT_EQ(characters({{10, 1}, {65535, 65535}}), nullptr) << "beyond the end";
  EXPECT_EQ(words({{2, 1}}), nullptr);
  EXPECT_EQ(document->selectionCount(), 0U);
}

TEST_F(SelectionTest, RangesBeyondTheEndAreClamped) {
  EXPECT_EQ(words({{1, 65535}})->boxes.size(), 1U);
  EXPECT_THAT(characters({{8, 65535}})->boxes, ElementsAre(IsBox(62, 100 - 1.57, 74, 100 + 6.29)));
}

TEST_F(SelectionTest, CountsTheRangesThatCoverSomething) {
  EXPECT_EQ(characters({{0, 1}, {5, 1}, {6, 1}, {99, 1}})->ranges, 2U);
}

TEST_F(SelectionTest, RangesOutsideOfThePageAreCountedApart) {
  // The glyph of a vertical line that starts at the foot of the page lies below it.
  const auto vertical =
      document::openedHere(folder.pdf({{.texts = {{.x = 50, .y = 300, .text = "a"}, {.x = 50, .y = 0, .text = "b"}}}},
                                      {}, {.kind = test::PdfFont::vertical}),
                           "");
  const std::vector<TextRange> both = {{0, 1}, {1, 1}};
  const Selection *selection = vertical->selectWords(0, both, readingOrderVersion);
  EXPECT_EQ(selection->boxes.size(), 2U);
  EXPECT_EQ(selection->ranges, 1U);
  EXPECT_EQ(selection->offPage, 1U);
}

TEST_F(SelectionTest, RangesBeyondTheTextAreCountedApart) {
  const Selection *selection = characters({{0, 1}, {5000, 3}, {6000, 0}});
  EXPECT_EQ(selection->ranges, 1U);
  EXPECT_EQ(selection->offPage, 1U);
  EXPECT_EQ(document->takeRangesWithoutText(0), 0U) << "there is a selection";
  EXPECT_EQ(characters({{5000, 1}, {6000, 1}, {7000, 0}}), nullptr);
  EXPECT_EQ(words({{5000, 1}}), nullptr);
  EXPECT_EQ(document->takeRangesWithoutText(1), 0U);
  EXPECT_EQ(document->takeRangesWithoutText(0), 2U);
  EXPECT_EQ(document->takeRangesWithoutText(0), 0U) << "taken";
  words({{5000, 2}});
  EXPECT_EQ(document->takeRangesWithoutText(0), 1U);
}

TEST_F(SelectionTest, OverlappingRangesAreOneMark) {
  EXPECT_EQ(characters({{0, 3}, {1, 3}})->boxes.size(), 1U);
  EXPECT_EQ(words({{0, 2}, {1, 1}, {0, 1}})->boxes.size(), 2U);
}

TEST_F(SelectionTest, RangesThatTouchAreOneMark) { EXPECT_EQ(characters({{0, 1}, {1, 1}})->boxes.size(), 1U); }

TEST_F(SelectionTest, RangesOutOfOrderAreMarkedInOrder) {
  EXPECT_EQ(characters({{3, 1}, {0, 1}})->boxes, characters({{0, 1}, {3, 1}})->boxes);
}

TEST_F(SelectionTest, UnknownVersionIsABadArgument) {
  for (const int16_t version : {int16_t{0}, int16_t{3}, int16_t{-1}})
    try {
      words({{0, 1}}, version);
      ADD_FAILURE() << version;
    } catch (const HostError &error) {
      EXPECT_EQ(error.code, tavrel::errBadArgument);
    }
}

TEST_F(SelectionTest, LivesUntilTheDocumentCloses) {
  const tavrel::TextSelection handle = selections().handle(characters({{0, 1}}));
  EXPECT_EQ(selections().find(handle).page, 0);
  document.reset();
  EXPECT_THROW(selections().find(handle), HostError);
}

TEST_F(SelectionTest, IsNotKeptIfThereIsNoHandleForIt) {
  const HandleNumbers numbers = handleNumbers();
  handleNumbers() = HandleNumbers(std::numeric_limits<uintptr_t>::max());
  EXPECT_THROW(characters({{0, 1}}), HostError);
  handleNumbers() = numbers;
  EXPECT_EQ(document->selectionCount(), 0U);
}

// ---- the edges of the page ----

// A page of 100 by 100 points with one word.
class OneWordDocument final : public Document {
public:
  explicit OneWordDocument(const Box &box) : text_{{WordText{.text = U"word", .bounds = box}}} {}

  int32_t pageCount() const override { return 1; }
  PageSize pageSize(int32_t /*page*/) override { return {100, 100}; }
  const PageText &pageText(int32_t /*page*/) override { return text_; }
  const std::vector<uint32_t> &contentOrder(int32_t /*page*/) override { return order_; }
  void forgetText(int32_t /*page*/) override {}
  Image render(int32_t /*page*/, double /*dpi*/) override { return {}; }
  const Selection *selectCharacters(int32_t page, std::span<const TextRange> ranges) override {
    return store_.characters(page, ranges, *this);
  }
  const Selection *selectWords(int32_t page, std::span<const TextRange> ranges, int16_t version) override {
    return store_.words(page, ranges, version, *this);
  }
  size_t selectionCount() const override { return store_.size(); }

private:
  PageText text_;
  std::vector<uint32_t> order_ = {0};
  SelectionStore store_;
};

struct AtAnEdge {
  const char *name;
  Box box;
  bool isOnPage;
};

void PrintTo(const AtAnEdge &edge, std::ostream *out) { *out << edge.name; }

class PageEdge : public testing::TestWithParam<AtAnEdge> {};

// A hundredth of a point is enough to be painted.
TEST_P(PageEdge, WordIsOnThePageIfEnoughOfItIs) {
  OneWordDocument document(GetParam().box);
  const TextRange first{0, 1};
  const Selection *selection = document.selectWords(0, {&first, 1}, readingOrderVersion);
  EXPECT_EQ(selection->ranges, GetParam().isOnPage ? 1U : 0U);
  EXPECT_EQ(selection->offPage, GetParam().isOnPage ? 0U : 1U);
}

INSTANTIATE_TEST_SUITE_P(
    At, PageEdge,
    testing::Values(
        AtAnEdge{"LeftEnough", {-5, 60, 0.01, 50}, true}, AtAnEdge{"LeftTooLittle", {-5, 60, 0.009, 50}, false},
        AtAnEdge{"LeftNothing", {-5, 60, -1, 50}, false}, AtAnEdge{"RightEnough", {99.98, 60, 110, 50}, true},
        AtAnEdge{"RightTooLittle", {99.995, 60, 110, 50}, false}, AtAnEdge{"RightNothing", {150, 60, 160, 50}, false},
        AtAnEdge{"BottomEnough", {50, 0.01, 60, -5}, true}, AtAnEdge{"BottomTooLittle", {50, 0.009, 60, -5}, false},
        AtAnEdge{"BottomNothing", {50, -1, 60, -5}, false}, AtAnEdge{"TopEnough", {50, 110, 60, 99.98}, true},
        AtAnEdge{"TopTooLittle", {50, 110, 60, 99.995}, false}, AtAnEdge{"TopNothing", {50, 160, 60, 150}, false}),
    [](const testing::TestParamInfo<AtAnEdge> &instance) { return instance.param.name; });

// ---- how many a document keeps ----

// Selections of the same character by as many different lists of ranges as wanted.
class SelectionBoundTest : public SelectionTest {
protected:
  tavrel::TextSelection make(size_t n) {
    return selections().handle(characters({{0, 1}, {static_cast<uint16_t>(n), 0}}));
  }
  // Whether the handle still names a selection; that counts as a use.
  static bool lives(tavrel::TextSelection handle) {
    try {
      return selections().find(handle).page == 0;
    } catch (const HostError &error) {
      EXPECT_EQ(error.code, tavrel::errBadHandle);
      return false;
    }
  }
};

TEST_F(SelectionBoundTest, KeepsAsManyAsSpecified) {
  const tavrel::TextSelection first = make(0);
  for (size_t n = 1; n < SelectionStore::mostSelections; ++n)
    make(n);
  EXPECT_EQ(document->selectionCount(), SelectionStore::mostSelections);
  EXPECT_TRUE(lives(first));
}

TEST_F(SelectionBoundTest, DropsTheOneUsedLongestAgo) {
  const tavrel::TextSelection first = make(0), second = make(1), third = make(2), fourth = make(3);
  EXPECT_TRUE(lives(first)) << "a plug-in's operation uses it";
  EXPECT_EQ(make(2), third) << "so does asking for it again";
  for (size_t n = 4; n < SelectionStore::mostSelections + 2; ++n)
    make(n);
  EXPECT_FALSE(lives(second));
  EXPECT_FALSE(lives(fourth));
  EXPECT_TRUE(lives(first));
  EXPECT_TRUE(lives(third));
  EXPECT_EQ(document->selectionCount(), SelectionStore::mostSelections);
}

TEST_F(SelectionBoundTest, AHandleThatWasDroppedNeverReturns) {
  const tavrel::TextSelection stale = make(0);
  for (size_t n = 1; n <= SelectionStore::mostSelections; ++n)
    make(n);
  EXPECT_FALSE(lives(stale));
  const tavrel::TextSelection again = make(0);
  EXPECT_NE(again, stale);
  EXPECT_FALSE(lives(stale));
  EXPECT_TRUE(lives(again));
}

TEST_F(SelectionBoundTest, FewerWhereTheyAreLargeButNeverFewerThanSpecified) {
  std::vector<TextRange> ranges(SelectionStore::mostParts / 2);
  for (uint16_t n = 1; n <= SelectionStore::fewestSelections + 2; ++n) {
    ranges[0] = {0, n};
    characters(ranges);
  }
  EXPECT_EQ(document->selectionCount(), SelectionStore::fewestSelections);
  for (size_t n = 0; n < 2 * SelectionStore::fewestSelections; ++n)
    make(n);
  EXPECT_EQ(document->selectionCount(), 2 * SelectionStore::fewestSelections + 1) << "one of the large ones still fits";
}

TEST_F(SelectionBoundTest, KeepsExactlyAsManyPartsAsSpecified) {
  size_t parts = 0; // of all selections so far: their boxes and ranges
  for (size_t n = 0; n < SelectionStore::fewestSelections; ++n) {
    make(n);
    parts += 1 + 2;
  }
  std::vector<TextRange> ranges(SelectionStore::mostParts - parts - 1);
  ranges[0] = {0, 1};
  characters(ranges);
  EXPECT_EQ(document->selectionCount(), SelectionStore::fewestSelections + 1);
  make(SelectionStore::fewestSelections);
  EXPECT_EQ(document->selectionCount(), SelectionStore::fewestSelections + 1) << "three more parts are too many";
}

TEST_F(SelectionBoundTest, EachDocumentHasItsOwn) {
  const tavrel::TextSelection first = make(0);
  const auto other = document::openedHere(folder.path() / "test.pdf", "");
  for (size_t n = 0; n <= SelectionStore::mostSelections; ++n)
    other->selectCharacters(0, std::vector<TextRange>{{0, 1}, {static_cast<uint16_t>(n), 0}});
  EXPECT_TRUE(lives(first));
}

TEST_F(SelectionTest, StaysWhenThePagesTextIsForgotten) {
  const Selection *selection = characters({{0, 3}});
  document->forgetText(0);
  EXPECT_EQ(characters({{0, 3}}), selection);
}

} // namespace
} // namespace host
