// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Page views by way of the TavrelView table: pages, scrolling, batches, the transform, the drawing colour.
#include "Viewer.h"

namespace {

using tavrel::DeviceRect;
using tavrel::PageView;

struct PageViews : test::Viewer {
  PageViews() { app.draw(*document); } // valid from here on

  bool invalid() const { return document->view->invalid(); }
  DeviceRect visible() const {
    DeviceRect rect{};
    TavrelView::PageViewGetVisibleRect(view, &rect);
    return rect;
  }
  void expectVisible(int left, int top, int right, int bottom) const {
    const DeviceRect rect = visible();
    EXPECT_EQ(rect.left, left);
    EXPECT_EQ(rect.top, top);
    EXPECT_EQ(rect.right, right);
    EXPECT_EQ(rect.bottom, bottom);
  }
};

TEST_F(PageViews, ShowAPage) {
  TavrelView::PageViewShowPage(view, 3);
  EXPECT_EQ(TavrelView::PageViewGetPageNum(view), 3);
  EXPECT_TRUE(invalid());
}

TEST_F(PageViews, ShowingThePageShownScrollsNothingAndRequestsADrawing) {
  window->setWindow(50, 50);
  TavrelView::PageViewScrollToPoint(view, 10, 10);
  app.draw(*document);
  TavrelView::PageViewShowPage(view, 0);
  EXPECT_TRUE(invalid());
  expectVisible(10, 10, 60, 60);
}

// Page-draw procedures do so in each drawing.
TEST_F(PageViews, ShowingThePageBeingDrawnRequestsNoDrawing) {
  const tavrel::PageDrawProc show = [](PageView drawn, void *) { TavrelView::PageViewShowPage(drawn, 0); };
  TavrelView::RegisterPageDrawProc(testPlugin.callback(show), nullptr);
  app.draw(*document);
  EXPECT_FALSE(invalid());
}

TEST_F(PageViews, AnotherPageIsShownFromItsUpperLeft) {
  window->setWindow(50, 50);
  TavrelView::PageViewScrollToPoint(view, 10, 10);
  TavrelView::PageViewShowPage(view, 1);
  expectVisible(0, 0, 50, 50);
}

TEST_F(PageViews, APageThatIsNotThereRaises) {
  const PageView v = view;
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::PageViewShowPage(v, pageCount); }), tavrel::errBadPage);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::PageViewShowPage(v, -1); }), tavrel::errBadPage);
  EXPECT_EQ(TavrelView::PageViewGetPageNum(view), 0);
  EXPECT_FALSE(invalid());
}

TEST_F(PageViews, WithoutAWindowTheCompletePageIsVisible) { expectVisible(0, 0, 100, 200); }

TEST_F(PageViews, ScrollAsFarAsThePageReaches) {
  window->setWindow(50, 50);
  TavrelView::PageViewScrollToPoint(view, 1000, 1000);
  expectVisible(50, 150, 100, 200);
  TavrelView::PageViewScrollToPoint(view, -5, -5);
  expectVisible(0, 0, 50, 50);
}

TEST_F(PageViews, AScrollThatChangesNothingDrawsNothing) {
  TavrelView::PageViewScrollToPoint(view, 1000, 1000); // the page is completely visible
  EXPECT_FALSE(invalid());
}

TEST_F(PageViews, AScrollInvalidates) {
  window->setWindow(50, 50);
  app.draw(*document);
  TavrelView::PageViewScrollToPoint(view, 1, 0);
  EXPECT_TRUE(invalid());
}

TEST_F(PageViews, AWindowLargerThanThePageStaysAtItsUpperLeft) {
  window->setWindow(500, 500);
  TavrelView::PageViewScrollToPoint(view, 10, 10);
  expectVisible(0, 0, 500, 500);
}

// A page of 100,000 by 200,000 pixels.
TEST_F(PageViews, APageLargerThanSixteenBitsHasLargerUnits) {
  window->setDpi(72 * 1000.0);
  expectVisible(0, 0, 15'000, 30'000);
  tavrel::FixedMatrix matrix{};
  TavrelView::PageViewGetPageTransform(view, &matrix);
  EXPECT_EQ(matrix.a, 150 * tavrel::fixedOne);
  EXPECT_EQ(matrix.v, 30'000 * tavrel::fixedOne);
}

TEST_F(PageViews, APageLargerThanSixteenBitsIsScrolledInItsUnits) {
  window->setDpi(72 * 1000.0);
  window->setWindow(1000, 2000);
  TavrelView::PageViewScrollToPoint(view, 1500, 15'000);
  EXPECT_EQ(window->visible().left, 10'000);
  EXPECT_EQ(window->visible().top, 100'000);
  expectVisible(1500, 15'000, 1650, 15'300);
}

TEST_F(PageViews, TheLargestPageWhosePixelsAreUnitsHas30000) {
  window->setDpi(72 * 150.0);
  expectVisible(0, 0, 15'000, 30'000);
  window->setDpi(72 * 149.0);
  expectVisible(0, 0, 14'900, 29'800);
}

TEST_F(PageViews, AWindowBeyondSixteenBitsSaturates) {
  window->setWindow(40'000, 40'000);
  expectVisible(0, 0, INT16_MAX, INT16_MAX);
}

TEST_F(PageViews, TheTransformFlipsPageSpace) {
  tavrel::FixedMatrix matrix{};
  window->setDpi(2 * dpi);
  TavrelView::PageViewGetPageTransform(view, &matrix);
  EXPECT_EQ(matrix.a, 2 * tavrel::fixedOne);
  EXPECT_EQ(matrix.b, 0);
  EXPECT_EQ(matrix.c, 0);
  EXPECT_EQ(matrix.d, -2 * tavrel::fixedOne);
  EXPECT_EQ(matrix.h, 0);
  EXPECT_EQ(matrix.v, 400 * tavrel::fixedOne);
}

TEST_F(PageViews, KnowTheirDocument) {
  EXPECT_EQ(TavrelView::PageViewGetDoc(view), doc);
  EXPECT_EQ(TavrelView::DocGetPageView(doc), view);
  EXPECT_EQ(TavrelView::DocGetModelDoc(doc), host::modelDocs().handle(model));
}

TEST_F(PageViews, RefreshingInvalidates) {
  TavrelView::PageViewRefreshArea(view, nullptr);
  EXPECT_TRUE(invalid());
  app.draw(*document);
  constexpr DeviceRect area{1, 1, 2, 2};
  TavrelView::PageViewRefreshArea(view, &area);
  EXPECT_TRUE(invalid());
}

TEST_F(PageViews, DrawInBlackByDefault) {
  tavrel::ColorValue color{9, {9, 9, 9, 9}};
  TavrelView::PageViewFetchDrawColor(view, &color);
  EXPECT_EQ(color.space, tavrel::colorSpaceRGB);
  for (const tavrel::Fixed component : color.component)
    EXPECT_EQ(component, 0);
}

TEST_F(PageViews, GiveBackTheColourApplied) {
  constexpr tavrel::ColorValue red{tavrel::colorSpaceRGB, {tavrel::fixedOne, 1, 2, 3}};
  tavrel::ColorValue color{};
  TavrelView::PageViewApplyDrawColor(view, &red);
  TavrelView::PageViewFetchDrawColor(view, &color);
  EXPECT_EQ(color.component[0], tavrel::fixedOne);
  EXPECT_EQ(color.component[3], 3);
}

TEST_F(PageViews, AColourThatCannotBePaintedRaises) {
  static constexpr tavrel::ColorValue unsupported{7, {0, 0, 0, 0}};
  const PageView v = view;
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::PageViewApplyDrawColor(v, &unsupported); }), tavrel::errBadArgument);
}

TEST_F(PageViews, NothingIsDrawnWithinABatch) {
  TavrelView::PageViewBeginBatch(view);
  TavrelView::PageViewBeginBatch(view);
  TavrelView::PageViewShowPage(view, 1);
  TavrelView::PageViewEndBatch(view);
  EXPECT_FALSE(app.drawIfNeeded(*document));
  TavrelView::PageViewEndBatch(view);
  EXPECT_TRUE(app.drawIfNeeded(*document));
}

TEST_F(PageViews, ClosingABatchThatIsNotOpenRaises) {
  const PageView v = view;
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::PageViewEndBatch(v); }), tavrel::errBadArgument);
}

TEST_F(PageViews, ABatchThatAPluginLeavesOpenIsClosed) {
  testPlugin.attempt([this] { TavrelView::PageViewBeginBatch(view); });
  EXPECT_EQ(document->view->batches().depth(), 0U);
  testPlugin.attempt([this] {
    TavrelView::PageViewBeginBatch(view);
    Kernel::RaiseError(1);
  });
  EXPECT_EQ(document->view->batches().depth(), 0U);
}

TEST_F(PageViews, ABatchOfTheCallerStaysOpenWhateverAPluginCalledWithinItDoes) {
  static size_t depthInside;
  TavrelView::PageViewBeginBatch(view);
  testPlugin.attempt([this] {
    TavrelView::PageViewEndBatch(view);
    depthInside = document->view->batches().depth();
  });
  EXPECT_EQ(depthInside, 0U);
  EXPECT_EQ(document->view->batches().depth(), 1U);
  TavrelView::PageViewEndBatch(view);
}

TEST_F(PageViews, EachOfTwoNestedCallsClosesTheBatchesThatItLeavesOpen) {
  static size_t depthBetween;
  testPlugin.attempt([this] {
    TavrelView::PageViewBeginBatch(view);
    testPlugin.attempt([this] { TavrelView::PageViewBeginBatch(view); });
    depthBetween = document->view->batches().depth();
  });
  EXPECT_EQ(depthBetween, 1U);
  EXPECT_EQ(document->view->batches().depth(), 0U);
}

TEST_F(PageViews, ABatchThatAPluginLeavesOpenInADocumentThatItHasOpenedIsClosed) {
  static host::ViewerDocument *opened;
  testPlugin.attempt([this] {
    opened = &app.open(std::make_unique<test::FakeDocument>(1), "b.pdf", dpi);
    opened->view->batches().begin();
  });
  EXPECT_EQ(opened->view->batches().depth(), 0U);
}

TEST_F(PageViews, ADrawingIsNoLongerHeldBackWhenTheCallThatLeftABatchOpenEnds) {
  int notified = 0;
  app.listener = [&](host::ViewerDocument &) { ++notified; };
  testPlugin.attempt([this] {
    TavrelView::PageViewBeginBatch(view);
    TavrelView::PageViewShowPage(view, 1);
  });
  EXPECT_EQ(notified, 1);
}

TEST_F(PageViews, AChangeOutsideOfABatchIsNotifiedAtOnceAndOnce) {
  int notified = 0;
  app.listener = [&](host::ViewerDocument &) { ++notified; };
  TavrelView::PageViewShowPage(view, 1);
  EXPECT_EQ(notified, 1);
}

TEST_F(PageViews, ABatchInWhichNothingChangesIsNotNotified) {
  int notified = 0;
  app.listener = [&](host::ViewerDocument &) { ++notified; };
  TavrelView::PageViewBeginBatch(view);
  TavrelView::PageViewEndBatch(view);
  EXPECT_EQ(notified, 0);
}

TEST_F(PageViews, TheListenerIsNotifiedOnceNothingHoldsTheDrawingBack) {
  int notified = 0;
  app.listener = [&](host::ViewerDocument &) { ++notified; };
  TavrelView::PageViewBeginBatch(view);
  TavrelView::PageViewShowPage(view, 1);
  EXPECT_EQ(notified, 0);
  TavrelView::PageViewEndBatch(view);
  EXPECT_EQ(notified, 1);
}

} // namespace
