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
    for (; session().screen.needsDrawing() && drawings < 10; ++drawings)
      EXPECT_TRUE(session().screen.draw());
    return drawings;
  }

  // Changes a page's words in the document, so that keepsWords() detects whether they were extracted again.
  void marksWords(int32_t page) {
    const_cast<host::PageText &>(session().documents.front()->model->pageText(page)).words.clear();
  }
  bool keepsWords(int32_t page) { return session().documents.front()->model->pageText(page).words.empty(); }
  void visit(int32_t first, int32_t last) {
    for (int32_t page = first; page <= last; ++page) {
      session().moving.goToPage(page);
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
  EXPECT_EQ(session().status.message(), "Page 1: 1 hit is outside of the page and not marked");
  session().documents.view()->showPage(1);
  ASSERT_TRUE(draws());
  EXPECT_EQ(drawing().marks, 1U);
  EXPECT_EQ(session().status.message(), "");
}

// ---- waiting for pages ----

TEST_F(DrawingTest, AnAwaitedPageHasAnOutline) {
  openPages({test::slowPage()});
  EXPECT_TRUE(session().screen.draw());
  EXPECT_TRUE(session().screen.shown().document);
  EXPECT_FALSE(session().screen.shown().drawing);
  EXPECT_EQ(session().screen.shown().pageWidth, 400);
  EXPECT_EQ(session().screen.shown().pageHeight, 600);
}

TEST_F(DrawingTest, TheOutlineIsDrawnOnce) {
  openPages({test::slowPage()});
  EXPECT_TRUE(session().screen.draw());
  EXPECT_FALSE(session().screen.draw());
  EXPECT_TRUE(session().documents.view()->invalid());
}

TEST_F(DrawingTest, ThePageIsWaitedForUntilItIsRendered) {
  openPages({test::slowPage()});
  EXPECT_FALSE(session().screen.waitingSince());
  session().screen.draw();
  const auto since = session().screen.waitingSince();
  EXPECT_TRUE(since);
  session().screen.draw();
  EXPECT_EQ(session().screen.waitingSince(), since);
  ASSERT_TRUE(draws());
  EXPECT_FALSE(session().screen.waitingSince());
}

// Fitted to 302 pixels the page is 201.3 pixels wide, and 202 to 303: either way its image has 202 columns.
TEST_F(DrawingTest, AnAwaitedPageIsAskedForAgainWhenOnlyItsResolutionChanges) {
  openPages({test::slowPage()});
  session().moving.setFit(viewer::Fit::page);
  session().moving.setWindow(width, 302, 0);
  ASSERT_TRUE(session().screen.draw());
  const int columns = session().screen.shown().pageWidth;
  session().moving.setWindow(width, 303, 0);
  ASSERT_EQ(session().documents.window()->pageWidth(), columns);
  ASSERT_TRUE(draws());
  EXPECT_EQ(drawing().dpi, session().documents.window()->dpi());
}

TEST_F(DrawingTest, NothingIsWaitedForWhenTheDocumentIsClosed) {
  openPages({test::slowPage()});
  session().screen.draw();
  session().documents.closeFront();
  session().screen.draw();
  EXPECT_FALSE(session().screen.waitingSince());
}

TEST_F(DrawingTest, ThePageThatArrivesIsDrawnOnce) {
  openPages(test::numberedPages(1));
  ASSERT_TRUE(draws());
  EXPECT_EQ(drawing().image.width, width);
  EXPECT_EQ(drawing().image.height, height);
  EXPECT_FALSE(session().screen.draw());
}

TEST_F(DrawingTest, TheNeighboursAreRenderedToo) {
  openPages(test::numberedPages(5));
  session().moving.goToPage(2);
  ASSERT_TRUE(draws());
  ASSERT_TRUE(until([&] { return session().tiles.cache().size() == 3; }));
  session().moving.turn(1);
  EXPECT_TRUE(session().screen.draw());
  EXPECT_TRUE(session().screen.shown().drawing);
}

TEST_F(DrawingTest, NeighboursThatDoNotFitAreNotRendered) {
  openPages(std::vector<test::PdfPage>(3, {.width = 3000, .height = 3000}));
  session().moving.setWindow(3000, 3000, 0); // 34 MiB each
  session().moving.goToPage(1);
  ASSERT_TRUE(draws());
  session().moving.turn(1);
  ASSERT_TRUE(draws());
  EXPECT_EQ(session().tiles.cache().size(), 1U);
  EXPECT_LE(session().tiles.cache().bytes(), session().tiles.cache().bound());
}

TEST_F(DrawingTest, ANeighbourOfAnotherWidthIsRenderedAsItWillBeShown) {
  openPages({test::pageWith("first"), {.width = 300, .height = 500}});
  ASSERT_TRUE(draws());
  ASSERT_TRUE(until([&] { return session().tiles.cache().size() == 2; }));
  session().moving.turn(1);
  EXPECT_TRUE(session().screen.draw());
  EXPECT_TRUE(session().screen.shown().drawing);
  EXPECT_EQ(session().screen.shown().pageWidth, width);
}

TEST_F(DrawingTest, ARotatedPageIsAsWideAsTheWindow) {
  test::PdfPage page = test::pageWith("sideways");
  page.rotate = 90;
  openPages({page});
  ASSERT_TRUE(draws());
  EXPECT_EQ(session().screen.shown().pageWidth, 400);
  EXPECT_EQ(session().screen.shown().pageHeight, 267);
}

// ---- pages that cannot be drawn ----

TEST_F(DrawingTest, ALongPageIsDrawnAsLargeAsItCanBe) {
  openPages({{.width = 600, .height = 14400}}); // a web page on one sheet
  session().moving.setWindow(900, 900, 0);
  ASSERT_TRUE(draws());
  EXPECT_THAT(session().tiles.error(), IsEmpty());
  const viewer::Shown &shown = session().screen.shown();
  const double pixels = 1.0 * shown.pageWidth * shown.pageHeight;
  EXPECT_LT(shown.pageWidth, 900) << "as wide as the window it would be too large";
  EXPECT_LE(pixels, viewer::PageWindow::largestImage);
  EXPECT_GT(pixels, 0.99 * viewer::PageWindow::largestImage);
  EXPECT_NEAR(1.0 * shown.pageHeight / shown.pageWidth, 14400.0 / 600, 0.05);
}

TEST_F(DrawingTest, ADamagedPageIsWhiteAndReported) {
  open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(2), 2)));
  session().moving.goToPage(2);
  ASSERT_TRUE(draws());
  EXPECT_THAT(session().status.message(), HasSubstr("page 3 is damaged"));
  EXPECT_THAT(session().tiles.error(), HasSubstr("page 3 is damaged"));
  EXPECT_EQ(pixel(20, 20), white);
}

TEST_F(DrawingTest, ADamagedPageIsReportedOnce) {
  open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(2), 1)));
  testing::internal::CaptureStderr();
  for (const int32_t page : {2, 1, 2}) {
    session().moving.goToPage(page);
    ASSERT_TRUE(draws());
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tavrel: " + session().documents.front()->file.string() + ": page 3 is damaged\n");
}

TEST_F(DrawingTest, ADamagedPageIsPrintedOnceAtAllSizes) {
  open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(1), 1)));
  session().moving.goToPage(1);
  testing::internal::CaptureStderr();
  int reports = 0;
  session().status.listener = [&](const std::string &) { ++reports; };
  for (int sizes = 0; sizes < 3; ++sizes) {
    session().moving.zoomBy(1);
    ASSERT_TRUE(draws());
  }
  EXPECT_GT(reports, 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tavrel: " + session().documents.front()->file.string() + ": page 2 is damaged\n");
}

TEST_F(DrawingTest, ThePagesAroundADamagedOneHaveNoError) {
  open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(2), 1)));
  session().moving.goToPage(2);
  ASSERT_TRUE(draws());
  session().moving.turn(-1);
  ASSERT_TRUE(draws());
  EXPECT_THAT(session().tiles.error(), IsEmpty());
}

TEST_F(DrawingTest, AReaderScrollsOnToADamagedPageAndBack) {
  open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(1), 1)));
  session().moving.scroll(0, 5000);
  session().moving.scroll(0, 10);
  ASSERT_TRUE(draws());
  EXPECT_EQ(session().documents.page(), 1);
  session().moving.scroll(0, -10);
  ASSERT_TRUE(draws());
  EXPECT_EQ(session().documents.page(), 0);
}

TEST_F(DrawingTest, ADamagedPageIsZoomedAndFittedLikeOthers) {
  open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(1), 1)));
  const Slider slider = session().moving.slider();
  session().moving.setSlider(slider.range / 4 * 3, slider.size);
  session().moving.setWindow(500, 500, 0);
  ASSERT_TRUE(draws());
  const int wide = session().screen.shown().pageWidth, high = session().screen.shown().pageHeight;
  EXPECT_EQ(wide, 500);
  session().moving.setFit(viewer::Fit::page);
  ASSERT_TRUE(draws());
  const int fittedWide = session().screen.shown().pageWidth, fittedHigh = session().screen.shown().pageHeight;
  EXPECT_EQ(fittedHigh, 500);
  EXPECT_NEAR(1.0 * fittedWide / fittedHigh, 1.0 * wide / high, 0.01);
  session().moving.zoomBy(1);
  ASSERT_TRUE(draws());
  EXPECT_GT(session().screen.shown().pageWidth, fittedWide);
  EXPECT_GT(session().screen.shown().pageHeight, fittedHigh);
}

TEST_F(DrawingTest, ReloadingMayLeadToAPageThatIsDamagedNow) {
  openPages(test::numberedPages(3));
  session().moving.goToPage(2);
  folder.write("paper.pdf", test::withDamagedPages(test::numberedPages(1), 2));
  session().opener.reload();
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  ASSERT_TRUE(draws());
  EXPECT_THAT(session().tiles.error(), HasSubstr("page 3 is damaged"));
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
  session().documents.bringToFront(0);
  visit(6, 15);
  EXPECT_FALSE(keepsWords(0));
}

TEST_F(DrawingTest, SelectionsOutliveTheWordsTheyWereMadeOf) {
  openPages(test::numberedPages(10));
  const tavrel::TextRange range{0, 4};
  const host::Selection *selection = session().documents.front()->model->selectCharacters(0, {&range, 1});
  const double left = selection->bounds.left;
  visit(0, 9);
  EXPECT_EQ(session().documents.front()->model->selectCharacters(0, {&range, 1}), selection);
  EXPECT_EQ(selection->bounds.left, left);
}

TEST_F(DrawingTest, WordsThatAPluginHoldsOutliveTheDocumentsOwn) {
  openPages(test::numberedPages(10));
  const tavrel::ModelDoc model = host::modelDocs().handle(session().documents.front()->model.get());
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
  app.press(button([](tavrel::ToolButton, void *) {
              s_session->documents.view()->invalidate();
              s_drew = s_session->screen.draw();
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
    s_drew |= s_session->screen.draw();
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
  EXPECT_EQ(session().screen.shown().page, 1);
}

TEST_F(DrawingTest, APluginThatScrollsWhileItDrawsIsFollowedWithoutAnotherEvent) {
  openPages(test::numberedPages(1));
  ASSERT_TRUE(draws());
  drawsWith([](tavrel::PageView view, void *) { TavrelView::PageViewScrollToPoint(view, 0, 120); });
  session().documents.view()->invalidate();
  EXPECT_EQ(drawsUntilNothingIsToBeDrawn(), 2);
  EXPECT_EQ(session().screen.shown().scrollY, 120);
}

TEST_F(DrawingTest, AnImageIsShownWhereItWasDrawnThoughAPluginScrollsMeanwhile) {
  openPages(test::numberedPages(1));
  ASSERT_TRUE(draws());
  drawsWith([](tavrel::PageView view, void *) { TavrelView::PageViewScrollToPoint(view, 0, 120); });
  session().documents.view()->invalidate();
  ASSERT_TRUE(session().screen.draw());
  EXPECT_EQ(drawing().y, 0);
  EXPECT_EQ(session().screen.shown().scrollY, 0);
}

TEST_F(DrawingTest, AnImageIsOfThePageDrawnThoughAPluginTurnsMeanwhile) {
  openPages({test::pageWith("first"), {.width = 400, .height = 500}});
  ASSERT_TRUE(draws());
  drawsWith([](tavrel::PageView view, void *) { TavrelView::PageViewShowPage(view, 1); });
  session().documents.view()->invalidate();
  ASSERT_TRUE(session().screen.draw());
  EXPECT_EQ(session().screen.shown().page, 0);
  EXPECT_EQ(session().screen.shown().pageHeight, 600);
  EXPECT_TRUE(session().screen.needsDrawing());
}

TEST_F(DrawingTest, AnAwaitedPageNeedsNoDrawingUntilItIsRendered) {
  openPages({test::slowPage()});
  EXPECT_TRUE(session().screen.needsDrawing());
  session().screen.draw();
  EXPECT_FALSE(session().screen.needsDrawing());
  ASSERT_TRUE(until([&] { return session().screen.needsDrawing(); }));
  EXPECT_TRUE(session().screen.draw());
  EXPECT_TRUE(session().screen.shown().drawing);
}

TEST_F(DrawingTest, NothingNeedsDrawingWhileAPluginIsCalled) {
  openPages(test::numberedPages(1));
  app.press(button([](tavrel::ToolButton, void *) {
              s_session->documents.view()->invalidate();
              s_drew = s_session->screen.needsDrawing();
              ++s_presses;
            }),
            0);
  EXPECT_EQ(s_presses, 1);
  EXPECT_FALSE(s_drew);
  EXPECT_TRUE(session().screen.needsDrawing());
}

// ---- buttons ----

TEST_F(DrawingTest, ModifiersAreHeldDuringThePress) {
  const tavrel::ButtonActionProc look = [](tavrel::ToolButton, void *) {
    s_modifiers.push_back(TavrelView::GetModifierKeyState());
  };
  EXPECT_TRUE(app.press(button(look), tavrel::modifierShift));
  EXPECT_THAT(s_modifiers, testing::ElementsAre(tavrel::modifierShift));
  EXPECT_EQ(app.modifierKeys, 0U);
}

TEST_F(DrawingTest, AGreyedButtonIsNotPressed) {
  host::ToolButton &greyed = button([](tavrel::ToolButton, void *) { ++s_presses; });
  s_enabled = 0;
  EXPECT_FALSE(app.press(greyed, 0));
  EXPECT_EQ(s_presses, 0);
  EXPECT_FALSE(greyed.enabled);
}

TEST_F(DrawingTest, AButtonIsAskedBeforeItIsPressed) {
  s_enabled = 0;
  host::ToolButton &pressed = button([](tavrel::ToolButton, void *) { ++s_presses; });
  app.toolBar()->updateStates();
  s_enabled = 1;
  EXPECT_TRUE(app.press(pressed, 0));
  EXPECT_EQ(s_presses, 1);
}

TEST_F(DrawingTest, AfterAPressTheButtonsAreAskedAgain) {
  host::ToolButton &once = button([](tavrel::ToolButton, void *) { s_enabled = 0; });
  EXPECT_TRUE(app.press(once, 0));
  EXPECT_FALSE(once.enabled);
}

TEST_F(DrawingTest, AButtonThatRaisesReleasesTheModifiers) {
  const tavrel::ButtonActionProc raise = [](tavrel::ToolButton, void *) { Kernel::RaiseError(7); };
  app.press(button(raise), tavrel::modifierControl);
  EXPECT_EQ(app.modifierKeys, 0U);
  EXPECT_THAT(testPlugin.reports, SizeIs(1));
}

} // namespace
} // namespace viewer
