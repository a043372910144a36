// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Stepping from hit to hit: which hit is the current one, where the window is scrolled to, what is outlined, and when
// the highlight plug-in jumps.
#include <gmock/gmock.h>

#include "Steps.h"

namespace {

using namespace tavrel;
using test::height, test::onLine, test::pageOfLines, test::width;
using testing::ElementsAre;

std::vector<uint32_t> codes;
void noteJump(Doc, HLL *, uint32_t code, void *) { codes.push_back(code); }

class StepsTest : public test::StepsOnLines {
protected:
  StepsTest() { codes.clear(); }
};

TEST_F(StepsTest, GoToTheNextHitOnThePageBeforeThePageIsTurned) {
  show(hitsOn({0, 2}, {0, 4, 8}));
  EXPECT_EQ(app.statusText(), "hit 1 of 6, page 1 of 2");
  EXPECT_EQ(step(1), "hit 2 of 6, page 1 of 2");
  EXPECT_TRUE(isVisible(0, 4));
  EXPECT_EQ(step(1), "hit 3 of 6, page 1 of 2");
  EXPECT_TRUE(isVisible(0, 8));
  EXPECT_EQ(step(1), "hit 4 of 6, page 2 of 2");
  EXPECT_TRUE(isVisible(2, 0));
  EXPECT_EQ(reports, std::vector<std::string>{});
}

TEST_F(StepsTest, SayThatNoHitIsOnAPageOfTheDocument) {
  show(hitsOn({7, 9}, {0, 4}));
  EXPECT_EQ(app.statusText(), "4 hits, none on the pages of this document");
  EXPECT_FALSE(press(1));
  show(hitsOn({0}, {0, 4}));
  EXPECT_EQ(app.statusText(), "hit 1 of 2, page 1 of 1");
}

TEST_F(StepsTest, SayWhichHitIsTheLast) {
  show(hitsOn({0, 2}, {0, 4}));
  EXPECT_EQ(step(1), "hit 2 of 4, page 1 of 2");
  step(1);
  EXPECT_EQ(step(1), "hit 4 of 4, page 2 of 2: the last hit");
  EXPECT_FALSE(press(1));
  EXPECT_EQ(step(-1), "hit 3 of 4, page 2 of 2");
}

TEST_F(StepsTest, GoBackToTheLastHitOfThePageBefore) {
  show(hitsOn({0, 2}, {0, 4, 8}));
  document->view->showPage(2);
  EXPECT_EQ(draw().page, 2);
  EXPECT_EQ(step(-1), "hit 3 of 6, page 1 of 2");
  EXPECT_TRUE(isVisible(0, 8));
  EXPECT_EQ(step(-1), "hit 2 of 6, page 1 of 2");
  EXPECT_TRUE(isVisible(0, 4));
}

TEST_F(StepsTest, ShowTheFirstHitOfAPageFirstThatTheUserHasGoneTo) {
  show(hitsOn({0, 2}, {6, 8}));
  document->view->showPage(2);
  pageWindow->scrollTo(0, 0);
  draw();
  EXPECT_EQ(app.statusText(), "hit 3 of 4, page 2 of 2");
  EXPECT_FALSE(isVisible(2, 6));
  EXPECT_EQ(step(1), "hit 3 of 4, page 2 of 2");
  EXPECT_TRUE(isVisible(2, 6));
  EXPECT_EQ(step(1), "hit 4 of 4, page 2 of 2: the last hit");
  EXPECT_TRUE(isVisible(2, 8));
}

TEST_F(StepsTest, ShowTheLastHitWhenItIsTheOnlyOneOfAPageThatTheUserHasGoneTo) {
  HLL *list = hitsOn({0}, {0});
  TavrelGLT::HLL_AddHL(list, 2, onLine(8).pos, onLine(8).len);
  show(list);
  document->view->showPage(2);
  pageWindow->scrollTo(0, 0);
  draw();
  step(1);
  EXPECT_TRUE(isVisible(2, 8));
  EXPECT_FALSE(press(1));
}

TEST_F(StepsTest, ShowAHitCompletelyWhosePageTheUserHasGoneTo) {
  show(hitsOn({0, 2}, {6, 8}));
  document->view->showPage(2);
  pageWindow->scrollTo(0, static_cast<int>(placeOf(2, onLine(6)).top) + 2 - height);
  draw();
  EXPECT_EQ(step(1), "hit 3 of 4, page 2 of 2");
  EXPECT_TRUE(isVisible(2, 6));
}

TEST_F(StepsTest, EndAtAVisibleLastHitOfAPageThatTheUserHasGoneTo) {
  show(hitsOn({0, 2}, {0}));
  document->view->showPage(2);
  pageWindow->scrollTo(0, 0);
  app.toolBar()->updateStates();
  draw();
  EXPECT_FALSE(app.toolBar()->find(host_.runtime.atoms.atom(buttonName(1)))->enabled);
}

TEST_F(StepsTest, GoOnFromAVisibleHitOfAPageThatTheUserHasGoneTo) {
  show(hitsOn({0, 2}, {0, 8}));
  document->view->showPage(2);
  pageWindow->scrollTo(0, 0);
  draw();
  EXPECT_EQ(step(1), "hit 4 of 4, page 2 of 2: the last hit");
}

TEST_F(StepsTest, GoOnFromAHitThatTheUserHasScrolledAwayFrom) {
  show(hitsOn({0}, {0, 4, 8}));
  pageWindow->scrollTo(0, 700);
  draw();
  EXPECT_EQ(step(1), "hit 2 of 3, page 1 of 1");
}

TEST_F(StepsTest, ScrollNothingForAHitThatIsVisible) {
  show(hitsOn({0}, {0, 1, 2}));
  pageWindow->scrollTo(0, 20);
  step(1);
  step(1);
  EXPECT_EQ(scrollY(), 20);
}

TEST_F(StepsTest, ScrollAsLittleAsShowsTheHitWithAMargin) {
  show(hitsOn({0}, {0, 2, 4}));
  pageWindow->scrollTo(0, 0);
  step(1);
  EXPECT_EQ(scrollY(), 0);
  step(1);
  const double bottom = placeOf(0, onLine(4)).bottom;
  EXPECT_NEAR(visible().bottom - bottom, height / 8.0, 1.0);
  step(-1); // still visible
  EXPECT_NEAR(visible().bottom - bottom, height / 8.0, 1.0);
  step(-1);
  EXPECT_NEAR(placeOf(0, onLine(0)).top - visible().top, height / 8.0, 1.0);
}

TEST_F(StepsTest, ScrollSidewaysLikewise) {
  pageWindow->setDpi(288);
  HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
  TavrelGLT::HLL_AddHL(list, 0, 0, 1);
  TavrelGLT::HLL_AddHL(list, 0, 3, 1);
  show(list);
  pageWindow->scrollTo(0, pageWindow->scrollY());
  pageWindow->setWindow(120, height);
  step(1);
  EXPECT_TRUE(contains(visible(), placeOf(0, {3, 1})));
  EXPECT_GT(pageWindow->scrollX(), 0);
}

TEST_F(StepsTest, AHitThatIsLargerThanTheWindowIsShownFromItsStart) {
  pageWindow->setDpi(720);
  HLL *list = hitsOn({0}, {0, 1});
  show(list);
  step(1);
  const test::PixelRect hit = placeOf(0, onLine(1));
  EXPECT_NEAR(visible().left, hit.left, 1.0);
  EXPECT_LE(visible().top, hit.top);
  EXPECT_GE(visible().bottom, hit.bottom);
}

TEST_F(StepsTest, OutlineTheCurrentHitAndNoOther) {
  show(hitsOn({0}, {0, 1, 2}));
  expectOutlined(0);
  step(1);
  expectOutlined(1);
  step(-1);
  expectOutlined(0);
}

TEST_F(StepsTest, OutlineNothingOnAPageWithoutHits) {
  show(hitsOn({0}, {0, 1}));
  document->view->showPage(1);
  EXPECT_FALSE(outlineIn(draw()));
}

TEST_F(StepsTest, OutlineNothingInTheModeWithoutMarks) {
  show(hitsOn({0}, {0, 1}), GLT_VIEW_NONE);
  EXPECT_FALSE(outlineIn(draw()));
  EXPECT_EQ(step(1), "hit 2 of 2, page 1 of 1: the last hit");
}

TEST_F(StepsTest, OutlineNothingInAViewWithoutAWindow) {
  open();
  HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
  TavrelGLT::HLL_AddHL(list, 0, 0, 4);
  show(list);
  const host::Drawing drawing = draw();
  EXPECT_EQ(drawing.marks, 1U);
  EXPECT_FALSE(outlineIn(drawing));
  EXPECT_EQ(app.statusText(), "hit 1 of 1, page 1 of 1");
}

TEST_F(StepsTest, FindHitsThatAreCountedInWords) {
  HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
  for (const uint16_t word : {uint16_t{2}, uint16_t{7}})
    TavrelGLT::HLL_AddHL(list, 1, word, 1);
  show(list, GLT_VIEW_ALL, 0);
  document->view->showPage(1);
  expectOutlined(2);
  step(1);
  EXPECT_TRUE(isVisible(1, 7));
  expectOutlined(7);
}

TEST_F(StepsTest, FindHitsThatAreCountedInWordsInTheModeForOneHit) {
  HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
  for (const uint16_t word : {uint16_t{2}, uint16_t{7}})
    TavrelGLT::HLL_AddHL(list, 1, word, 1);
  show(list, GLT_VIEW_ONE, 0);
  document->view->showPage(1);
  draw();
  step(1);
  expectOutlined(7);
}

TEST_F(StepsTest, TakeTheUnitsOfAnotherList) {
  show(hitsOn({0}, {0, 1}));
  HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
  for (const uint16_t word : {uint16_t{1}, uint16_t{2}})
    TavrelGLT::HLL_AddHL(list, 0, word, 1);
  show(list, GLT_VIEW_ALL, 0);
  expectOutlined(1);
  show(hitsOn({0}, {1, 2}));
  expectOutlined(1);
}

TEST_F(StepsTest, GoThroughAllHitsInTheModeForOneHit) {
  show(hitsOn({0, 1, 3}, {0, 4, 8}), GLT_VIEW_ONE);
  for (int hit = 2; hit <= 9; ++hit)
    EXPECT_THAT(step(1), testing::StartsWith("hit " + std::to_string(hit) + " of 9"));
  EXPECT_FALSE(press(1));
  for (int hit = 8; hit >= 1; --hit)
    EXPECT_THAT(step(-1), testing::StartsWith("hit " + std::to_string(hit) + " of 9"));
  EXPECT_FALSE(press(-1));
}

TEST_F(StepsTest, CountWithoutADrawingBetweenThem) {
  show(hitsOn({0, 2, 3}, {0, 4, 8}));
  for (int press_ = 0; press_ < 4; ++press_)
    press(1);
  EXPECT_EQ(app.statusText(), "hit 5 of 9, page 2 of 3");
  for (int press_ = 0; press_ < 3; ++press_)
    press(-1);
  EXPECT_EQ(app.statusText(), "hit 2 of 9, page 1 of 3");
  draw();
  EXPECT_EQ(app.statusText(), "hit 2 of 9, page 1 of 3");
}

TEST_F(StepsTest, EnableTheirButtonsWhereThereIsAHit) {
  EXPECT_FALSE(press(1)) << "no hits";
  EXPECT_FALSE(press(-1));
  show(hitsOn({1, 2}, {3}));
  EXPECT_FALSE(press(-1));
  step(1);
  EXPECT_FALSE(press(1));
  document->view->showPage(0);
  EXPECT_FALSE(press(-1));
  EXPECT_TRUE(press(1));
  EXPECT_EQ(page(), 1);
  document->view->showPage(3);
  EXPECT_FALSE(press(1));
  EXPECT_TRUE(press(-1));
  EXPECT_EQ(page(), 2);
}

TEST_F(StepsTest, FromAPageWithoutHitsGoToTheNearestOnes) {
  show(hitsOn({0, 3}, {0, 1}));
  document->view->showPage(2);
  EXPECT_EQ(step(-1), "hit 2 of 4, page 1 of 2");
  document->view->showPage(1);
  EXPECT_EQ(step(1), "hit 3 of 4, page 2 of 2");
}

TEST_F(StepsTest, StartAgainOnAPageThatIsTurnedToByHand) {
  show(hitsOn({0, 1}, {0, 1, 2}));
  step(1);
  document->view->showPage(1);
  EXPECT_EQ(step(1), "hit 5 of 6, page 2 of 2") << "its first hit has been the current one";
}

TEST_F(StepsTest, PassPagesThatTheDocumentLacks) {
  show(hitsOn({0, 99, -3, 2}, {0}));
  EXPECT_EQ(step(1), "hit 2 of 2, page 2 of 2: the last hit");
  EXPECT_EQ(page(), 2);
  EXPECT_EQ(step(-1), "hit 1 of 2, page 1 of 2");
  EXPECT_EQ(page(), 0);
}

TEST_F(StepsTest, FollowTheListsOrder) {
  show(hitsOn({3, 0, 2}, {0}));
  EXPECT_EQ(page(), 3);
  step(1);
  EXPECT_EQ(page(), 0);
  step(1);
  EXPECT_EQ(page(), 2);
  EXPECT_FALSE(press(1));
}

TEST_F(StepsTest, JumpOnceForEachPage) {
  for (const int32_t mode : {GLT_VIEW_ALL, GLT_VIEW_NONE}) {
    openInWindow(document::openedHere(scratch.pdf({4, pageOfLines()}), ""), width, height);
    HLL *list = hitsOn({0, 1, 2}, {0, 1});
    TavrelGLT::GLT_RegisterHLL(doc, list, GLT_CHARACTER_OFFSETS, noteJump, nullptr, 1, nullptr);
    TavrelGLT::GLT_DeleteHLL(list);
    TavrelGLT::GLT_SetViewMode(doc, mode);
    codes.clear();
    for (int steps = 0; steps < 4; ++steps)
      step(1);
    EXPECT_THAT(codes, ElementsAre(GLT_JUMP_NEXT, GLT_JUMP_NEXT)) << mode;
    codes.clear();
    for (int steps = 0; steps < 3; ++steps)
      step(-1);
    EXPECT_THAT(codes, ElementsAre(GLT_JUMP_PREV, GLT_JUMP_PREV)) << mode;
  }
}

TEST_F(StepsTest, JumpOnceForEachPageWithoutADrawingBetweenThem) {
  HLL *list = hitsOn({0, 1, 2, 3}, {0, 1, 2});
  TavrelGLT::GLT_RegisterHLL(doc, list, GLT_CHARACTER_OFFSETS, noteJump, nullptr, 1, nullptr);
  TavrelGLT::GLT_DeleteHLL(list);
  document->view->showPage(3);
  draw();
  for (int presses = 0; presses < 7; ++presses)
    press(-1);
  EXPECT_EQ(app.statusText(), "hit 3 of 12, page 1 of 4");
  EXPECT_THAT(codes, ElementsAre(GLT_JUMP_PREV, GLT_JUMP_PREV, GLT_JUMP_PREV));
}

TEST_F(StepsTest, WithShiftOnlyNotify) {
  HLL *list = hitsOn({0, 1}, {0, 1});
  TavrelGLT::GLT_RegisterHLL(doc, list, GLT_CHARACTER_OFFSETS, noteJump, nullptr, 1, nullptr);
  TavrelGLT::GLT_DeleteHLL(list);
  draw();
  step(1);
  press(1, modifierShift);
  press(-1, modifierShift);
  EXPECT_THAT(codes, ElementsAre(GLT_JUMP_NEXT_BEYOND, GLT_JUMP_PREV_BEYOND));
  EXPECT_EQ(app.statusText(), "hit 2 of 4, page 1 of 2");
}

TEST_F(StepsTest, StartAgainInAListThatTakesThePlaceOfAnother) {
  show(hitsOn({0, 1}, {0, 1, 2}));
  step(1);
  step(1);
  show(hitsOn({0}, {4, 5}));
  EXPECT_EQ(app.statusText(), "hit 1 of 2, page 1 of 1");
  EXPECT_EQ(step(1), "hit 2 of 2, page 1 of 1: the last hit");
  TavrelGLT::GLT_UnregisterHLL(doc, TavrelGLT::GLT_GetHLL(doc));
  EXPECT_FALSE(press(-1));
  EXPECT_FALSE(outlineIn(draw()));
  EXPECT_EQ(app.statusText(), "");
}

TEST_F(StepsTest, ReachHitsThatAreAddedToTheList) {
  show(hitsOn({0}, {0}));
  EXPECT_FALSE(press(1));
  TavrelGLT::HLL_AddHL(TavrelGLT::GLT_GetHLL(doc), 0, onLine(5).pos, 4);
  TavrelGLT::HLL_AddHL(TavrelGLT::GLT_GetHLL(doc), 2, onLine(5).pos, 4);
  EXPECT_EQ(step(1), "hit 2 of 3, page 1 of 2");
  EXPECT_EQ(step(1), "hit 3 of 3, page 2 of 2: the last hit");
}

TEST_F(StepsTest, AreSeparateForEachDocument) {
  show(hitsOn({0}, {0, 1, 2}));
  host::ViewerDocument &first = *document;
  step(1);
  openInWindow(document::openedHere(scratch.pdf({4, pageOfLines()}), ""), width, height);
  show(hitsOn({0}, {0, 1}));
  EXPECT_EQ(app.statusText(), "hit 1 of 2, page 1 of 1");
  app.bringToFront(first);
  app.draw(first);
  EXPECT_EQ(app.statusText(), "hit 2 of 3, page 1 of 1");
}

TEST_F(StepsTest, PassAHitThatCoversNothing) {
  HLL *list = hitsOn({0}, {0});
  TavrelGLT::HLL_AddHL(list, 0, 60'000, 4);
  TavrelGLT::HLL_AddHL(list, 0, onLine(8).pos, 4);
  show(list);
  EXPECT_EQ(step(1), "hit 2 of 3, page 1 of 1");
  EXPECT_FALSE(outlineIn(draw()));
  EXPECT_EQ(step(1), "hit 3 of 3, page 1 of 1: the last hit");
  EXPECT_TRUE(isVisible(0, 8));
}

TEST_F(StepsTest, LeaveADamagedPageByOneStep) {
  test::PdfPage damaged = pageOfLines();
  damaged.cropBox = "10 10 10 10";
  openInWindow(document::openedHere(scratch.pdf({pageOfLines(), damaged, pageOfLines()}), ""), width, height);
  show(hitsOn({0, 1, 2}, {0, 8}));
  step(1);
  EXPECT_TRUE(press(1));
  EXPECT_EQ(page(), 1);
  EXPECT_EQ(app.statusText(), "hit 3 of 6, page 2 of 3");
  EXPECT_EQ(step(1), "hit 5 of 6, page 3 of 3");
  EXPECT_TRUE(isVisible(2, 0));
  EXPECT_TRUE(press(-1));
  EXPECT_EQ(app.statusText(), "hit 4 of 6, page 2 of 3");
  EXPECT_EQ(step(-1), "hit 2 of 6, page 1 of 3");
  EXPECT_TRUE(isVisible(0, 8));
  EXPECT_EQ(reports, std::vector<std::string>{});
}

TEST_F(StepsTest, EndOnADamagedLastPage) {
  test::PdfPage damaged = pageOfLines();
  damaged.cropBox = "10 10 10 10";
  openInWindow(document::openedHere(scratch.pdf({pageOfLines(), damaged}), ""), width, height);
  show(hitsOn({0, 1}, {0, 8}));
  step(1);
  int presses = 0;
  while (press(1) && presses < 10)
    ++presses;
  EXPECT_EQ(presses, 2);
  EXPECT_EQ(app.statusText(), "hit 4 of 4, page 2 of 2: the last hit");
}

TEST_F(StepsTest, BeginAtTheFirstHitThatTheDocumentIsOpenedWith) {
  scratch.write("hits.xml", "<XML>\n<Body Units=characters mode=active>\n<highlights>\n<loc pg=1 pos=40 len=4>\n"
                            "<loc pg=1 pos=0 len=4>\n</highlights>\n</Body>\n</XML>\n");
  openInWindow(document::openedHere(scratch.pdf({4, pageOfLines()}), ""), width, height, viewer::Fit::none,
               "xml=hits.xml");
  EXPECT_TRUE(isVisible(1, 8)) << "the first one of the list is the last one on the page";
  expectOutlined(8);
}

// Their units are known when the page has been drawn.
TEST_F(StepsTest, BeginAtTheFirstHitOfAListOfWordsThatTheDocumentIsOpenedWith) {
  scratch.write("hits.xml", "<XML>\n<Body Units=words mode=active>\n<highlights>\n<loc pg=1 pos=8 len=1>\n"
                            "<loc pg=1 pos=9 len=1>\n</highlights>\n</Body>\n</XML>\n");
  openInWindow(document::openedHere(scratch.pdf({4, pageOfLines()}), ""), width, height, viewer::Fit::none,
               "xml=hits.xml");
  draw();
  EXPECT_TRUE(isVisible(1, 8));
  expectOutlined(8);
}

TEST_F(StepsTest, TheNumberIsThatOfAPageThatIsStillBeingRendered) {
  show(hitsOn({0, 2}, {7, 8}));
  document->view->showPage(2);
  app.pageAwaited(*document);
  EXPECT_EQ(app.statusText(), "hit 3 of 4, page 2 of 2");
  document->view->showPage(1);
  app.pageAwaited(*document);
  EXPECT_EQ(app.statusText(), "4 hits on 2 pages, none on this one");
}

TEST_F(StepsTest, GoToTheFirstHitOfAMarkedPageThatIsChosen) {
  show(hitsOn({0, 2}, {7, 8}));
  document->view->showPage(2);
  app.markedPageChosen(*document);
  EXPECT_EQ(app.statusText(), "hit 3 of 4, page 2 of 2");
  EXPECT_TRUE(isVisible(2, 7));
  step(1);
  pageWindow->scrollTo(0, 0);
  app.markedPageChosen(*document);
  EXPECT_EQ(app.statusText(), "hit 3 of 4, page 2 of 2");
  EXPECT_TRUE(isVisible(2, 7));
}

TEST_F(StepsTest, StayWhereTheyAreWhenAPageOfAnotherPlugInIsChosen) {
  show(hitsOn({0}, {0}));
  document->view->showPage(1);
  app.markedPageChosen(*document);
  EXPECT_EQ(page(), 1);
  EXPECT_EQ(scrollY(), 0);
}

TEST_F(StepsTest, BeginAtTheFirstHitOfAnotherList) {
  show(hitsOn({0}, {8, 0, 4}));
  EXPECT_TRUE(isVisible(0, 8));
  show(hitsOn({0}, {0, 8}));
  EXPECT_TRUE(isVisible(0, 0));
  pageWindow->scrollTo(0, 400);
  draw();
  EXPECT_EQ(scrollY(), 400) << "only once";
}

TEST_F(StepsTest, TakeOverTheButtonsOfTheHighlightPlugIn) {
  for (const int direction : {-1, 1}) {
    const host::ToolButton *button = app.toolBar()->find(host_.runtime.atoms.atom(buttonName(direction)));
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(host_.runtime.extensions.name(button->owner), "HitSteps");
    EXPECT_EQ(button->tip, direction > 0 ? "Jumps to the next highlight" : "Jumps to the previous highlight");
    EXPECT_EQ(button->label, direction > 0 ? "Next Hit" : "Previous Hit");
    EXPECT_EQ(button->key, direction > 0 ? "<Key>F3" : "Shift<Key>F3");
    EXPECT_NE(button->icon, 0U);
    EXPECT_TRUE(button->attributes.contains(buttonAlsoInBrowser));
  }
}

} // namespace
