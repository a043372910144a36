// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A page in a window: how large it is, and which part of it is visible.
#include "viewer/model/pagewindow.h"

#include <gtest/gtest.h>

#include "host/view/FakeDocument.h"

namespace {

using viewer::Fit;
using viewer::PageWindow;

struct PageWindows : testing::Test {
  PageWindows() {
    window.changed = [this] { ++changes; };
  }
  static constexpr double dpi = 72;
  test::FakeDocument document{5};
  PageWindow window{document, dpi};
  int changes = 0;
};

TEST_F(PageWindows, IsFilledInWidth) {
  window.setFit(Fit::width);
  window.setWindow(250, 100);
  EXPECT_EQ(window.pageWidth(), 250);
  EXPECT_EQ(window.pageHeight(), 500);
}

TEST_F(PageWindows, IsFilledAsFarAsTheCompletePageAllows) {
  window.setWindow(250, 100);
  window.setFit(Fit::page);
  EXPECT_EQ(window.pageHeight(), 100);
  EXPECT_EQ(window.pageWidth(), 50);
}

TEST_F(PageWindows, ThatChangesItsSizeIsFilledAgain) {
  window.setFit(Fit::width);
  window.setWindow(250, 100);
  window.setWindow(300, 100);
  EXPECT_EQ(window.pageWidth(), 300);
}

TEST_F(PageWindows, AnotherScaleEndsTheFitting) {
  window.setFit(Fit::width);
  window.setWindow(250, 100);
  window.setDpi(72);
  window.setWindow(300, 100);
  EXPECT_EQ(window.pageWidth(), 100);
}

TEST_F(PageWindows, NoLongerFittedThePageKeepsItsScale) {
  window.setWindow(250, 100);
  window.setFit(Fit::width);
  window.setFit(Fit::none);
  window.setWindow(300, 100);
  EXPECT_EQ(window.pageWidth(), 250);
}

TEST_F(PageWindows, ShowsNoPageLargerThanAnImageMayBe) {
  window.setWindow(250, 100);
  window.setDpi(1e6);
  const double pixels = 1.0 * window.pageWidth() * window.pageHeight();
  EXPECT_LE(pixels, PageWindow::largestImage);
  EXPECT_GT(pixels, 0.95 * PageWindow::largestImage);
}

TEST_F(PageWindows, ShowsNoPageBelowEightDotsPerInch) {
  const struct {
    int width;
    double dpi;
  } rows[] = {{1, 8}, {11, 8}, {12, 8.64}, {100, 72}};
  window.setFit(Fit::width);
  for (const auto &row : rows) {
    window.setWindow(row.width, 10);
    EXPECT_DOUBLE_EQ(window.dpi(), row.dpi) << row.width;
  }
}

TEST_F(PageWindows, TheLargestResolutionIsAPixelBelowTheLargestImageOrSide) {
  test::FakeDocument square(1, {64, 64}), strip(1, {10, 1000}), lying(1, {1000, 10});
  EXPECT_DOUBLE_EQ(PageWindow(square, dpi).largestDpi(0), 4095.0 / 64 * 72);
  EXPECT_DOUBLE_EQ(PageWindow(strip, dpi).largestDpi(0), 19999.0 / 1000 * 72);
  EXPECT_DOUBLE_EQ(PageWindow(lying, dpi).largestDpi(0), 19999.0 / 1000 * 72);
}

// Its pages are of different widths.
struct WidePages : test::FakeDocument {
  WidePages() : FakeDocument(3) {}
  host::PageSize pageSize(int32_t page) override { return {100.0 * (page + 1), 200}; }
};

TEST_F(PageWindows, IsFilledByThePageThatIsShownNext) {
  WidePages pages;
  PageWindow other(pages, dpi);
  other.setFit(Fit::width);
  other.setWindow(100, 100);
  other.showPage(1);
  EXPECT_DOUBLE_EQ(other.dpi(), 36);
  EXPECT_DOUBLE_EQ(other.dpiOf(2), 24) << "which is not shown";
}

TEST_F(PageWindows, AnotherScaleKeepsTheMiddleAndTheTopOfThePage) {
  const struct {
    bool drawn;
    int before, x, y;
  } rows[] = {{false, 0, 0, 0}, {false, 1, 27, 27}, {false, 20, 65, 65},
              {true, 0, 25, 0}, {true, 1, 27, 27},  {true, 20, 65, 65}};
  for (const auto &row : rows) {
    test::FakeDocument page(1);
    PageWindow other(page, dpi);
    other.setWindow(50, 50);
    other.scrollTo(row.before, row.before);
    if (row.drawn) other.beginDrawing();
    other.setDpi(2 * dpi);
    EXPECT_EQ(other.scrollX(), row.x) << row.drawn << " " << row.before;
    EXPECT_EQ(other.scrollY(), row.y) << row.drawn << " " << row.before;
  }
}

TEST_F(PageWindows, UntilTheFirstDrawingAViewThatIsNotScrolledStaysAtTheUpperLeft) {
  window.setWindow(50, 50);
  window.scrollTo(0, 1);
  window.setWindow(40, 40);
  EXPECT_EQ(window.scrollX(), 0);
  EXPECT_EQ(window.scrollY(), 6);
}

TEST_F(PageWindows, UntilTheFirstDrawingTheMiddleStaysWhereItIs) {
  window.setWindow(50, 50);
  window.scrollTo(20, 60);
  window.setWindow(30, 30);
  EXPECT_EQ(window.scrollX(), 30);
  EXPECT_EQ(window.scrollY(), 70);
}

TEST_F(PageWindows, AfterTheFirstDrawingTheUpperLeftStaysWhereItIs) {
  window.setWindow(50, 50);
  window.scrollTo(20, 60);
  window.beginDrawing();
  window.setWindow(30, 30);
  EXPECT_EQ(window.scrollX(), 20);
  EXPECT_EQ(window.scrollY(), 60);
}

TEST_F(PageWindows, TellOfAnotherSizeOnce) {
  const struct {
    int width, height, changes;
  } rows[] = {{50, 40, 1}, {50, 40, 0}, {51, 40, 1}, {51, 41, 1}, {51, 41, 0}};
  for (const auto &row : rows) {
    changes = 0;
    window.setWindow(row.width, row.height);
    EXPECT_EQ(changes, row.changes) << row.width << " x " << row.height;
  }
}

TEST_F(PageWindows, TellOfAnotherScaleOrPageOrPlace) {
  window.setWindow(50, 50);
  const struct {
    const char *name;
    std::function<void()> change;
    bool tells;
  } rows[] = {
      {"scale", [this] { window.setDpi(2 * dpi); }, true},     {"scale", [this] { window.setDpi(2 * dpi); }, false},
      {"page", [this] { window.showPage(1); }, true},          {"page", [this] { window.showPage(1); }, false},
      {"place", [this] { window.scrollTo(0, 10); }, true},     {"place", [this] { window.scrollTo(0, 10); }, false},
      {"at the end", [this] { window.scrollTo(-1, 9); }, true}};
  for (const auto &row : rows) {
    changes = 0;
    row.change();
    EXPECT_EQ(changes > 0, row.tells) << row.name;
  }
}

TEST_F(PageWindows, ScrollAsFarAsThePageReaches) {
  window.setWindow(50, 40);
  window.scrollTo(1000, 1000);
  EXPECT_EQ(window.visible().left, 50);
  EXPECT_EQ(window.visible().bottom, 200);
  window.scrollTo(-5, -5);
  EXPECT_EQ(window.visible().left, 0);
  EXPECT_EQ(window.visible().top, 0);
}

TEST_F(PageWindows, ShowAnotherPageFromItsUpperLeft) {
  window.setWindow(50, 40);
  window.scrollTo(10, 10);
  window.showPage(1);
  EXPECT_EQ(window.scrollX(), 0);
  EXPECT_EQ(window.scrollY(), 0);
  window.scrollTo(10, 10);
  window.showPage(1);
  EXPECT_EQ(window.scrollY(), 10) << "it is shown already";
}

TEST_F(PageWindows, ShowNoPageThatIsNotThere) {
  for (const int32_t page : {-1, 5})
    EXPECT_THROW(window.showPage(page), host::HostError) << page;
  EXPECT_EQ(window.page(), 0);
}

TEST_F(PageWindows, DrawTheMarginToo) {
  window.setMargin(10);
  window.setWindow(50, 40);
  window.scrollTo(20, 60);
  const host::PixelBox drawn = window.beginDrawing(), visible = window.visible();
  EXPECT_EQ(drawn.left, 10);
  EXPECT_EQ(drawn.right, 80);
  EXPECT_EQ(drawn.bottom, 110);
  EXPECT_EQ(visible.left, 20);
  EXPECT_EQ(visible.bottom, 100);
}

} // namespace
