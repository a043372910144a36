// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Scrolling, turning pages and zooming. The window is 400 by 300 pixels, a page is as wide as that and 600 pixels high.
#include <gmock/gmock.h>

#include "Sessions.h"

namespace viewer {
namespace {

using testing::DoubleNear;

struct MovingTest : test::Sessions {
  static constexpr int bottom = 300; ///< the furthest that a page scrolls
  void SetUp() override { openPages(test::numberedPages(3)); }
  int y() { return session().documents.window()->scrollY(); }
  void moveTo(int32_t page, int scrollY) {
    session().moving.goToPage(page);
    session().documents.window()->scrollTo(0, scrollY);
  }
};

TEST_F(MovingTest, GoesToAPage) {
  session().moving.goToPage(2);
  EXPECT_EQ(session().documents.page(), 2);
}

TEST_F(MovingTest, PagesBeyondTheEndsAreTheLastAndTheFirst) {
  session().moving.goToPage(99);
  EXPECT_EQ(session().documents.page(), 2);
  session().moving.goToPage(-5);
  EXPECT_EQ(session().documents.page(), 0);
}

TEST_F(MovingTest, TurnsBothWays) {
  session().moving.turn(2);
  EXPECT_EQ(session().documents.page(), 2);
  session().moving.turn(-1);
  EXPECT_EQ(session().documents.page(), 1);
}

TEST_F(MovingTest, TurningStopsAtTheEnds) {
  session().moving.turn(-1);
  EXPECT_EQ(session().documents.page(), 0);
  session().moving.turn(7);
  EXPECT_EQ(session().documents.page(), 2);
}

TEST_F(MovingTest, ScrollingStaysOnThePageAsLongAsThereIsMore) {
  session().moving.scroll(0, 200);
  EXPECT_EQ(y(), 200);
  session().moving.scroll(0, 200);
  EXPECT_EQ(y(), bottom);
  EXPECT_EQ(session().documents.page(), 0);
}

TEST_F(MovingTest, ScrollingBeyondTheBottomShowsTheNextPagesTop) {
  moveTo(0, bottom);
  session().moving.scroll(0, 10);
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_EQ(y(), 0);
}

TEST_F(MovingTest, ScrollingBeyondTheTopShowsTheBottomOfThePreviousPage) {
  moveTo(1, 0);
  session().moving.scroll(0, -10);
  EXPECT_EQ(session().documents.page(), 0);
  EXPECT_EQ(y(), bottom);
}

TEST_F(MovingTest, ScrollingStopsAtTheEndsOfTheDocument) {
  session().moving.scroll(0, -10);
  EXPECT_EQ(session().documents.page(), 0);
  moveTo(2, bottom);
  session().moving.scroll(0, 10);
  EXPECT_EQ(session().documents.page(), 2);
  EXPECT_EQ(y(), bottom);
}

TEST_F(MovingTest, ScrollingSidewaysTurnsNoPage) {
  moveTo(0, bottom);
  session().moving.scroll(50, 0);
  EXPECT_EQ(session().documents.page(), 0);
}

TEST_F(MovingTest, TurningByScrollingKeepsTheColumn) {
  session().moving.setZoom(1.5);
  session().documents.window()->scrollTo(100, 10'000);
  session().moving.scroll(0, 10);
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_EQ(session().documents.window()->scrollX(), 100);
}

TEST_F(MovingTest, DraggingStaysOnThePage) {
  session().moving.drag(0, 5000);
  session().moving.drag(0, 5000);
  EXPECT_EQ(session().documents.page(), 0);
  EXPECT_EQ(y(), bottom);
}

TEST_F(MovingTest, APageOfTheWindowLeavesATenthVisible) {
  session().moving.scrollWindow(1);
  EXPECT_EQ(y(), 270);
  session().moving.scrollWindow(-1);
  EXPECT_EQ(y(), 0);
}

TEST_F(MovingTest, PagesOfTheWindowLeadThroughTheDocument) {
  std::vector<int32_t> pages;
  for (int step = 0; step < 6; ++step) {
    session().moving.scrollWindow(1);
    pages.push_back(session().documents.page());
  }
  EXPECT_THAT(pages, testing::ElementsAre(0, 0, 1, 1, 1, 2));
}

TEST_F(MovingTest, TheSliderIsAtThePageAndThePartScrolled) {
  moveTo(1, 150);
  const Slider slider = session().moving.slider();
  EXPECT_THAT(3.0 * slider.value / slider.range, DoubleNear(1.25, 1e-4));
}

TEST_F(MovingTest, EveryPositionIsRestored) {
  for (const int32_t page : {0, 1, 2})
    for (const int scrollY : {0, 1, 7, 149, 299, 300}) {
      moveTo(page, scrollY);
      const Slider slider = session().moving.slider();
      moveTo(page == 0 ? 1 : 0, 5);
      session().moving.setSlider(slider.value, slider.size);
      EXPECT_EQ(session().documents.page(), page) << slider.value;
      EXPECT_EQ(y(), scrollY) << slider.value;
    }
}

TEST_F(MovingTest, TheValueOfThePositionChangesNothing) {
  openPages(std::vector<test::PdfPage>(2000, {.width = 400, .height = 14'000}), "long.pdf"); // more pixels than values
  for (const int scrollY : {0, 2, 1000, 4321}) {
    moveTo(1234, scrollY);
    const Slider slider = session().moving.slider();
    session().moving.setSlider(slider.value, slider.size);
    EXPECT_EQ(session().documents.page(), 1234);
    EXPECT_EQ(y(), scrollY);
  }
}

TEST_F(MovingTest, TheSlidersLastValueIsTheEndOfTheDocument) {
  openPages({{.width = 400, .height = 100}, {.width = 400, .height = 5003}}, "mixed.pdf");
  const Slider slider = session().moving.slider();
  session().moving.setSlider(slider.range - slider.size, slider.size);
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_EQ(y(), 5003 - height);
}

TEST_F(MovingTest, APositionOnAnotherPageKeepsTheColumn) {
  session().moving.setZoom(1.5);
  session().documents.window()->scrollTo(100, 0);
  const Slider slider = session().moving.slider();
  session().moving.setSlider(slider.range / 2, slider.size);
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_EQ(session().documents.window()->scrollX(), 100);
}

TEST_F(MovingTest, PositionsBeyondTheEndsAreClamped) {
  const Slider slider = session().moving.slider();
  session().moving.setSlider(10 * slider.range, slider.size);
  EXPECT_EQ(session().documents.page(), 2);
  EXPECT_EQ(y(), bottom);
  session().moving.setSlider(-1, slider.size);
  EXPECT_EQ(session().documents.page(), 0);
  EXPECT_EQ(y(), 0);
}

TEST_F(MovingTest, HalfOfThePageIsVisible) {
  const Slider slider = session().moving.slider();
  EXPECT_THAT(3.0 * slider.size / slider.range, DoubleNear(0.5, 1e-4));
}

TEST_F(MovingTest, APageThatFitsIsCompletelyVisible) {
  session().moving.setFit(viewer::Fit::page);
  const Slider slider = session().moving.slider();
  EXPECT_EQ(slider.size, slider.range / 3);
}

// ---- size ----

TEST_F(MovingTest, AHundredPercentIsTheScreensResolution) {
  session().moving.setZoom(1);
  EXPECT_EQ(session().documents.window()->dpi(), 96);
  EXPECT_EQ(session().moving.zoom(), 1);
  EXPECT_EQ(session().moving.fit(), viewer::Fit::none);
}

TEST_F(MovingTest, ZoomingStepsFromWhereItIs) {
  EXPECT_THAT(session().moving.zoom(), DoubleNear(0.75, 1e-9)); // as wide as the window
  session().moving.zoomBy(1);
  EXPECT_THAT(session().moving.zoom(), DoubleNear(0.9, 1e-9));
  session().moving.zoomBy(-1);
  session().moving.zoomBy(-1);
  EXPECT_THAT(session().moving.zoom(), DoubleNear(0.67, 1e-9));
}

TEST_F(MovingTest, ZoomingEndsAtATenth) {
  for (int step = 0; step < 30; ++step)
    session().moving.zoomBy(-1);
  EXPECT_THAT(session().moving.zoom(), DoubleNear(0.1, 1e-9));
}

TEST_F(MovingTest, ZoomingEndsWhereAnImageWouldBeTooLarge) {
  for (int step = 0; step < 30; ++step)
    session().moving.zoomBy(1);
  const double largest = session().moving.zoom();
  EXPECT_GT(largest, 6);
  EXPECT_LE(1.0 * session().documents.window()->pageWidth() * session().documents.window()->pageHeight(),
            viewer::PageWindow::largestImage);
  session().moving.zoomBy(-1);
  EXPECT_LT(session().moving.zoom(), largest);
}

TEST_F(MovingTest, ZoomingKeepsTheMiddle) {
  moveTo(0, 150); // the middle of the page is in the middle of the window
  session().moving.setZoom(1.5);
  EXPECT_THAT(y() + height / 2.0, DoubleNear(session().documents.window()->pageHeight() / 2.0, 1));
}

TEST_F(MovingTest, FitPageShowsAllOfIt) {
  session().moving.setFit(viewer::Fit::page);
  EXPECT_EQ(session().documents.window()->pageHeight(), height);
  EXPECT_EQ(session().moving.fit(), viewer::Fit::page);
}

TEST_F(MovingTest, AFitIsKeptForDocumentsOpenedLater) {
  session().moving.setFit(viewer::Fit::page);
  openPages(test::numberedPages(1), "later.pdf");
  EXPECT_EQ(session().moving.fit(), viewer::Fit::page);
  EXPECT_EQ(session().documents.window()->pageHeight(), height);
}

TEST_F(MovingTest, ZoomingEndsTheFitForDocumentsOpenedLater) {
  session().moving.setZoom(2);
  openPages(test::numberedPages(1), "later.pdf");
  EXPECT_EQ(session().moving.fit(), viewer::Fit::none);
}

TEST_F(MovingTest, AFitFollowsTheWindow) {
  session().moving.setWindow(800, 600, 0);
  EXPECT_EQ(session().documents.window()->pageWidth(), 800);
}

TEST_F(MovingTest, AFitFollowsThePage) {
  openPages({{.width = 200, .height = 200}, {.width = 1000, .height = 200}}, "mixed.pdf");
  EXPECT_EQ(session().documents.window()->pageWidth(), width);
  session().moving.turn(1);
  EXPECT_EQ(session().documents.window()->pageWidth(), width);
  EXPECT_EQ(session().documents.window()->pageHeight(), 80);
}

TEST_F(MovingTest, ScrollingBackToALargerPageShowsItsBottom) {
  openPages({{.width = 400, .height = 2000}, {.width = 1000, .height = 200}}, "mixed.pdf");
  session().moving.goToPage(1);
  session().moving.scroll(0, -10);
  EXPECT_EQ(session().documents.page(), 0);
  EXPECT_EQ(y(), 2000 - height);
}

TEST_F(MovingTest, AZoomIsTheSameOnPagesOfAllSizes) {
  openPages({{.width = 200, .height = 200}, {.width = 1000, .height = 200}}, "mixed.pdf");
  session().moving.setZoom(1);
  session().moving.turn(1);
  EXPECT_EQ(session().moving.zoom(), 1);
}

TEST_F(MovingTest, APageThatIsTooLargeForTheZoomLeavesItToTheNextOne) {
  openPages({{.width = 5000, .height = 5000}, {.width = 200, .height = 200}}, "mixed.pdf");
  session().moving.setZoom(4);
  EXPECT_LT(session().moving.zoom(), 1);
  session().moving.turn(1);
  EXPECT_EQ(session().moving.zoom(), 4);
}

TEST_F(MovingTest, TurningRemovesTheMessage) {
  session().status.set("something");
  session().moving.turn(1);
  EXPECT_EQ(session().status.message(), "");
}

} // namespace
} // namespace viewer
