// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Drawing: deferred, one at a time, with every page-draw procedure painting on the page.
#include <gmock/gmock.h>

#include "Viewer.h"

namespace {

using tavrel::PageView;

constexpr tavrel::ColorValue yellow{tavrel::colorSpaceRGB, {tavrel::fixedOne, tavrel::fixedOne, 0, 0}};

// What the page-draw procedures of a test do. They are functions without data, so it lies here.
struct Plan {
  host::Application *app = nullptr;
  host::ViewerDocument *document = nullptr;
  tavrel::TextSelection selection = nullptr;
  std::vector<int32_t> pages; ///< the pages drawn, as the view reports them
  bool drewWithinDraw = false;
};
Plan plan;

void notePage(PageView view, void *) { plan.pages.push_back(TavrelView::PageViewGetPageNum(view)); }

void paint(PageView view, void *) {
  TavrelView::PageViewApplyDrawColor(view, &yellow);
  TavrelView::PageViewPaintSelection(view, plan.selection);
}

void askForTwoBeyondTheText(PageView, void *) {
  dynamic_cast<test::FakeDocument &>(*plan.document->model).withoutText = 2;
}

void raiseAnError(PageView, void *) { Kernel::RaiseError(1); }

void turnThePage(PageView view, void *) { TavrelView::PageViewShowPage(view, 2); }

void drawAgain(PageView, void *) { plan.drewWithinDraw = plan.app->draw(*plan.document).has_value(); }

struct Drawing : test::Viewer {
  Drawing() { plan = {&app, document, nullptr, {}, false}; }
  void paintWith(tavrel::PageDrawProc procedure) {
    TavrelView::RegisterPageDrawProc(testPlugin.callback(procedure), nullptr);
  }
};

TEST_F(Drawing, ANewDocumentIsToBeDrawn) {
  const auto drawing = app.drawIfNeeded(*document);
  ASSERT_TRUE(drawing);
  EXPECT_EQ(drawing->page, 0);
  EXPECT_EQ(drawing->image.width, 100);
  EXPECT_EQ(drawing->image.height, 200);
  EXPECT_EQ(drawing->marks, 0U);
}

TEST_F(Drawing, NothingIsDrawnTwiceWithoutAReason) {
  app.drawIfNeeded(*document);
  EXPECT_FALSE(app.drawIfNeeded(*document));
}

TEST_F(Drawing, TheSamePageIsRenderedOnce) {
  app.draw(*document);
  app.draw(*document);
  EXPECT_EQ(model->renders, 1);
}

TEST_F(Drawing, AnotherPageOrScaleIsRenderedAnew) {
  app.draw(*document);
  document->view->showPage(1);
  app.draw(*document);
  window->setDpi(144);
  EXPECT_EQ(app.draw(*document)->image.width, 200);
  EXPECT_EQ(model->renders, 3);
}

TEST_F(Drawing, EveryPageDrawProcedureIsCalled) {
  paintWith(notePage);
  document->view->showPage(1);
  app.draw(*document);
  EXPECT_THAT(plan.pages, testing::ElementsAre(1));
}

TEST_F(Drawing, AProcedureRegisteredTwiceIsCalledOnce) {
  paintWith(notePage);
  paintWith(notePage);
  app.draw(*document);
  EXPECT_EQ(plan.pages.size(), 1U);
}

TEST_F(Drawing, ASelectionIsMarkedOnThePage) {
  plan.selection = model->select(0, {{0, 200, 2, 198}});
  paintWith(paint);
  const auto drawing = app.draw(*document);
  EXPECT_EQ(drawing->image.row(0)[0], 0xFFFFFF00U);
  EXPECT_EQ(drawing->image.row(1)[1], 0xFFFFFF00U);
  EXPECT_EQ(drawing->image.row(2)[1], test::FakeDocument::paper);
}

TEST_F(Drawing, MarksAreNotKeptForTheNextTime) {
  plan.selection = model->select(0, {{0, 200, 2, 198}});
  paintWith(paint);
  app.draw(*document);
  document->view->setDrawColor(yellow);
  EXPECT_EQ(app.draw(*document)->image.row(0)[0], 0xFFFFFF00U) << "painted once, on the page as it was";
}

TEST_F(Drawing, MarksAreTheRangesPainted) {
  plan.selection = model->select(0, {{0, 10, 10, 0}, {20, 10, 30, 0}, {40, 10, 50, 0}});
  paintWith(paint);
  EXPECT_EQ(app.draw(*document)->marks, 3U);
}

TEST_F(Drawing, RangesOutsideOfThePageAreCountedApart) {
  plan.selection = model->selectOffPage(0);
  paintWith(paint);
  const auto drawing = app.draw(*document);
  EXPECT_EQ(drawing->marks, 0U);
  EXPECT_EQ(drawing->offPage, 1U);
}

TEST_F(Drawing, RangesBeyondTheTextAreCountedWhileThePageIsDrawn) {
  model->withoutText = 3; // of a list beside the page
  EXPECT_EQ(app.draw(*document)->offPage, 0U);
  paintWith(askForTwoBeyondTheText);
  EXPECT_EQ(app.draw(*document)->offPage, 2U);
  EXPECT_EQ(app.draw(*document)->offPage, 2U);
}

TEST_F(Drawing, AttemptsBeyondTheTextAreNotCountedWhereSomethingIsPainted) {
  plan.selection = model->select(0, {{0, 10, 10, 0}});
  paintWith(paint);
  paintWith(askForTwoBeyondTheText);
  EXPECT_EQ(app.draw(*document)->offPage, 0U);
}

TEST_F(Drawing, PaintingOutsideADrawRaises) {
  plan.selection = model->select(0, {{0, 10, 10, 0}});
  EXPECT_EQ(testPlugin.attempt([this] { TavrelView::PageViewPaintSelection(view, plan.selection); }),
            tavrel::errBadArgument);
}

TEST_F(Drawing, PaintingASelectionOfAnotherPageRaises) {
  plan.selection = model->select(1, {{0, 10, 10, 0}});
  paintWith(paint);
  EXPECT_EQ(app.draw(*document)->marks, 0U);
  EXPECT_EQ(runtime.frames.code(), tavrel::errBadArgument);
}

TEST_F(Drawing, AProcedureThatRaisesDoesNotStopTheNext) {
  paintWith(raiseAnError);
  paintWith(notePage);
  EXPECT_TRUE(app.draw(*document));
  EXPECT_EQ(plan.pages.size(), 1U);
  EXPECT_FALSE(document->view->drawing());
}

TEST_F(Drawing, NoDrawingStartsWithinADrawing) {
  paintWith(drawAgain);
  app.draw(*document);
  EXPECT_FALSE(plan.drewWithinDraw);
}

TEST_F(Drawing, TurningThePageWithinADrawIsForTheNextDraw) {
  paintWith(turnThePage);
  paintWith(notePage);
  EXPECT_EQ(app.drawIfNeeded(*document)->page, 0);
  EXPECT_THAT(plan.pages, testing::ElementsAre(0)) << "the page number is that of the page being drawn";
  EXPECT_EQ(app.drawIfNeeded(*document)->page, 2);
}

TEST_F(Drawing, AFailureToRenderLeavesTheViewUsable) {
  auto empty = std::make_unique<test::FakeDocument>(0);
  host::ViewerDocument &broken = app.open(std::move(empty), "empty.pdf", dpi);
  EXPECT_THROW(app.draw(broken), host::HostError);
  EXPECT_FALSE(broken.view->drawing());
}

TEST_F(Drawing, APageThatCannotBePaintedIsToBeDrawnAgain) {
  EXPECT_THROW(document->view->draw([] { throw std::bad_alloc(); }), std::bad_alloc);
  EXPECT_TRUE(document->view->invalid());
  EXPECT_FALSE(document->view->drawing());
}

TEST_F(Drawing, ADocumentWithoutAViewIsNotDrawn) {
  host::ViewerDocument &unseen = app.open(std::make_unique<test::FakeDocument>(1), "unseen.pdf", 0);
  EXPECT_FALSE(app.draw(unseen));
  EXPECT_FALSE(app.drawIfNeeded(unseen));
  EXPECT_EQ(TavrelView::DocGetPageView(app.documents().handle(&unseen)), nullptr);
}

} // namespace
