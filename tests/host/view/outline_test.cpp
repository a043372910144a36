// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Outlines of boxes on an image, and of selections on a page being drawn.
#include "host/view/outline.h"

#include <gmock/gmock.h>

#include "Colors.h"
#include "Viewer.h"

namespace {

using host::blue, host::black, host::pixelOf;
using host::Box, host::Image, host::Scale;

constexpr int size = 60;
constexpr uint32_t paper = 0xFF808080, ink = 0xFF0000FF, separation = 0xFFFFFFFF;

struct Outlines : testing::Test {
  void outline(const std::vector<Box> &boxes, const Scale &scale = {1, size}) {
    host::paintOutline(image, boxes, scale, blue);
  }
  uint32_t at(int x, int y) { return image.row(y)[x]; }
  size_t count(uint32_t color) const {
    return static_cast<size_t>(std::count(image.pixels.begin(), image.pixels.end(), color));
  }
  Image image{size, size, std::vector<uint32_t>(size_t{size} * size, paper)};
};

TEST_F(Outlines, GoAroundABoxAndLeaveItAsItIs) {
  outline({{20, 40, 40, 6}}); // rows 20 to 54
  for (const auto &[x, y] : {std::pair{20, 20}, {39, 29}, {30, 25}, {19, 25}})
    EXPECT_EQ(at(x, y), paper) << x << " " << y;
  for (const auto &[x, y] : {std::pair{18, 25}, {17, 25}, {42, 25}, {41, 25}, {30, 18}, {30, 17}, {30, 55}, {30, 56}})
    EXPECT_EQ(at(x, y), ink) << x << " " << y;
  for (const auto &[x, y] : {std::pair{16, 25}, {43, 25}, {30, 16}, {30, 57}})
    EXPECT_EQ(at(x, y), separation) << x << " " << y;
  EXPECT_EQ(at(15, 25), paper);
  EXPECT_EQ(at(44, 25), paper);
}

TEST_F(Outlines, AreThickerOnALargerPage) {
  outline({{4, 12, 8, 0}}, {5, 12});
  EXPECT_EQ(at(16, 25), ink) << "three pixels beside the box and five of the line";
  EXPECT_EQ(at(12, 25), ink);
  EXPECT_EQ(at(17, 25), paper);
}

TEST_F(Outlines, OfTinyTextAreAPixelWide) {
  outline({{20, 40, 40, 36}});
  EXPECT_EQ(at(19, 22), ink);
  EXPECT_EQ(at(18, 22), paper);
}

TEST_F(Outlines, BeginAtTheTextBelowTheTopOfAScaledPage) {
  outline({{5, 20, 15, 10}}, {2, 30}); // rows 20 to 40
  EXPECT_EQ(at(20, 19), ink);
  EXPECT_EQ(at(20, 18), ink);
  EXPECT_EQ(at(20, 17), separation);
}

TEST_F(Outlines, OfHugeTextAreSixPixelsWideAndTwoBesideIt) {
  outline({{0, 8, 4, 0}}, {7, 8}); // columns 0 to 28
  EXPECT_EQ(at(29, 25), paper);
  EXPECT_EQ(at(30, 25), ink);
  EXPECT_EQ(at(35, 25), ink);
  EXPECT_EQ(at(36, 25), separation);
}

TEST_F(Outlines, ReachTheLeftEdgeOfTheImage) {
  outline({{3, 40, 20, 6}});
  EXPECT_EQ(at(0, 30), ink);
}

TEST_F(Outlines, AreAsDarkAsTheirColour) {
  host::paintOutline(image, std::vector<Box>{{20, 40, 40, 6}}, {1, size}, host::black);
  EXPECT_EQ(at(18, 25), 0xFF000000);
}

TEST_F(Outlines, OfSmallDarkTextOnALightPageKeepTheirColour) {
  for (int y = 20; y < 30; ++y)
    std::fill_n(image.row(y) + 20, 20, 0xFF101010);
  outline({{20, 40, 40, 30}});
  EXPECT_EQ(at(19, 25), ink);
}

TEST_F(Outlines, OfSmallTextKeepTheirColourFromAThirdOfTheBrightness) {
  for (const auto &[page, color] : {std::pair{0xFF505050U, ink}, {0xFF4F4F4FU, separation}}) {
    image.pixels.assign(image.pixels.size(), page);
    outline({{20, 40, 40, 30}});
    EXPECT_EQ(at(19, 25), color);
  }
}

// The space between words and between lines is about a fifth of the text's height.
TEST_F(Outlines, CoverNothingBesideSmallText) {
  outline({{20, 40, 40, 30}}); // rows 20 to 30
  for (const auto &[x, y] : {std::pair{19, 25}, {40, 25}, {30, 19}, {30, 30}})
    EXPECT_EQ(at(x, y), ink) << x << " " << y;
  for (const auto &[x, y] : {std::pair{18, 25}, {41, 25}, {30, 18}, {30, 31}})
    EXPECT_EQ(at(x, y), paper) << x << " " << y;
}

TEST_F(Outlines, TakeTheSpaceOfTheLowestLine) {
  outline({{2, 58, 20, 18}, {30, 50, 50, 40}});
  EXPECT_EQ(at(20, 25), ink);
  EXPECT_EQ(at(21, 25), paper);
}

TEST_F(Outlines, OfSmallTextAreWhiteOnADarkPage) {
  image.pixels.assign(image.pixels.size(), 0xFF101010);
  outline({{20, 40, 40, 30}});
  EXPECT_EQ(at(19, 25), 0xFFFFFFFF);
  EXPECT_EQ(at(30, 19), 0xFFFFFFFF);
  EXPECT_EQ(count(ink), 0U);
}

TEST_F(Outlines, KeepTheirColourOnMarksOfOneComponent) {
  for (const uint32_t mark : {0xFFFF0000U, 0xFF00FF00U, 0xFF0000FEU, 0xFF006400U}) {
    image.pixels.assign(image.pixels.size(), mark);
    outline({{20, 40, 40, 30}});
    EXPECT_EQ(at(19, 25), ink) << mark;
  }
}

TEST_F(Outlines, OfLargeTextHaveAWhiteEdgeOnADarkPage) {
  image.pixels.assign(image.pixels.size(), 0xFF101010);
  outline({{20, 40, 40, 6}});
  EXPECT_EQ(at(18, 25), ink);
  EXPECT_EQ(at(16, 25), 0xFFFFFFFF);
}

TEST_F(Outlines, GoOnceAroundTheWordsOfALine) {
  outline({{10, 40, 20, 30}, {25, 41, 35, 30}});
  for (int x = 10; x < 35; ++x)
    EXPECT_EQ(at(x, 25), paper) << x;
}

// The gap is narrower than the one and wider than the other.
TEST_F(Outlines, GoAroundATallWordAndASmallOneFarFromIt) {
  const Box tall{2, 40, 10, 20}, small{25, 36, 35, 24};
  for (const auto &words : {std::vector{tall, small}, std::vector{small, tall}}) {
    image.pixels.assign(image.pixels.size(), paper);
    outline(words);
    EXPECT_EQ(at(17, 30), paper) << "between them";
    EXPECT_EQ(at(17, 18), paper) << "above that";
    EXPECT_GT(count(ink), 0U);
  }
}

TEST_F(Outlines, GoAroundWordsThatShareNoMoreThanHalfOfTheirHeight) {
  outline({{2, 40, 10, 20}, {12, 50, 20, 30}});
  EXPECT_EQ(at(11, 25), ink) << "between them";
  image.pixels.assign(image.pixels.size(), paper);
  outline({{2, 40, 10, 20}, {12, 49, 20, 29}});
  EXPECT_EQ(at(11, 25), paper) << "a line";
}

TEST_F(Outlines, GoAroundTheWordsOfEachLine) {
  outline({{40, 55, 55, 47}, {5, 35, 20, 27}});
  EXPECT_EQ(at(39, 8), ink);
  EXPECT_EQ(at(39, 29), paper);
  EXPECT_EQ(at(20, 29), ink);
}

TEST_F(Outlines, ThatOverlapHaveNoLineInside) {
  outline({{10, 50, 30, 30}, {10, 33, 50, 20}});
  EXPECT_EQ(at(20, 29), paper);
  EXPECT_EQ(at(31, 15), ink);
  EXPECT_EQ(at(32, 33), paper);
}

TEST_F(Outlines, EndAtTheEdgesOfTheImage) {
  outline({{-10, 70, 30, 30}, {30, 10, 90, -20}});
  EXPECT_EQ(at(31, 10), ink);
  EXPECT_EQ(at(28, 59), ink);
}

TEST_F(Outlines, OutsideOfTheImageAreNone) {
  outline({{-40, 40, -20, 30}, {100, 40, 120, 30}, {20, 200, 30, 190}, {20, -50, 30, -60}});
  outline({});
  outline({{20, 40, 20, 30}, {20, 30, 40, 30}});
  EXPECT_EQ(count(paper), image.pixels.size());
}

TEST_F(Outlines, AreWhereThePartOfThePageIs) {
  outline({{120, 40, 140, 30}}, {1, size, 100, 0});
  EXPECT_EQ(at(19, 25), ink);
  EXPECT_EQ(at(40, 25), ink);
  EXPECT_EQ(at(44, 25), paper);
}

// What page-draw procedures do; they have no data.
tavrel::TextSelection s_outlined, s_painted;
constexpr tavrel::ColorValue yellow{tavrel::colorSpaceRGB, {tavrel::fixedOne, tavrel::fixedOne, 0, 0}};
constexpr tavrel::ColorValue blueInk{tavrel::colorSpaceRGB, {0, 0, tavrel::fixedOne, 0}};

void outlineFirst(tavrel::PageView view, void *) {
  TavrelView::PageViewApplyDrawColor(view, &blueInk);
  TavrelView::PageViewOutlineSelection(view, s_outlined);
  TavrelView::PageViewApplyDrawColor(view, &yellow);
  TavrelView::PageViewPaintSelection(view, s_painted);
}

struct OutlinesOfSelections : test::Viewer {
  OutlinesOfSelections() {
    s_outlined = model->select(0, {{20, 150, 60, 140}});
    s_painted = model->select(0, {{0, 200, 100, 0}});
    TavrelView::RegisterPageDrawProc(testPlugin.callback(outlineFirst), nullptr);
  }
};

TEST_F(OutlinesOfSelections, AreAboveAllMarksAndCountAsNone) {
  const host::Drawing drawing = *app.draw(*document);
  EXPECT_EQ(drawing.image.row(55)[19], 0xFF0000FFU);
  EXPECT_EQ(drawing.image.row(55)[40], 0xFFFFFF00U);
  EXPECT_EQ(drawing.marks, 1U);
}

TEST_F(OutlinesOfSelections, RaiseWhereNothingOrAnotherPageIsDrawn) {
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::PageViewOutlineSelection(view, s_outlined); }),
            tavrel::errBadArgument);
  s_outlined = model->select(1, {{20, 150, 60, 140}});
  const host::Drawing drawing = *app.draw(*document);
  EXPECT_EQ(drawing.marks, 0U) << "the procedure has ended";
  EXPECT_EQ(testPlugin.attempt([] { TavrelView::PageViewOutlineSelection(nullptr, s_outlined); }), 0);
}

TEST_F(OutlinesOfSelections, AreNotPaintedSelections) {
  EXPECT_EQ(TavrelView::PageViewGetPaintedSelection(view, 0), nullptr) << "nothing is drawn yet";
  app.draw(*document);
  EXPECT_EQ(TavrelView::PageViewGetPaintedSelection(view, 0), s_painted);
  EXPECT_EQ(TavrelView::PageViewGetPaintedSelection(view, 1), nullptr);
  EXPECT_EQ(TavrelView::PageViewGetPaintedSelection(nullptr, 0), nullptr);
}

TEST_F(OutlinesOfSelections, AViewWithoutAWindowIsKnown) {
  EXPECT_EQ(TavrelView::PageViewIsInWindow(view), 0);
  window->setWindow(50, 60);
  EXPECT_EQ(TavrelView::PageViewIsInWindow(view), 1);
  EXPECT_EQ(TavrelView::PageViewIsInWindow(nullptr), 0);
}

} // namespace
