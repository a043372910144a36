// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The list of hits beside the page.
#include "Steps.h"

namespace {

using namespace tavrel;
using test::height, test::pageOfLines, test::width;

struct StepsList : test::StepsOnLines {
  const host::PluginList *list() const { return document->lists.shown(); }
  host::ListText row(uint32_t number) const { return host::Lists::text(*list(), doc, number); }
};

TEST_F(StepsList, HasEveryHitWithItsLine) {
  show(hitsOn({0, 2}, {0, 4}));
  ASSERT_NE(list(), nullptr);
  EXPECT_EQ(list()->title, "Hits");
  EXPECT_EQ(list()->rows, 4U);
  EXPECT_EQ(row(0).page, 0);
  EXPECT_EQ(row(3).page, 2);
  EXPECT_EQ(row(3).text, "word");
}

TEST_F(StepsList, ShowsWhatIsNearTheHitInALongLine) {
  const std::string numbers = "one two three four five six seven eight nine ten";
  const test::PdfPage wide{.texts = {{20, 100, numbers + " " + numbers}}, .width = 800};
  openInWindow(document::openedHere(scratch.pdf({wide}), ""), width, height);
  HLL *hits = TavrelGLT::GLT_NewHLL(nullptr);
  for (const uint16_t pos : {uint16_t{4}, uint16_t{34}, uint16_t{94}})
    TavrelGLT::HLL_AddHL(hits, 0, pos, 3);
  show(hits);
  EXPECT_EQ(row(0).text, numbers + " " + numbers);
  EXPECT_EQ(row(1).text, "\u2026five six seven eight nine ten " + numbers);
  EXPECT_EQ(row(2).text, "\u2026six seven eight nine ten") << "more before, as less follows";
}

// The part of a row's text that is emphasised.
std::string marked(const host::ListText &row) { return row.text.substr(row.markStart, row.markLength); }

TEST_F(StepsList, EmphasisesTheWordsOfTheHit) {
  const test::PdfPage wide{.texts = {{20, 100, "one two three four five six seven eight nine ten"}, {20, 60, "eleven"}},
                           .width = 400};
  openInWindow(document::openedHere(scratch.pdf({wide}), ""), width, height);
  HLL *hits = TavrelGLT::GLT_NewHLL(nullptr);
  constexpr TextRange ranges[] = {{0, 3}, {4, 9}, {9, 3}, {34, 5}, {45, 8}, {49, 6}};
  for (const TextRange &range : ranges)
    TavrelGLT::HLL_AddHL(hits, 0, range.pos, range.len);
  show(hits);
  const std::string expected[] = {"one", "two three", "three", "eight", "ten", "eleven"};
  for (uint32_t i = 0; i < std::size(expected); ++i)
    EXPECT_EQ(marked(row(i)), expected[i]);
}

TEST_F(StepsList, EmphasisesTheWordBeforeASpaceAtTheEndOfTheHit) {
  const test::PdfPage wide{.texts = {{20, 100, "one two three"}, {20, 60, "four"}}, .width = 400};
  openInWindow(document::openedHere(scratch.pdf({wide}), ""), width, height);
  HLL *hits = TavrelGLT::GLT_NewHLL(nullptr);
  constexpr TextRange ranges[] = {{0, 4}, {2, 65535}, {4, 4}, {5, 4}};
  for (const TextRange &range : ranges)
    TavrelGLT::HLL_AddHL(hits, 0, range.pos, range.len);
  show(hits);
  const std::string expected[] = {"one", "one two three", "two", "two three"};
  for (uint32_t i = 0; i < std::size(expected); ++i)
    EXPECT_EQ(marked(row(i)), expected[i]) << i;
}

TEST_F(StepsList, ChangesNotHowManyHitsAreBeyondTheText) {
  show(hitsOn({0}, {0}));
  HLL *beyond = TavrelGLT::GLT_GetHLL(doc);
  TavrelGLT::HLL_AddHL(beyond, 0, 5, 65530);
  ASSERT_EQ(draw().offPage, 0U);
  row(1);
  EXPECT_EQ(draw().offPage, 0U);
}

TEST_F(StepsList, FollowsTheCurrentHit) {
  show(hitsOn({0, 2}, {0, 4}));
  EXPECT_EQ(list()->current, 0U);
  step(1);
  EXPECT_EQ(list()->current, 1U);
  document->view->showPage(2);
  draw();
  EXPECT_EQ(list()->current, 2U);
  document->view->showPage(1);
  draw();
  EXPECT_EQ(list()->current, std::nullopt);
}

TEST_F(StepsList, GoesToARowThatIsChosen) {
  show(hitsOn({0, 2}, {0, 4, 8}));
  host::Lists::choose(*list(), doc, 5);
  EXPECT_EQ(app.statusText(), "hit 6 of 6, page 2 of 2: the last hit");
  EXPECT_TRUE(isVisible(2, 8));
  EXPECT_EQ(list()->current, 5U);
  host::Lists::choose(*list(), doc, 1);
  EXPECT_TRUE(isVisible(0, 4));
  EXPECT_EQ(step(1), "hit 3 of 6, page 1 of 2");
}

TEST_F(StepsList, IsSetAgainOnlyForOtherHits) {
  show(hitsOn({0, 2}, {0, 4}));
  const uint64_t number = list()->number;
  step(1);
  step(1);
  EXPECT_EQ(list()->number, number);
  TavrelGLT::HLL_AddHL(TavrelGLT::GLT_GetHLL(doc), 3, 0, 4);
  draw();
  EXPECT_EQ(list()->rows, 5U);
  TavrelGLT::GLT_UnregisterHLL(doc, TavrelGLT::GLT_GetHLL(doc));
  draw();
  EXPECT_EQ(list(), nullptr);
}

TEST_F(StepsList, HasNoteOfAPageThatCannotBeRead) {
  test::PdfPage damaged = pageOfLines();
  damaged.cropBox = "10 10 10 10";
  openInWindow(document::openedHere(scratch.pdf({pageOfLines(), damaged}), ""), width, height);
  show(hitsOn({0, 1}, {0}));
  EXPECT_EQ(row(1).text, "(this page cannot be read)");
  EXPECT_EQ(row(7).text, "");
  EXPECT_EQ(reports, std::vector<std::string>{});
}

TEST_F(StepsList, IsNoneInAViewWithoutAWindow) {
  open();
  show(hitsOn({0}, {0}));
  EXPECT_EQ(list(), nullptr);
}

} // namespace
