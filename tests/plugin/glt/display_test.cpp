// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Mapping a record to a text selection, and showing it: turning, scrolling, painting, redrawing.
#include <gtest/gtest.h>

#include <algorithm>

#include "plugin/glt/glt.h"
#include "tests/host/Faults.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"
#include "tests/plugin/glt/positions.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

using Ranges = std::vector<std::pair<uint16_t, uint16_t>>;

/// The ranges of the last selection that the host made.
Ranges rangesOf(const RecordingHost &host) {
  Ranges ranges;
  for (const TextRange &range : host.ranges)
    ranges.emplace_back(range.pos, range.len);
  return ranges;
}

/// A document with highlights on pages 4 (three) and 9 (one), and its record.
class Display : public testing::Test {
protected:
  Display() {
    registerPages(host, {{4, 10, 1}, {4, 20, 2}, {4, 30, 3}, {9, 40, 4}});
    record = recordOf(host.doc);
  }
  void show(Bool16 scroll) { GLTShowHighlights(host.doc, record, scroll); }

  RecordingHost host;
  GLTRecord *record;
};

// Mapping

TEST_F(Display, MappingTurnsToThePageAndSelects) {
  EXPECT_EQ(GLTMapHLLToViewer(host.doc, record), host.selection);
  EXPECT_EQ(host.story(), R"(
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewShowPage(view, 4)
TavrelView.DocGetModelDoc(doc)
DocModel.DocOpenPage(modelDoc, 4)
DocModel.SelectionFromCharRanges(page4, *, 3)
Kernel.PopExceptionFrame()
DocModel.PageClose(page4)
)");
}

struct Mapped : Row {
  int32_t viewMode;
  Position position;
  Ranges ranges; ///< handed to the host
};
class Mapping : public testing::TestWithParam<Mapped> {};

TEST_P(Mapping, TakesTheEntriesOfTheViewMode) {
  RecordingHost host;
  registerPages(host, {{4, 10, 1}, {4, 20, 2}, {4, 30, 3}, {9, 40, 4}});
  setPosition(host.doc, GetParam().position);
  GLT_SetViewMode(host.doc, GetParam().viewMode);
  const TextSelection expected = GetParam().ranges.empty() ? nullptr : host.selection;
  EXPECT_EQ(GLTMapHLLToViewer(host.doc, recordOf(host.doc)), expected);
  EXPECT_EQ(rangesOf(host), GetParam().ranges);
  EXPECT_EQ(host.count("SelectionFromCharRanges"), 1U);
}

INSTANTIATE_TEST_SUITE_P(Display, Mapping,
                         testing::ValuesIn<Mapped>({
                             {{"All"}, 0, {0, 0}, {{10, 1}, {20, 2}, {30, 3}}},
                             {{"AllWhateverTheWord"}, 0, {0, 2}, {{10, 1}, {20, 2}, {30, 3}}},
                             {{"AllOfTheSecondPage"}, 0, {1, 0}, {{40, 4}}},
                             {{"OneIsTheFirst"}, 1, {0, 0}, {{10, 1}}},
                             {{"OneIsTheFirstWhateverTheWord"}, 1, {0, 2}, {{10, 1}}},
                             {{"None"}, 2, {0, 0}, {}},
                             {{"OtherModeIsNone"}, 3, {0, 0}, {}},
                             {{"NegativeModeIsNone"}, -1, {0, 0}, {}},
                         }),
                         rowName<Mapped>);

struct Unit : Row {
  int32_t offsetUnits;
  int16_t version;
  const char *call;
};
class OffsetUnits : public testing::TestWithParam<Unit> {};

TEST_P(OffsetUnits, DecideTheSelection) {
  RecordingHost host;
  const ListOwner list({{4, 10, 1}, {4, 20, 2}});
  GLT_RegisterHLLCommon(host.doc, list, GetParam().offsetUnits, nullptr, nullptr, 0, nullptr, GetParam().version);
  EXPECT_EQ(std::count(host.trace.begin(), host.trace.end(), GetParam().call), 1);
  EXPECT_EQ(host.count("SelectionFromCharRanges") + host.count("SelectionFromWordRanges"), 1U);
}

INSTANTIATE_TEST_SUITE_P(Display, OffsetUnits,
                         testing::ValuesIn<Unit>({
                             {{"Characters"}, 1, 2, "DocModel.SelectionFromCharRanges(page4, *, 2)"},
                             {{"Words"}, 0, 2, "DocModel.SelectionFromWordRanges(page4, *, 2, 2)"},
                             {{"WordsOfAnotherVersion"}, 0, 1, "DocModel.SelectionFromWordRanges(page4, *, 2, 1)"},
                             {{"NegativeVersion"}, 0, -1, "DocModel.SelectionFromWordRanges(page4, *, 2, -1)"},
                             {{"AnyOtherUnit"}, 2, 2, "DocModel.SelectionFromWordRanges(page4, *, 2, 2)"},
                             {{"NegativeUnit"}, -1, 2, "DocModel.SelectionFromWordRanges(page4, *, 2, 2)"},
                         }),
                         rowName<Unit>);

TEST(DisplayOfOne, MapsNoEntryOfAPageWithoutEntries) {
  RecordingHost host;
  registerRecords(host, {{4, 0}}, nullptr);
  GLT_SetViewMode(host.doc, GLT_VIEW_ONE);
  int32_t mapped = -1;
  host.answer(DocModel::SelectionFromCharRanges, std::function([&](Page, const TextRange *first, int32_t count) {
                EXPECT_EQ(first, nullptr);
                mapped = count;
                return TextSelection{nullptr};
              }));
  GLTMapHLLToViewer(host.doc, recordOf(host.doc));
  EXPECT_EQ(mapped, 0);
}

TEST_F(Display, MappingIsNullWhenARaiseWithoutACodeCameBeforeThePage) {
  host.raiseIn("PageViewShowPage", errNone);
  EXPECT_EQ(GLTMapHLLToViewer(host.doc, record), nullptr);
  EXPECT_EQ(host.count("PageClose"), 0U);
}

TEST_F(Display, ModeOfNoneTurnsNowhereWithoutACurrentPage) {
  record->viewMode = GLT_VIEW_NONE;
  record->curPage = 99;
  GLTShowHighlights(host.doc, record, 1);
  EXPECT_EQ(host.count("PageViewShowPage"), 0U);
  EXPECT_EQ(host.brackets, 0);
}

TEST_F(Display, MappingHandsTheEntriesOverAsTheyAreStored) {
  const void *handed = nullptr;
  host.answer(DocModel::SelectionFromCharRanges, std::function([&](Page, const TextRange *first, int32_t) {
                handed = first;
                return host.selection;
              }));
  GLTMapHLLToViewer(host.doc, record);
  EXPECT_EQ(handed, record->hll->pages[0].words);
}

TEST_F(Display, MappingWithoutAPageViewStillSelects) {
  host.view = nullptr;
  EXPECT_EQ(GLTMapHLLToViewer(host.doc, record), host.selection);
  EXPECT_EQ(host.count("PageViewShowPage"), 0U);
}

TEST_F(Display, MappingReturnsThePageObjectAlsoWithoutASelection) {
  host.selection = nullptr;
  EXPECT_EQ(GLTMapHLLToViewer(host.doc, record), nullptr);
  EXPECT_EQ(host.openPages.size(), 0U);
}

TEST_F(Display, MappingOfAnIndexBeyondTheListIsNullWithoutAHostCall) {
  for (const uint32_t page : {2U, UINT32_MAX}) {
    record->curPage = page;
    EXPECT_EQ(GLTMapHLLToViewer(host.doc, record), nullptr);
  }
  EXPECT_EQ(host.frames(), 0U);
  EXPECT_EQ(host.count("PageViewShowPage") + host.count("DocOpenPage"), 0U);
}

TEST_F(Display, MappingOfANullOrEmptyListIsNull) {
  const ListOwner empty({});
  for (HLL *list : {static_cast<HLL *>(nullptr), empty.list()}) {
    GLTRecord other = *record;
    other.hll = list;
    EXPECT_EQ(GLTMapHLLToViewer(host.doc, &other), nullptr);
  }
  EXPECT_EQ(host.count("PageViewShowPage") + host.count("DocOpenPage"), 0U);
}

TEST_F(Display, MappingThatFailsIsNullAndLeavesThePageOpen) {
  host.raiseIn("SelectionFromCharRanges", errBadArgument);
  EXPECT_EQ(GLTMapHLLToViewer(host.doc, record), nullptr);
  EXPECT_EQ(host.openPages.size(), 1U);
  EXPECT_EQ(host.frames(), 0U);
  EXPECT_EQ(host.trace[host.trace.size() - 2], "Kernel.PopExceptionFrame()");
  EXPECT_EQ(host.trace.back(), "Kernel.GetExceptionCode()");
}

TEST_F(Display, MappingThatFailsWithCodeZeroReturnsThePage) {
  host.raiseIn("SelectionFromCharRanges", errNone);
  EXPECT_EQ(GLTMapHLLToViewer(host.doc, record), nullptr);
  EXPECT_EQ(host.openPages.size(), 0U);
  EXPECT_EQ(host.trace.back(), "DocModel.PageClose(page4)");
}

TEST_F(Display, FailureToReturnThePageIsNotCaughtByMapping) {
  host.raiseIn("PageClose");
  EXPECT_FALSE(host.run([this] { GLTMapHLLToViewer(host.doc, record); }));
}

TEST(DisplayFailures, MappingYieldsNullOnARaiseOfAnyCall) {
  TextSelection mapped = nullptr;
  const auto prepare = [&mapped](RecordingHost &host) {
    registerPages(host, {{4, 10, 1}});
    host.reliable = {"AtomFromString", "PageClose"};
    mapped = host.selection;
  };
  const auto map = [&mapped](RecordingHost &host) { mapped = GLTMapHLLToViewer(host.doc, recordOf(host.doc)); };
  const auto check = [&mapped](RecordingHost &, const std::string &) { EXPECT_EQ(mapped, nullptr); };
  EXPECT_EQ(raiseAtEveryCall({prepare, map, check, true}), 5U);
}

// Showing

TEST_F(Display, ShowingWithScrollScrollsAndPaintsNothing) {
  show(1);
  EXPECT_EQ(host.story(), R"(
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewBeginBatch(view)
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewShowPage(view, 4)
TavrelView.DocGetModelDoc(doc)
DocModel.DocOpenPage(modelDoc, 4)
DocModel.SelectionFromCharRanges(page4, *, 3)
Kernel.PopExceptionFrame()
DocModel.PageClose(page4)
TavrelView.PageViewBeginBatch(view)
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
DocModel.SelectionPageNumber(selection)
TavrelView.PageViewShowPage(view, 4)
TavrelView.PageViewGetVisibleRect(view, *)
DocModel.SelectionBounds(selection, *)
TavrelView.PageViewGetPageTransform(view, *)
TavrelSupport.TransformFixedRect(*, *, *)
TavrelView.PageViewScrollToPoint(view, -150, 310)
Kernel.PopExceptionFrame()
TavrelView.PageViewEndBatch(view)
TavrelView.PageViewEndBatch(view)
Kernel.PopExceptionFrame()
)");
}

TEST_F(Display, PaintingRestoresTheDrawingColour) {
  host.drawColor = {3, {5, fixedOne, 6, 7}};
  record->color = {1, {0, 0, fixedOne, 0}};
  std::vector<Fixed> paintedIn;
  host.answer(TavrelView::PageViewPaintSelection, std::function([&](PageView, TextSelection) {
                paintedIn.assign(std::begin(host.drawColor.component), std::end(host.drawColor.component));
              }));
  show(0);
  EXPECT_EQ(paintedIn, (std::vector<Fixed>{0, 0, fixedOne, 0}));
  EXPECT_EQ(host.drawColor.space, 3);
  EXPECT_EQ(std::vector<Fixed>(std::begin(host.drawColor.component), std::end(host.drawColor.component)),
            (std::vector<Fixed>{5, fixedOne, 6, 7}));
  EXPECT_EQ(host.count("PageViewScrollToPoint"), 0U);
}

TEST_F(Display, AnyFlagButZeroScrolls) {
  show(0x8000);
  EXPECT_EQ(host.count("PageViewScrollToPoint"), 1U);
  EXPECT_EQ(host.count("PageViewPaintSelection"), 0U);
}

TEST_F(Display, OneHighlightIsTheFirstOfThePage) {
  record->viewMode = GLT_VIEW_ONE;
  record->curWord = 2;
  show(0);
  EXPECT_EQ(rangesOf(host), (Ranges{{10, 1}}));
  EXPECT_EQ(host.count("PageViewPaintSelection"), 1U);
}

TEST_F(Display, ViewModeNoneOnlyTurnsToThePage) {
  record->viewMode = GLT_VIEW_NONE;
  record->curPage = 1;
  for (const Bool16 scroll : {0, 1}) {
    host.clear();
    show(scroll);
    EXPECT_EQ(host.story(), R"(
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewBeginBatch(view)
TavrelView.PageViewShowPage(view, 9)
TavrelView.PageViewEndBatch(view)
Kernel.PopExceptionFrame()
)");
  }
}

TEST_F(Display, WithoutARecordRedrawsTheCompleteView) {
  GLTShowHighlights(host.doc, nullptr, 1);
  EXPECT_EQ(host.story(), R"(
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewBeginBatch(view)
TavrelView.PageViewRefreshArea(view, null)
TavrelView.PageViewEndBatch(view)
Kernel.PopExceptionFrame()
)");
}

TEST_F(Display, WithoutAPageViewOnlyTheBracketIsLeft) {
  host.view = nullptr;
  for (GLTRecord *shown : {record, static_cast<GLTRecord *>(nullptr)}) {
    host.clear();
    GLTShowHighlights(host.doc, shown, 0);
    EXPECT_EQ(host.story(), R"(
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewBeginBatch(null)
TavrelView.PageViewEndBatch(null)
Kernel.PopExceptionFrame()
)");
  }
}

TEST_F(Display, WithoutASelectionNothingIsPaintedOrScrolled) {
  host.selection = nullptr;
  show(0);
  show(1);
  EXPECT_EQ(host.count("PageViewPaintSelection") + host.count("PageViewFetchDrawColor") +
                host.count("SelectionPageNumber"),
            0U);
  EXPECT_EQ(host.brackets, 0);
}

class EmptyListInMode : public testing::TestWithParam<int32_t> {};

TEST_P(EmptyListInMode, ShowsPageZeroAndMapsNothing) {
  RecordingHost host;
  registerPages(host, {});
  GLT_SetViewMode(host.doc, GetParam());
  for (const Bool16 scroll : {0, 1}) {
    host.clear();
    GLTShowHighlights(host.doc, recordOf(host.doc), scroll);
    EXPECT_EQ(host.story(), R"(
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewBeginBatch(view)
TavrelView.PageViewShowPage(view, 0)
TavrelView.PageViewEndBatch(view)
Kernel.PopExceptionFrame()
)");
  }
}

INSTANTIATE_TEST_SUITE_P(Display, EmptyListInMode, testing::Values(0, 1, 2));

// Showing, with failures

TEST_F(Display, FailureLeavesTheBracketOpen) {
  host.raiseIn("PageViewPaintSelection");
  show(0);
  EXPECT_EQ(host.brackets, 1);
  EXPECT_EQ(host.frames(), 0U);
  EXPECT_EQ(host.trace.back(), "Kernel.PopExceptionFrame()");
}

TEST_F(Display, FailureOfTheMappingAloneClosesTheBracket) {
  host.raiseIn("SelectionFromCharRanges");
  show(0);
  EXPECT_EQ(host.brackets, 0);
  EXPECT_EQ(host.count("PageViewPaintSelection"), 0U);
}

TEST_F(Display, FailureOfTheScrollingAloneClosesBothBrackets) {
  host.raiseIn("SelectionBounds");
  show(1);
  EXPECT_EQ(host.brackets, 0);
  EXPECT_EQ(host.count("PageViewEndBatch"), 2U);
}

TEST(DisplayFailures, ShowingHandlesARaiseOfAnyCall) {
  const auto prepare = [](RecordingHost &host) {
    registerPages(host, {{4, 10, 1}});
    host.reliable = {"AtomFromString"};
  };
  for (const Bool16 scroll : {0, 1}) {
    bool returned = true;
    const auto show = [&](RecordingHost &host) {
      returned = false;
      GLTShowHighlights(host.doc, recordOf(host.doc), scroll);
      returned = true;
    };
    const auto check = [&](RecordingHost &, const std::string &) { EXPECT_TRUE(returned); };
    EXPECT_EQ(raiseAtEveryCall({prepare, show, check, true, false, true}), scroll == 0 ? 13U : 18U);
  }
}

} // namespace
