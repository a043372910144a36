// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What a session shows: rendered pages, awaited pages, pages with errors; and drawing during calls of plug-ins.
#include <gmock/gmock.h>

#include "Sessions.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelView.h"

namespace viewer {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr uint32_t white = 0xFFFFFFFF;

struct DrawingTest : test::Sessions {
  /// Read and written by the callbacks of plug-ins, which are functions without data.
  static inline Session *s_session;
  static inline host::Application *s_app;
  static inline std::vector<uint32_t> s_modifiers;
  static inline bool s_drew;
  static inline tavrel::Bool16 s_enabled;
  static inline int s_presses;

  DrawingTest() {
    s_session = &session();
    s_app = &app;
    s_modifiers.clear();
    s_drew = false;
    s_enabled = 1;
    s_presses = 0;
  }

  host::ToolButton &button(tavrel::ButtonActionProc action) {
    host::ToolButton &made = app.toolBar()->create(runtime.atoms.atom("testPlugin:Button"), 0);
    made.action = {testPlugin.callback(action), nullptr, testPlugin.id};
    made.test = {testPlugin.callback(+[](tavrel::ToolButton, void *) { return s_enabled; }), nullptr, testPlugin.id};
    app.toolBar()->insert(made, false, nullptr);
    return made;
  }

  void drawsWith(tavrel::PageDrawProc procedure) {
    app.registerPageDraw({testPlugin.callback(procedure), nullptr, testPlugin.id});
  }
  // Draws as the event loop does before it waits; returns the number of drawings.
  int drawsUntilNothingIsToBeDrawn() {
    int drawings = 0;
    for (; session().needsDrawing() && drawings < 10; ++drawings)
      EXPECT_TRUE(session().draw());
    return drawings;
  }

  // Changes a page's words in the document, so that keepsWords() detects whether they were extracted again.
  void marksWords(int32_t page) {
    const_cast<host::PageText &>(session().front()->model->pageText(page)).words.clear();
  }
  bool keepsWords(int32_t page) { return session().front()->model->pageText(page).words.empty(); }
  void visit(int32_t first, int32_t last) {
    for (int32_t page = first; page <= last; ++page) {
      session().goToPage(page);
      ASSERT_TRUE(draws());
      marksWords(page);
    }
  }
};

// ---- marks ----

TEST_F(DrawingTest, HitsOutsideOfThePageAreReported) {
  const tavrel::PageDrawProc paint = [](tavrel::PageView view, void *) {
    const tavrel::Page page = DocModel::DocOpenPage(TavrelView::DocGetModelDoc(TavrelView::GetFrontDoc()),
                                                    TavrelView::PageViewGetPageNum(view));
    const tavrel::TextRange first{0, 1};
    TavrelView::PageViewPaintSelection(view, DocModel::SelectionFromWordRanges(page, &first, 1, 2));
  };
  app.registerPageDraw({testPlugin.callback(paint), nullptr, testPlugin.id});
  // The glyphs of a vertical line that starts at the bottom of the page are below it.
  open(folder.write("bottom.pdf", test::pdfOf({test::pageWith("a", 50, 0), test::pageWith("b")}, {},
                                              {.kind = test::PdfFont::vertical})));
  ASSERT_TRUE(draws());
  EXPECT_EQ(drawing().marks, 0U);
  EXPECT_EQ(session().message(), "Page 1: 1 hit is outside of the page and not marked");
  session().view()->showPage(1);
  ASSERT_TRUE(draws());
  EXPECT_EQ(drawing().marks, 1U);
  EXPECT_EQ(session().message(), "");
}

// ---- waiting for pages ----

TEST_F(DrawingTest, AnAwaitedPageHasAnOutline) {
  openPages({test::slowPage()});
  EXPECT_TRUE(session().draw());
  EXPECT_TRUE(session().shown().document);
  EXPECT_FALSE(session().shown().drawing);
  EXPECT_EQ(session().shown().pageWidth, 400);
  EXPECT_EQ(session().shown().pageHeight, 600);
}

TEST_F(DrawingTest, TheOutlineIsDrawnOnce) {
  openPages({test::slowPage()});
  EXPECT_TRUE(session().draw());
  EXPECT_FALSE(session().draw());
  EXPECT_TRUE(session().view()->invalid());
}

TEST_F(DrawingTest, ThePageIsWaitedForUntilItIsRendered) {
  openPages({test::slowPage()});
  EXPECT_FALSE(session().waitingSince());
  session().draw();
  const auto since = session().waitingSince();
  EXPECT_TRUE(since);
  session().draw();
  EXPECT_EQ(session().waitingSince(), since);
  ASSERT_TRUE(draws());
  EXPECT_FALSE(session().waitingSince());
}

// Fitted to 302 pixels the page is 201.3 pixels wide, and 202 to 303: either way its image has 202 columns.
TEST_F(DrawingTest, AnAwaitedPageIsAskedForAgainWhenOnlyItsResolutionChanges) {
  openPages({test::slowPage()});
  session().setFit(host::Fit::page);
  session().setWindow(width, 302, 0);
  ASSERT_TRUE(session().draw());
  const int columns = session().shown().pageWidth;
  session().setWindow(width, 303, 0);
  ASSERT_EQ(session().view()->pageWidth(), columns);
  ASSERT_TRUE(draws());
  EXPECT_EQ(drawing().dpi, session().view()->dpi());
}

TEST_F(DrawingTest, NothingIsWaitedForWhenTheDocumentIsClosed) {
  openPages({test::slowPage()});
  session().draw();
  session().closeFront();
  session().draw();
  EXPECT_FALSE(session().waitingSince());
}

TEST_F(DrawingTest, ThePageThatArrivesIsDrawnOnce) {
  openPages(test::numberedPages(1));
  ASSERT_TRUE(draws());
  EXPECT_EQ(drawing().image.width, width);
  EXPECT_EQ(drawing().image.height, height);
  EXPECT_FALSE(session().draw());
}

TEST_F(DrawingTest, TheNeighboursAreRenderedToo) {
  openPages(test::numberedPages(5));
  session().goToPage(2);
  ASSERT_TRUE(draws());
  ASSERT_TRUE(until([&] { return session().cache().size() == 3; }));
  session().turn(1);
  EXPECT_TRUE(session().draw());
  EXPECT_TRUE(session().shown().drawing);
}

TEST_F(DrawingTest, NeighboursThatDoNotFitAreNotRendered) {
  openPages(std::vector<test::PdfPage>(3, {.width = 3000, .height = 3000}));
  session().setWindow(3000, 3000, 0); // 34 MiB each
  session().goToPage(1);
  ASSERT_TRUE(draws());
  session().turn(1);
  ASSERT_TRUE(draws());
  EXPECT_EQ(session().cache().size(), 1U);
  EXPECT_LE(session().cache().bytes(), session().cache().bound());
}

TEST_F(DrawingTest, ANeighbourOfAnotherWidthIsRenderedAsItWillBeShown) {
  openPages({test::pageWith("first"), {.width = 300, .height = 500}});
  ASSERT_TRUE(draws());
  ASSERT_TRUE(until([&] { return session().cache().size() == 2; }));
  session().turn(1);
  EXPECT_TRUE(session().draw());
  EXPECT_TRUE(session().shown().drawing);
  EXPECT_EQ(session().shown().pageWidth, width);
}

TEST_F(DrawingTest, ARotatedPageIsAsWideAsTheWindow) {
  test::PdfPage page = test::pageWith("sideways");
  page.rotate = 90;
  openPages({page});
  ASSERT_TRUE(draws());
  EXPECT_EQ(session().shown().pageWidth, 400);
  EXPECT_EQ(session().shown().pageHeight, 267);
}

// ---- pages that cannot be drawn ----

TEST_F(DrawingTest, ALongPageIsDrawnAsLargeAsItCanBe) {
  openPages({{.width = 600, .height = 14400}}); // a web page on one sheet
  session().setWindow(900, 900, 0);
  ASSERT_TRUE(draws());
  EXPECT_THAT(session().pageError(), IsEmpty());
  const viewer::Shown &shown = session().shown();
  const double pixels = 1.0 * shown.pageWidth * shown.pageHeight;
  EXPECT_LT(shown.pageWidth, 900) << "as wide as the window it would be too large";
  EXPECT_LE(pixels, host::PageView::largestImage);
  EXPECT_GT(pixels, 0.99 * host::PageView::largestImage);
  EXPECT_NEAR(1.0 * shown.pageHeight / shown.pageWidth, 14400.0 / 600, 0.05);
}

TEST_F(DrawingTest, ADamagedPageIsWhiteAndReported) {
  open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(2), 2)));
  session().goToPage(2);
  ASSERT_TRUE(draws());
  EXPECT_THAT(session().message(), HasSubstr("page 3 is damaged"));
  EXPECT_THAT(session().pageError(), HasSubstr("page 3 is damaged"));
  EXPECT_EQ(pixel(20, 20), white);
}

TEST_F(DrawingTest, ADamagedPageIsReportedOnce) {
  open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(2), 1)));
  testing::internal::CaptureStderr();
  for (const int32_t page : {2, 1, 2}) {
    session().goToPage(page);
    ASSERT_TRUE(draws());
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tavrel: " + session().front()->file.string() + ": page 3 is damaged\n");
}

TEST_F(DrawingTest, ThePagesAroundADamagedOneHaveNoError) {
  open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(2), 1)));
  session().goToPage(2);
  ASSERT_TRUE(draws());
  session().turn(-1);
  ASSERT_TRUE(draws());
  EXPECT_THAT(session().pageError(), IsEmpty());
}

TEST_F(DrawingTest, AReaderScrollsOnToADamagedPageAndBack) {
  open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(1), 1)));
  session().scroll(0, 5000);
  session().scroll(0, 10);
  ASSERT_TRUE(draws());
  EXPECT_EQ(session().page(), 1);
  session().scroll(0, -10);
  ASSERT_TRUE(draws());
  EXPECT_EQ(session().page(), 0);
}

TEST_F(DrawingTest, ADamagedPageIsZoomedAndFittedLikeOthers) {
  open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(1), 1)));
  session().setPosition(1.5);
  session().setWindow(500, 500, 0);
  ASSERT_TRUE(draws());
  const int wide = session().shown().pageWidth, high = session().shown().pageHeight;
  EXPECT_EQ(wide, 500);
  session().setFit(host::Fit::page);
  ASSERT_TRUE(draws());
  const int fittedWide = session().shown().pageWidth, fittedHigh = session().shown().pageHeight;
  EXPECT_EQ(fittedHigh, 500);
  EXPECT_NEAR(1.0 * fittedWide / fittedHigh, 1.0 * wide / high, 0.01);
  session().zoomBy(1);
  ASSERT_TRUE(draws());
  EXPECT_GT(session().shown().pageWidth, fittedWide);
  EXPECT_GT(session().shown().pageHeight, fittedHigh);
}

TEST_F(DrawingTest, ReloadingMayLeadToAPageThatIsDamagedNow) {
  openPages(test::numberedPages(3));
  session().goToPage(2);
  folder.write("paper.pdf", test::withDamagedPages(test::numberedPages(1), 2));
  session().reload();
  ASSERT_TRUE(until([&] { return !session().opening(); }));
  ASSERT_TRUE(draws());
  EXPECT_THAT(session().pageError(), HasSubstr("page 3 is damaged"));
}

// ---- words ----

TEST_F(DrawingTest, TheWordsOfEightPagesAreKept) {
  openPages(test::numberedPages(9));
  visit(0, 7);
  EXPECT_TRUE(keepsWords(0));
  visit(8, 8);
  EXPECT_FALSE(keepsWords(0));
  EXPECT_TRUE(keepsWords(1));
}

TEST_F(DrawingTest, APageShownAgainIsKeptLonger) {
  openPages(test::numberedPages(9));
  visit(0, 7);
  visit(0, 0);
  visit(8, 8);
  EXPECT_TRUE(keepsWords(0));
  EXPECT_FALSE(keepsWords(1));
}

TEST_F(DrawingTest, WordsAreForgottenThoughAnotherDocumentWasInFront) {
  openPages(test::numberedPages(16), "a.pdf");
  visit(0, 5);
  openPages(test::numberedPages(1), "b.pdf");
  ASSERT_TRUE(draws());
  session().bringToFront(0);
  visit(6, 15);
  EXPECT_FALSE(keepsWords(0));
}

TEST_F(DrawingTest, SelectionsOutliveTheWordsTheyWereMadeOf) {
  openPages(test::numberedPages(10));
  const tavrel::TextRange range{0, 4};
  const host::Selection *selection = session().front()->model->selectCharacters(0, {&range, 1});
  const double left = selection->bounds.left;
  visit(0, 9);
  EXPECT_EQ(session().front()->model->selectCharacters(0, {&range, 1}), selection);
  EXPECT_EQ(selection->bounds.left, left);
}

TEST_F(DrawingTest, WordsThatAPluginHoldsOutliveTheDocumentsOwn) {
  openPages(test::numberedPages(10));
  const tavrel::ModelDoc model = host::modelDocs().handle(session().front()->model.get());
  static tavrel::Word *s_words;
  static int32_t s_count;
  ASSERT_EQ(testPlugin.attempt([=] {
    const tavrel::WordFinder finder = DocModel::WordFinderCreate(model, nullptr, nullptr, nullptr, 2, 8, nullptr);
    DocModel::WordFinderAcquirePage(finder, 0, &s_words, nullptr, nullptr, &s_count);
  }),
            0);
  visit(0, 9);
  ASSERT_EQ(s_count, 2);
  EXPECT_EQ(testPlugin.attempt([] {
    if (DocModel::WordGetLength(s_words[0]) != 4 || DocModel::WordGetCharOffset(s_words[1]) != 5) Kernel::RaiseError(1);
  }),
            0);
}

// ---- while plug-ins are called ----

TEST_F(DrawingTest, NothingIsDrawnWhileAPluginIsCalled) {
  openPages(test::numberedPages(1));
  session().press(button([](tavrel::ToolButton, void *) {
                    s_session->view()->invalidate();
                    s_drew = s_session->draw();
                    ++s_presses;
                  }),
                  0);
  EXPECT_EQ(s_presses, 1);
  EXPECT_FALSE(s_drew);
  EXPECT_TRUE(draws());
}

TEST_F(DrawingTest, NothingIsDrawnWithinADrawing) {
  openPages(test::numberedPages(1));
  const tavrel::PageDrawProc draw = [](tavrel::PageView, void *) {
    s_drew |= s_session->draw();
    ++s_presses;
  };
  app.registerPageDraw({testPlugin.callback(draw), nullptr, testPlugin.id});
  ASSERT_TRUE(draws());
  EXPECT_EQ(s_presses, 1);
  EXPECT_FALSE(s_drew);
}

TEST_F(DrawingTest, APluginThatTurnsThePageWhileItDrawsIsFollowed) {
  openPages(test::numberedPages(2));
  const tavrel::PageDrawProc turn = [](tavrel::PageView view, void *) { TavrelView::PageViewShowPage(view, 1); };
  app.registerPageDraw({testPlugin.callback(turn), nullptr, testPlugin.id});
  ASSERT_TRUE(draws());
  EXPECT_EQ(drawing().page, 1);
  EXPECT_EQ(session().shown().page, 1);
}

TEST_F(DrawingTest, APluginThatScrollsWhileItDrawsIsFollowedWithoutAnotherEvent) {
  openPages(test::numberedPages(1));
  ASSERT_TRUE(draws());
  drawsWith([](tavrel::PageView view, void *) { TavrelView::PageViewScrollToPoint(view, 0, 120); });
  session().view()->invalidate();
  EXPECT_EQ(drawsUntilNothingIsToBeDrawn(), 2);
  EXPECT_EQ(session().shown().scrollY, 120);
}

TEST_F(DrawingTest, AnImageIsShownWhereItWasDrawnThoughAPluginScrollsMeanwhile) {
  openPages(test::numberedPages(1));
  ASSERT_TRUE(draws());
  drawsWith([](tavrel::PageView view, void *) { TavrelView::PageViewScrollToPoint(view, 0, 120); });
  session().view()->invalidate();
  ASSERT_TRUE(session().draw());
  EXPECT_EQ(drawing().y, 0);
  EXPECT_EQ(session().shown().scrollY, 0);
}

TEST_F(DrawingTest, AnImageIsOfThePageDrawnThoughAPluginTurnsMeanwhile) {
  openPages({test::pageWith("first"), {.width = 400, .height = 500}});
  ASSERT_TRUE(draws());
  drawsWith([](tavrel::PageView view, void *) { TavrelView::PageViewShowPage(view, 1); });
  session().view()->invalidate();
  ASSERT_TRUE(session().draw());
  EXPECT_EQ(session().shown().page, 0);
  EXPECT_EQ(session().shown().pageHeight, 600);
  EXPECT_TRUE(session().needsDrawing());
}

TEST_F(DrawingTest, AnAwaitedPageNeedsNoDrawingUntilItIsRendered) {
  openPages({test::slowPage()});
  EXPECT_TRUE(session().needsDrawing());
  session().draw();
  EXPECT_FALSE(session().needsDrawing());
  ASSERT_TRUE(until([&] { return session().needsDrawing(); }));
  EXPECT_TRUE(session().draw());
  EXPECT_TRUE(session().shown().drawing);
}

TEST_F(DrawingTest, NothingNeedsDrawingWhileAPluginIsCalled) {
  openPages(test::numberedPages(1));
  session().press(button([](tavrel::ToolButton, void *) {
                    s_session->view()->invalidate();
                    s_drew = s_session->needsDrawing();
                    ++s_presses;
                  }),
                  0);
  EXPECT_EQ(s_presses, 1);
  EXPECT_FALSE(s_drew);
  EXPECT_TRUE(session().needsDrawing());
}

// ---- buttons ----

TEST_F(DrawingTest, ModifiersAreHeldDuringThePress) {
  const tavrel::ButtonActionProc look = [](tavrel::ToolButton, void *) {
    s_modifiers.push_back(TavrelView::GetModifierKeyState());
  };
  EXPECT_TRUE(session().press(button(look), tavrel::modifierShift));
  EXPECT_THAT(s_modifiers, testing::ElementsAre(tavrel::modifierShift));
  EXPECT_EQ(app.modifierKeys, 0U);
}

TEST_F(DrawingTest, AGreyedButtonIsNotPressed) {
  host::ToolButton &greyed = button([](tavrel::ToolButton, void *) { ++s_presses; });
  s_enabled = 0;
  EXPECT_FALSE(session().press(greyed, 0));
  EXPECT_EQ(s_presses, 0);
  EXPECT_FALSE(greyed.enabled);
}

TEST_F(DrawingTest, AButtonIsAskedBeforeItIsPressed) {
  s_enabled = 0;
  host::ToolButton &pressed = button([](tavrel::ToolButton, void *) { ++s_presses; });
  app.toolBar()->updateStates();
  s_enabled = 1;
  EXPECT_TRUE(session().press(pressed, 0));
  EXPECT_EQ(s_presses, 1);
}

TEST_F(DrawingTest, AfterAPressTheButtonsAreAskedAgain) {
  host::ToolButton &once = button([](tavrel::ToolButton, void *) { s_enabled = 0; });
  EXPECT_TRUE(session().press(once, 0));
  EXPECT_FALSE(once.enabled);
}

TEST_F(DrawingTest, AButtonThatRaisesReleasesTheModifiers) {
  const tavrel::ButtonActionProc raise = [](tavrel::ToolButton, void *) { Kernel::RaiseError(7); };
  session().press(button(raise), tavrel::modifierControl);
  EXPECT_EQ(app.modifierKeys, 0U);
  EXPECT_THAT(testPlugin.reports, SizeIs(1));
}

} // namespace
} // namespace viewer
