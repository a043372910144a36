// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The document notifications, and the complete sequences of host calls for a document's close and a page's drawing.
#include <gtest/gtest.h>

#include "plugin/glt/glt.h"
#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tests/host/Faults.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"
#include "tests/plugin/glt/positions.h"
#include "tests/support/FailingMemory.h"

using namespace tavrel;

namespace {

TEST(Notifications, AreRegisteredWithoutClientData) {
  const RecordingHost host;
  gExtensionID = 77;
  miPIRegisterForNotifications();
  EXPECT_EQ(host.story(), R"(
Kernel.CreateCallback(77, miPIDocDidOpen)
TavrelView.RegisterNotification(4, 77, miPIDocDidOpen, null)
Kernel.CreateCallback(77, miPIDocDidClose)
TavrelView.RegisterNotification(8, 77, miPIDocDidClose, null)
Kernel.CreateCallback(77, miPIPageViewDraw)
TavrelView.RegisterPageDrawProc(miPIPageViewDraw, null)
)");
}

TEST(Notifications, OpeningADocumentHasNoEffect) {
  RecordingHost host;
  registerPages(host, {{2, 10, 3}});
  miPIDocDidOpen(host.doc, nullptr);
  miPIDocDidOpen(host.otherDoc, nullptr);
  EXPECT_EQ(host.story(), "\n");
}

TEST(Notifications, ClosingADocumentWithoutHighlightsUnregistersNothing) {
  RecordingHost host;
  miPIDocDidClose(host.doc, nullptr);
  EXPECT_EQ(host.story(), R"(
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
)");
}

int s_newProcCalls;
void countNewProc(Doc /*document*/, HLL * /*list*/, void * /*userData*/) { ++s_newProcCalls; }

TEST(Notifications, ClosingADocumentUnregistersItsListOnce) {
  RecordingHost host;
  s_newProcCalls = 0;
  const ListOwner list({{2, 10, 3}});
  GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, countNewProc, 0, nullptr);
  miPIDocDidClose(host.doc, nullptr);
  EXPECT_EQ(s_newProcCalls, 1);
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
  miPIDocDidClose(host.doc, nullptr);
  EXPECT_EQ(s_newProcCalls, 1);
}

TEST(Notifications, ClosingADocumentRedrawsItsView) {
  RecordingHost host;
  registerPages(host, {{2, 10, 3}});
  miPIDocDidClose(host.doc, nullptr);
  EXPECT_EQ(
      host.without({"AtomFromString"}),
      (std::vector<std::string>{"Kernel.PushExceptionFrame(*, RestorePlugInFrame)", "TavrelView.DocGetPageView(doc)",
                                "TavrelView.PageViewBeginBatch(view)", "TavrelView.PageViewRefreshArea(view, null)",
                                "TavrelView.PageViewEndBatch(view)", "Kernel.PopExceptionFrame()"}));
}

TEST(Notifications, ClosingADocumentLeavesTheOthersAlone) {
  RecordingHost host;
  registerPages(host, {{2, 10, 3}});
  const ListOwner other({{4, 1, 1}});
  GLT_RegisterHLL(host.otherDoc, other, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  miPIDocDidClose(host.doc, nullptr);
  EXPECT_EQ(highlightsOf(GLT_GetHLL(host.otherDoc)), (Highlights{{4, 1, 1}}));
}

TEST(PageDraw, WithoutADocumentAsksNothingMore) {
  RecordingHost host;
  host.answer(TavrelView::PageViewGetDoc, std::function([](PageView) { return Doc{nullptr}; }));
  miPIPageViewDraw(host.view, nullptr);
  EXPECT_EQ(host.story(), R"(
TavrelView.PageViewGetDoc(view)
)");
}

TEST(PageDraw, OfADocumentWithoutHighlightsDoesNothing) {
  RecordingHost host;
  miPIPageViewDraw(host.view, nullptr);
  EXPECT_EQ(host.story(), R"(
TavrelView.PageViewGetDoc(view)
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
)");
}

TEST(PageDraw, OfAPageWithoutHighlightsDoesNothing) {
  RecordingHost host;
  registerPages(host, {{2, 10, 3}, {5, 20, 3}});
  host.shownPage = 3;
  miPIPageViewDraw(host.view, nullptr);
  EXPECT_EQ(host.story(), R"(
TavrelView.PageViewGetDoc(view)
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
TavrelView.PageViewGetPageNum(view)
)");
}

TEST(PageDraw, OfAPageWithHighlightsPaintsThemInTheirColour) {
  RecordingHost host;
  registerPages(host, {{2, 10, 3}, {5, 20, 3}, {5, 40, 7}});
  host.shownPage = 5;
  miPIPageViewDraw(host.view, nullptr);
  EXPECT_EQ(host.story(), R"(
TavrelView.PageViewGetDoc(view)
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
TavrelView.PageViewGetPageNum(view)
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewBeginBatch(view)
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewShowPage(view, 5)
TavrelView.DocGetModelDoc(doc)
DocModel.DocOpenPage(modelDoc, 5)
DocModel.SelectionFromCharRanges(page5, *, 2)
Kernel.PopExceptionFrame()
DocModel.PageClose(page5)
TavrelView.PageViewFetchDrawColor(view, *)
TavrelView.PageViewApplyDrawColor(view, color 1 1.000 0.000 0.000 0.000)
TavrelView.PageViewPaintSelection(view, selection)
TavrelView.PageViewApplyDrawColor(view, color 1 0.000 0.000 0.000 0.000)
TavrelView.PageViewEndBatch(view)
Kernel.PopExceptionFrame()
)");
}

TEST(PageDraw, MovesThePositionToTheFirstHighlightOfItsPage) {
  RecordingHost host;
  registerPages(host, {{2, 10, 3}, {5, 20, 3}, {5, 40, 7}});
  setPosition(host.doc, {1, 1});
  for (const auto &[drawn, position] :
       std::vector<std::pair<int32_t, Position>>{{5, {1, 0}}, {3, {1, 0}}, {2, {0, 0}}, {7, {0, 0}}, {5, {1, 0}}}) {
    host.shownPage = drawn;
    miPIPageViewDraw(host.view, nullptr);
    EXPECT_EQ(positionOf(host.doc), position) << "page " << drawn;
  }
}

TEST(PageDraw, OfAPageRecordWithoutHighlightsLeavesThePosition) {
  RecordingHost host;
  registerPages(host, {{2, 10, 3}});
  HLLInsertPage(GLT_GetHLL(host.doc), 5);
  host.shownPage = 5;
  host.clear();
  miPIPageViewDraw(host.view, nullptr);
  EXPECT_EQ(positionOf(host.doc), (Position{0, 0}));
  EXPECT_EQ(host.count("PageViewBeginBatch"), 0U);
}

TEST(PageDraw, OfADocumentWhoseListHadNoMemoryDoesNothing) {
  RecordingHost host;
  const ListOwner list({{2, 10, 3}});
  {
    const FailingMemory memory(0);
    GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  }
  host.clear();
  miPIPageViewDraw(host.view, nullptr);
  EXPECT_EQ(host.without({"AtomFromString"}), std::vector<std::string>{"TavrelView.PageViewGetDoc(view)"});
}

TEST(PageDraw, OpensNoFrame) {
  RecordingHost host;
  registerPages(host, {{2, 10, 3}});
  host.raiseIn("PageViewGetPageNum");
  EXPECT_FALSE(host.run([&] { miPIPageViewDraw(host.view, nullptr); }));
  EXPECT_EQ(host.count("PushExceptionFrame"), 0U);
}

TEST(PageDraw, LeavesNoFrameOnAFailureOfAnyCall) {
  const auto prepare = [](RecordingHost &host) {
    registerPages(host, {{2, 10, 3}});
    host.shownPage = 2;
  };
  const auto draw = [](RecordingHost &host) { miPIPageViewDraw(host.view, nullptr); };
  EXPECT_EQ(raiseAtEveryCall({prepare, draw, nullptr, true, false, true}), 19U);
}

} // namespace
