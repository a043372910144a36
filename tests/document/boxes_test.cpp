// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Boxes of words that the PDF library positions wrongly or gives no area: vertical writing, fonts without metrics.
#include "document/boxes.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "document/here.h"
#include "host/document/document.h"
#include "host/document/linebox.h"
#include "support/IsBox.h"
#include "support/pdf.h"

namespace document {
namespace {

using host::Box;
using host::Document;
using host::Image;
using host::LineBox;
using host::onLine;
using host::onPage;
using host::PageText;
using host::WordText;

using test::IsBox;
using test::PdfFont;
using testing::ElementsAre;

WordText word(std::u32string text, const Box &box, int quarterTurns = 0) {
  const size_t count = text.size();
  return {.text = std::move(text), .bounds = box, .characters = std::vector<Box>(count), .quarterTurns = quarterTurns};
}

// A word on the base line 100, ten points high.
WordText usable(double left, double right) { return word(U"word", {left, 108, right, 98}); }

std::vector<Box> corrected(std::vector<WordText> words, double size = 10) {
  correctBoxes(words, std::vector<WordFont>(words.size(), {size, false}));
  std::vector<Box> boxes;
  for (const WordText &each : words)
    boxes.push_back(each.bounds);
  return boxes;
}

Box turned(const Box &box, int quarterTurns) { return onPage(onLine(box, 0), quarterTurns); }

// ---- the frame of a line ----

TEST(LineBoxes, ComeBackFromTheirLine) {
  const Box box{10, 40, 30, 20};
  for (int turns = 0; turns < 4; ++turns)
    EXPECT_THAT(onPage(onLine(box, turns), turns), IsBox(10, 20, 30, 40)) << turns;
}

TEST(LineBoxes, StartWhereReadingStarts) {
  const Box box{10, 40, 30, 20};
  const Box firstHalf[] = {{10, 40, 20, 20}, {10, 40, 30, 30}, {20, 40, 30, 20}, {10, 30, 30, 20}};
  for (int turns = 0; turns < 4; ++turns) {
    LineBox line = onLine(box, turns);
    line.end = (line.start + line.end) / 2;
    const Box &half = firstHalf[turns];
    EXPECT_THAT(onPage(line, turns), IsBox(half.left, half.bottom, half.right, half.top)) << turns;
  }
}

// ---- words without area ----

TEST(DegenerateBoxes, AUsableBoxStays) {
  EXPECT_THAT(corrected({word(U"i", {50, 108, 52, 98})}), ElementsAre(IsBox(50, 98, 52, 108)));
}

TEST(DegenerateBoxes, SmallTextKeepsItsBox) {
  EXPECT_THAT(corrected({word(U"i", {50, 103, 50.6, 100})}, 3), ElementsAre(IsBox(50, 100, 50.6, 103)));
}

TEST(DegenerateBoxes, HalfAPointIsWideAndHighEnough) {
  EXPECT_THAT(corrected({word(U"i", {50, 103, 50.5, 100})}), ElementsAre(IsBox(50, 100, 50.5, 103)));
  EXPECT_THAT(corrected({word(U"ab", {50, 100.5, 52, 100})}), ElementsAre(IsBox(50, 100, 52, 100.5)));
}

TEST(DegenerateBoxes, WithoutWidthIsOneFontSizeWide) {
  EXPECT_THAT(corrected({word(U"abc", {50, 108, 50, 98})}), ElementsAre(IsBox(50, 98, 60, 108)));
}

TEST(DegenerateBoxes, AHairlineIsWithoutWidth) {
  EXPECT_THAT(corrected({word(U"abc", {50, 108, 50.4, 98})}), ElementsAre(IsBox(50, 98, 60, 108)));
}

TEST(DegenerateBoxes, EndsWhereTheNextWordOnTheLineStarts) {
  EXPECT_THAT(corrected({word(U"a", {50, 108, 50, 98}), word(U"b", {56, 108, 56, 98})}),
              ElementsAre(IsBox(50, 98, 56, 108), IsBox(56, 98, 66, 108)));
}

TEST(DegenerateBoxes, AWordOnAnotherLineDoesNotEndIt) {
  EXPECT_THAT(corrected({word(U"a", {50, 108, 50, 98}), word(U"b", {56, 88, 66, 78})}).front(), IsBox(50, 98, 60, 108));
}

// The middle of the first word is on the lower edge of the second one, or on the upper edge.
TEST(DegenerateBoxes, AWordWhoseEdgeItTouchesIsOnItsLine) {
  for (const double bottom : {103.0, 93.0})
    EXPECT_THAT(corrected({word(U"a", {50, 108, 50, 98}), word(U"word", {56, bottom + 10, 90, bottom})}).front(),
                IsBox(50, 98, 56, 108))
        << bottom;
}

TEST(DegenerateBoxes, TwoPointsBeforeTheNextWordAreEnough) {
  EXPECT_THAT(corrected({word(U"a", {50, 108, 50, 98}), usable(52, 80)}).front(), IsBox(50, 98, 52, 108));
}

TEST(DegenerateBoxes, AWordAtTheSamePositionDoesNotMakeItAHairline) {
  EXPECT_THAT(corrected({word(U"a", {50, 108, 50, 98}), usable(51, 80)}).front(), IsBox(50, 98, 60, 108));
}

TEST(DegenerateBoxes, WithoutHeightIsAsHighAsTheWordBefore) {
  EXPECT_THAT(corrected({usable(20, 45), word(U"abc", {50, 101, 68, 100})}),
              ElementsAre(IsBox(20, 98, 45, 108), IsBox(50, 98, 68, 108)));
}

TEST(DegenerateBoxes, TheHeightOfTheWordBeforeCountsMoreThanThatOfTheWordAfter) {
  EXPECT_THAT(corrected({word(U"word", {20, 115, 45, 95}), word(U"abc", {50, 101, 68, 100}), usable(70, 90)}),
              ElementsAre(IsBox(20, 95, 45, 115), IsBox(50, 95, 68, 115), IsBox(70, 98, 90, 108)));
}

TEST(DegenerateBoxes, WithoutHeightIsAsHighAsTheWordAfterTheNext) {
  EXPECT_THAT(corrected({word(U"abc", {50, 100, 68, 100}), word(U"def", {70, 100, 88, 100}), usable(90, 110)}),
              ElementsAre(IsBox(50, 98, 68, 108), IsBox(70, 98, 88, 108), IsBox(90, 98, 110, 108)));
}

TEST(DegenerateBoxes, WithoutHeightAndNeighboursIsAsHighAsTheFont) {
  EXPECT_THAT(corrected({usable(20, 45), word(U"abc", {50, 50, 68, 50})}, 12).back(), IsBox(50, 47, 68, 59));
}

TEST(DegenerateBoxes, APointGetsAnArea) {
  EXPECT_THAT(corrected({word(U"a", {50, 100, 50, 100})}, 12), ElementsAre(IsBox(50, 97, 62, 109)));
}

TEST(DegenerateBoxes, AHeightFarBelowTheFontSizeIsNone) {
  EXPECT_THAT(corrected({word(U"a", {50, 101, 50, 100})}, 12), ElementsAre(IsBox(50, 97.5, 62, 109.5)));
}

TEST(DegenerateBoxes, AnUnknownOrHostileFontSizeIsBounded) {
  const Box point{50, 100, 50, 100};
  for (const double size : {0.0, -3.0, std::nan(""), std::numeric_limits<double>::infinity()})
    EXPECT_THAT(corrected({word(U"a", point)}, size), ElementsAre(IsBox(50, 97.5, 60, 107.5))) << size;
  EXPECT_THAT(corrected({word(U"a", point)}, 1e-9), ElementsAre(IsBox(50, 99.5, 52, 101.5)));
  EXPECT_THAT(corrected({word(U"a", point)}, 1e9), ElementsAre(IsBox(50, -25, 550, 475)));
}

TEST(DegenerateBoxes, EveryDirectionOfWritingIsTreatedAlike) {
  const Box given{50, 108, 50, 98}, wanted{50, 108, 60, 98};
  for (int turns = 0; turns < 4; ++turns) {
    const Box expected = turned(wanted, turns);
    EXPECT_THAT(corrected({word(U"abc", turned(given, turns), turns)}),
                ElementsAre(IsBox(expected.left, expected.bottom, expected.right, expected.top)))
        << turns;
  }
}

TEST(DegenerateBoxes, CharactersAtOnePositionShareTheBox) {
  std::vector<WordText> words = {word(U"abc", {50, 108, 50, 98})};
  correctBoxes(words, std::vector<WordFont>(1, {10, false}));
  EXPECT_THAT(words[0].characters, ElementsAre(IsBox(50, 98, 60, 108), IsBox(50, 98, 60, 108), IsBox(50, 98, 60, 108)));
}

TEST(DegenerateBoxes, CharactersWithTheirOwnPositionBecomeAsHighAsTheWord) {
  std::vector<WordText> words = {word(U"ab", {50, 100.5, 62, 100})};
  words[0].characters = {{50, 100.5, 56, 100}, {56, 100.5, 62, 100}};
  correctBoxes(words, std::vector<WordFont>(1, {10, false}));
  EXPECT_THAT(words[0].characters, ElementsAre(IsBox(50, 97.75, 56, 107.75), IsBox(56, 97.75, 62, 107.75)));
}

// ---- vertical writing ----

TEST(VerticalBoxes, AreHalfAnEmAcrossAndOneAlongFromWhereTheLibraryHasThem) {
  std::vector<WordText> words = {word(U"ab", {100, 220, 110, 200}, 1)};
  words[0].characters = {{100, 220, 110, 210}, {100, 210, 110, 200}};
  correctBoxes(words, std::vector<WordFont>(1, {10, true}));
  EXPECT_THAT(words[0].bounds, IsBox(95, 190, 105, 210));
  EXPECT_THAT(words[0].characters, ElementsAre(IsBox(95, 200, 105, 210), IsBox(95, 190, 105, 200)));
}

TEST(VerticalBoxes, OfAFontOfOnePointAreMoved) {
  std::vector<WordText> words = {word(U"ab", {100, 202, 101, 200}, 1)};
  correctBoxes(words, std::vector<WordFont>(1, {1, true}));
  EXPECT_THAT(words[0].bounds, IsBox(99.5, 199, 100.5, 201));
}

TEST(VerticalBoxes, CharactersWithoutAreaStay) {
  std::vector<WordText> words = {word(U"ab", {100, 220, 110, 200}, 1)};
  words[0].characters = {{100, 220, 100, 210}, {100, 210, 110, 210}};
  correctBoxes(words, std::vector<WordFont>(1, {10, true}));
  EXPECT_THAT(words[0].characters, ElementsAre(IsBox(100, 210, 100, 220), IsBox(100, 210, 110, 210)));
}

// ---- which words need their font ----

TEST(NeedsFont, OnlyWhereABoxIsDegenerateOrASquare) {
  WordText plain = usable(20, 45);
  plain.characters.assign(4, {20, 108, 26, 98});
  EXPECT_FALSE(needsFont(plain));
  plain.characters.back() = {35, 108, 45, 98};
  EXPECT_TRUE(needsFont(plain)) << "perhaps vertical writing";
  EXPECT_TRUE(needsFont(word(U"abc", {50, 108, 50, 98})));
  EXPECT_TRUE(needsFont(word(U"abc", {50, 100, 68, 100})));
}

TEST(NeedsFont, ASquareMayBeWiderByAHundredThousandth) {
  WordText large = word(U"a", {0, 100'000, 100'002, 0});
  large.characters.back() = {0, 100'000, 100'001, 0};
  EXPECT_TRUE(needsFont(large));
  large.characters.back().right = 100'002;
  EXPECT_FALSE(needsFont(large));
}

TEST(NeedsFont, ACharacterWithoutABoxIsNoSquare) { EXPECT_FALSE(needsFont(usable(20, 45))); }

// ---- documents ----

class OddFonts : public testing::Test {
protected:
  std::unique_ptr<Document> open(const std::string &text, const PdfFont &font, int rotate = 0) {
    return document::openedHere(
        folder.pdf({{.texts = {{.x = 100, .y = 300, .text = text, .size = 20}}, .rotate = rotate}}, {}, font), "");
  }
  // The pixels with ink, at 72 dots per inch.
  static Box inkOf(Document &document) {
    const Image image = document.render(0, 72);
    Box ink{1e9, -1e9, -1e9, 1e9};
    for (int y = 0; y < image.height; ++y)
      for (int x = 0; x < image.width; ++x)
        if ((image.row(y)[x] & 0xFFU) < 0x80)
          ink = {std::min<double>(ink.left, x), std::max<double>(ink.top, image.height - y),
                 std::max<double>(ink.right, x + 1), std::min<double>(ink.bottom, image.height - y - 1)};
    return ink;
  }
  static void expectAround(const Box &box, const Box &ink) {
    constexpr double pixel = 1;
    EXPECT_LE(box.left, ink.left + pixel);
    EXPECT_GE(box.right, ink.right - pixel);
    EXPECT_LE(box.bottom, ink.bottom + pixel);
    EXPECT_GE(box.top, ink.top - pixel);
  }

  test::ScratchFolder folder;
};

TEST_F(OddFonts, WithoutWidthsAreMarkedWhereTheInkIs) {
  const auto document = open("wmx", {.width = 0});
  expectAround(document->pageText(0).words.at(0).bounds, inkOf(*document));
}

TEST_F(OddFonts, WithoutWidthsAreMarkedOnTurnedPages) {
  for (const int rotate : {90, 180, 270}) {
    const auto document = open("wmx", {.width = 0}, rotate);
    expectAround(document->pageText(0).words.at(0).bounds, inkOf(*document));
  }
}

TEST_F(OddFonts, DrawnOnesWithAnEmptyBoundingBoxAreMarkedWhereTheInkIs) {
  for (const char *const box : {"0 0 0 0", "0 0 1 1", "0 0 600 1"})
    for (const int width : {600, 0}) {
      const auto document = open("abc", {.kind = PdfFont::drawn, .width = width, .box = box});
      SCOPED_TRACE(std::string(box) + ", characters " + std::to_string(width) + " wide");
      expectAround(document->pageText(0).words.at(0).bounds, inkOf(*document));
    }
}

TEST_F(OddFonts, EachCharacterIsMarkedByAtLeastTwoPoints) {
  for (const PdfFont &font : {PdfFont{.width = 0}, PdfFont{.kind = PdfFont::drawn, .width = 0, .box = "0 0 1 1"}}) {
    const auto document = open("abc", font);
    for (uint16_t i = 0; i < document->pageText(0).words.at(0).text.size(); ++i) {
      const tavrel::TextRange range{i, 1};
      const Box bounds = document->selectCharacters(0, {&range, 1})->bounds;
      EXPECT_GE(bounds.right - bounds.left, 2) << i;
      EXPECT_GE(bounds.top - bounds.bottom, 2) << i;
    }
  }
}

TEST_F(OddFonts, AVerticalLineIsOneWordFromTheTopDown) {
  const auto document = open("abc", {.kind = PdfFont::vertical});
  const PageText &page = document->pageText(0);
  ASSERT_EQ(page.words.size(), 1U);
  EXPECT_EQ(page.words[0].text, U"abc");
  EXPECT_EQ(page.words[0].quarterTurns, 1);
  EXPECT_THAT(page.words[0].bounds, IsBox(90, 240, 110, 300));
  EXPECT_THAT(page.words[0].characters,
              ElementsAre(IsBox(90, 280, 110, 300), IsBox(90, 260, 110, 280), IsBox(90, 240, 110, 260)));
}

TEST_F(OddFonts, AVerticalLineTurnsWithItsPage) {
  EXPECT_THAT(open("abc", {.kind = PdfFont::vertical}, 90)->pageText(0).words.at(0).bounds, IsBox(240, 290, 300, 310));
  EXPECT_THAT(open("abc", {.kind = PdfFont::vertical}, 180)->pageText(0).words.at(0).bounds, IsBox(290, 300, 310, 360));
  EXPECT_THAT(open("abc", {.kind = PdfFont::vertical}, 270)->pageText(0).words.at(0).bounds, IsBox(300, 90, 360, 110));
}

TEST_F(OddFonts, PagesAfterOneThatNeedsItsFontsAreTreatedAlike) {
  const test::PdfPage page{.texts = {{.x = 100, .y = 300, .text = "abc", .size = 20}}};
  const auto document = document::openedHere(folder.pdf({page, {}, page}, {}, {.kind = PdfFont::vertical}), "");
  for (const int32_t number : {0, 1, 2, 0}) {
    document->forgetText(number);
    const PageText &text = document->pageText(number);
    EXPECT_EQ(text.words.size(), number == 1 ? 0U : 1U);
    for (const WordText &only : text.words)
      EXPECT_THAT(only.bounds, IsBox(90, 240, 110, 300)) << number;
  }
}

} // namespace
} // namespace document
