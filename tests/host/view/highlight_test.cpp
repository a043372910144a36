// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Highlights: what a plug-in marks at once on the page as it is on the screen, by its pixels. A program shows the last
// drawing with the view's highlights on it.
#include "Viewer.h"

namespace {

using tavrel::PageView;
using tavrel::TextSelection;

constexpr tavrel::ColorValue yellow{tavrel::colorSpaceRGB, {tavrel::fixedOne, tavrel::fixedOne, 0, 0}};
constexpr uint32_t paper = test::FakeDocument::paper, painted = 0xFFFFFF00U, highlighted = 0xFFB4D5FEU;

// What page-draw procedures paint, and how often they are called. They are functions without data.
TextSelection s_painted;
int s_calls;
bool s_highlightsFirst;

void paint(PageView view, void *) {
  ++s_calls;
  if (s_painted == nullptr) return;
  if (s_highlightsFirst) TavrelView::PageViewHighlightText(view, s_painted);
  TavrelView::PageViewApplyDrawColor(view, &yellow);
  TavrelView::PageViewPaintSelection(view, s_painted);
}

struct Highlights : test::Viewer {
  Highlights() {
    s_painted = nullptr;
    s_calls = 0;
    s_highlightsFirst = false;
    TavrelView::RegisterPageDrawProc(testPlugin.callback(paint), nullptr);
    here = model->select(0, {{0, 200, 10, 190}});
    draw();
  }
  void draw() { drawing = *app.draw(*document); }
  /// A pixel on the screen.
  uint32_t pixel(int x, int y) {
    host::Drawing shown = drawing;
    document->view->paintHighlights(shown);
    return shown.image.row(y)[x];
  }
  void highlight(TextSelection selection) { TavrelView::PageViewHighlightText(view, selection); }

  TextSelection here = nullptr; ///< the first ten pixels of the first ten rows
  host::Drawing drawing;
};

TEST_F(Highlights, AreOnThePageAtOnceWithoutACallOfPageDrawProcedures) {
  const int calls = s_calls;
  highlight(here);
  EXPECT_EQ(pixel(0, 0), highlighted);
  EXPECT_EQ(pixel(9, 9), highlighted);
  EXPECT_EQ(pixel(10, 9), paper);
  EXPECT_EQ(s_calls, calls);
  EXPECT_FALSE(document->view->invalid());
}

TEST_F(Highlights, AreRemovedByASecondCall) {
  highlight(here);
  highlight(here);
  EXPECT_EQ(pixel(0, 0), paper);
}

TEST_F(Highlights, EndWithTheNextDrawing) {
  highlight(here);
  draw();
  EXPECT_EQ(pixel(0, 0), paper);
}

TEST_F(Highlights, OfTheSameSelectionBeginAnewAfterADrawing) {
  highlight(here);
  draw();
  highlight(here);
  EXPECT_EQ(pixel(0, 0), highlighted);
}

TEST_F(Highlights, AreNotBlendedWithWhatTheNextDrawingPaintsThere) {
  highlight(here);
  s_painted = here;
  draw();
  EXPECT_EQ(pixel(0, 0), painted);
}

TEST_F(Highlights, OfAPaintedSelectionLeaveItAsItIsAndHaveThePageDrawnAnew) {
  s_painted = here;
  draw();
  highlight(here);
  EXPECT_EQ(pixel(0, 0), painted);
  EXPECT_TRUE(document->view->invalid());
}

TEST_F(Highlights, OfASelectionThatTheLastDrawingDidNotPaintAreShownAtOnce) {
  s_painted = here;
  draw();
  s_painted = nullptr;
  draw();
  highlight(here);
  EXPECT_EQ(pixel(0, 0), highlighted);
}

TEST_F(Highlights, OfEqualBoxesAreTheSame) {
  highlight(here);
  highlight(model->select(0, {{0, 200, 10, 190}}));
  EXPECT_EQ(pixel(0, 0), paper);
}

TEST_F(Highlights, ThatOverlapAreBlendedOnce) {
  highlight(here);
  highlight(model->select(0, {{5, 195, 20, 180}}));
  EXPECT_EQ(pixel(7, 7), highlighted);
  EXPECT_EQ(pixel(15, 15), highlighted);
}

TEST_F(Highlights, ThatOverlapAreRemovedOneByOne) {
  highlight(here);
  highlight(model->select(0, {{5, 195, 20, 180}}));
  highlight(here);
  EXPECT_EQ(pixel(0, 0), paper);
  EXPECT_EQ(pixel(7, 7), highlighted);
}

TEST_F(Highlights, OfAPageThatIsNotOnTheScreenAreIgnored) {
  const TextSelection elsewhere = model->select(2, {{0, 200, 10, 190}});
  highlight(elsewhere);
  EXPECT_EQ(document->view->highlights().size(), 0U);
  TavrelView::PageViewShowPage(view, 2);
  draw();
  EXPECT_EQ(pixel(0, 0), paper);
  highlight(elsewhere);
  EXPECT_EQ(pixel(0, 0), highlighted);
}

TEST_F(Highlights, BeforeTheFirstDrawingAreIgnored) {
  auto fake = std::make_unique<test::FakeDocument>(1);
  const TextSelection selection = fake->select(0, {{0, 200, 10, 190}});
  host::ViewerDocument &unseen = app.open(std::move(fake), "unseen.pdf", dpi);
  TavrelView::PageViewHighlightText(app.views().handle(unseen.view.get()), selection);
  EXPECT_EQ(unseen.view->highlights().size(), 0U);
}

// Unregistering a list requests a drawing, and a list with equal ranges may be registered before it.
TEST_F(Highlights, BeginAnewWhenThePageIsToBeDrawnAnew) {
  highlight(here);
  TavrelView::PageViewRefreshArea(view, nullptr);
  highlight(here);
  EXPECT_EQ(pixel(0, 0), highlighted);
}

TEST_F(Highlights, OfASelectionThatIsPaintedInTheSameDrawingAreNotBlendedTwice) {
  s_painted = here;
  s_highlightsFirst = true;
  draw();
  EXPECT_EQ(pixel(0, 0), painted);
}

TEST_F(Highlights, LieWhereTheirSelectionIsInAScrolledWindow) {
  window->setWindow(50, 50);
  TavrelView::PageViewScrollToPoint(view, 5, 5);
  draw();
  highlight(here);
  EXPECT_EQ(drawing.x, 5);
  EXPECT_EQ(pixel(4, 4), highlighted);
  EXPECT_EQ(pixel(5, 4), paper);
}

TEST_F(Highlights, NotifyTheListenerOnceNothingHoldsThemBack) {
  int notified = 0;
  app.listener = [&](host::ViewerDocument &) { ++notified; };
  highlight(here);
  EXPECT_EQ(notified, 1);
  TavrelView::PageViewBeginBatch(view);
  highlight(here);
  EXPECT_EQ(notified, 1);
  TavrelView::PageViewEndBatch(view);
  EXPECT_EQ(notified, 2);
  TavrelView::PageViewBeginBatch(view);
  TavrelView::PageViewEndBatch(view);
  EXPECT_EQ(notified, 2) << "nothing has changed since";
}

} // namespace
