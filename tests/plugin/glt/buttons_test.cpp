// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The tool bar buttons: showing them and pressing them.
#include <gtest/gtest.h>

#include "plugin/glt/glt.h"
#include "plugin/input/gltAux.h"
#include "plugin/md/mdResources.h"
#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tests/host/Faults.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"
#include "tests/plugin/glt/positions.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

// Showing

/// A host after the export callback, with a shell that only has a name.
class Buttons : public testing::Test {
protected:
  Buttons() { prepare(host); }
  static void prepare(RecordingHost &on) {
    gExtensionID = 77;
    ExtensionExportHFTs();
    rootWidget = on.named(reinterpret_cast<Widget>(0x1080), "shell");
    on.clear();
  }
  RecordingHost host;
};

TEST(ButtonsBeforeExport, AreNotShown) {
  RecordingHost host;
  EXPECT_EQ(GLT_ShowButtons(1, nullptr), 0);
  EXPECT_EQ(host.story(), "\nTavrelView.GetToolBar()\n");
}

TEST_F(Buttons, AreCreatedAndInsertedAfterFindAgain) {
  EXPECT_EQ(GLT_ShowButtons(1, nullptr), 1);
  EXPECT_EQ(host.story(), R"(
TavrelView.GetToolBar()
TavrelView.ToolBarHasSpace(toolBar, 2, 0)
Kernel.AtomFromString("FindAgainDialog")
TavrelView.ToolBarFindButton(toolBar, 1)
Desktop.GetResourceBitmap(shell, "prev", "prev", *, 16, 16)
Kernel.AtomFromString("TavrelGLT:Prev")
TavrelView.ToolButtonCreate(2, 114, 0, 0)
Kernel.CreateCallback(77, GLTPrevExecProc)
TavrelView.ToolButtonAttachAction(TavrelGLT:Prev, GLTPrevExecProc, null)
Kernel.CreateCallback(77, GLTPrevEnabledProc)
TavrelView.ToolButtonAttachEnabledTest(TavrelGLT:Prev, GLTPrevEnabledProc, null)
Desktop.GetResourceString(shell, "helpNext", "Jumps to the previous highlight")
TavrelView.ToolButtonAttachTip(TavrelGLT:Prev, "Jumps to the previous highlight")
Desktop.GetResourceBitmap(shell, "next", "next", *, 16, 16)
Kernel.AtomFromString("TavrelGLT:Next")
TavrelView.ToolButtonCreate(3, 113, 0, 0)
Kernel.CreateCallback(77, GLTNextExecProc)
TavrelView.ToolButtonAttachAction(TavrelGLT:Next, GLTNextExecProc, null)
Kernel.CreateCallback(77, GLTNextEnabledProc)
TavrelView.ToolButtonAttachEnabledTest(TavrelGLT:Next, GLTNextEnabledProc, null)
Desktop.GetResourceString(shell, "helpPrev", "Jumps to the next highlight")
TavrelView.ToolButtonAttachTip(TavrelGLT:Next, "Jumps to the next highlight")
TavrelView.ToolButtonSetAttribute(TavrelGLT:Prev, 2)
TavrelView.ToolButtonSetAttribute(TavrelGLT:Next, 2)
TavrelView.ToolBarInsertButton(toolBar, TavrelGLT:Prev, 0, findAgain)
TavrelView.ToolBarInsertButton(toolBar, TavrelGLT:Next, 0, TavrelGLT:Prev)
)");
}

TEST_F(Buttons, AreRememberedWithTheirIconsAndCallbacks) {
  GLT_ShowButtons(1, nullptr);
  EXPECT_EQ(gData->prevBitmap, 0x72U);
  EXPECT_EQ(gData->nextBitmap, 0x71U);
  EXPECT_NE(gData->prevButton, nullptr);
  EXPECT_NE(gData->nextButton, gData->prevButton);
  EXPECT_EQ(pGLTPrevExecProc, entryOf(GLTPrevExecProc));
  EXPECT_EQ(pGLTPrevEnabledProc, entryOf(GLTPrevEnabledProc));
  EXPECT_EQ(pGLTNextExecProc, entryOf(GLTNextExecProc));
  EXPECT_EQ(pGLTNextEnabledProc, entryOf(GLTNextEnabledProc));
}

TEST_F(Buttons, AreCreatedOnceAndInsertedAtEachShowing) {
  GLT_ShowButtons(1, nullptr);
  host.clear();
  EXPECT_EQ(GLT_ShowButtons(1, nullptr), 1);
  EXPECT_EQ(host.story(), R"(
TavrelView.GetToolBar()
TavrelView.ToolBarHasSpace(toolBar, 2, 0)
Kernel.AtomFromString("FindAgainDialog")
TavrelView.ToolBarFindButton(toolBar, 1)
TavrelView.ToolButtonSetAttribute(TavrelGLT:Prev, 2)
TavrelView.ToolButtonSetAttribute(TavrelGLT:Next, 2)
TavrelView.ToolBarInsertButton(toolBar, TavrelGLT:Prev, 0, findAgain)
TavrelView.ToolBarInsertButton(toolBar, TavrelGLT:Next, 0, TavrelGLT:Prev)
)");
}

TEST_F(Buttons, AreInsertedAfterAGivenAnchor) {
  const ToolButton anchor = host.named(reinterpret_cast<ToolButton>(0x1090), "anchor");
  GLT_ShowButtons(1, anchor);
  EXPECT_EQ(host.count("ToolBarFindButton"), 0U);
  EXPECT_EQ(host.trace[host.trace.size() - 2], "TavrelView.ToolBarInsertButton(toolBar, TavrelGLT:Prev, 0, anchor)");
}

TEST_F(Buttons, AreInsertedWithoutAFindAgainButton) {
  host.findAgain = nullptr;
  EXPECT_EQ(GLT_ShowButtons(1, nullptr), 1);
  EXPECT_EQ(host.trace[host.trace.size() - 2], "TavrelView.ToolBarInsertButton(toolBar, TavrelGLT:Prev, 0, null)");
}

TEST_F(Buttons, HaveExchangedHelpKeys) {
  host.resources = {{"helpNext", "zurueck"}, {"helpPrev", "weiter"}};
  GLT_ShowButtons(1, nullptr);
  EXPECT_NE(host.story().find(R"(ToolButtonAttachTip(TavrelGLT:Prev, "zurueck"))"), std::string::npos);
  EXPECT_NE(host.story().find(R"(ToolButtonAttachTip(TavrelGLT:Next, "weiter"))"), std::string::npos);
}

TEST_F(Buttons, HaveHelpOfAtMost129Bytes) {
  host.resources = {{"helpNext", std::string(200, 'x')}};
  GLT_ShowButtons(1, nullptr);
  EXPECT_NE(host.story().find("ToolButtonAttachTip(TavrelGLT:Prev, \"" + std::string(129, 'x') + "\")"),
            std::string::npos);
}

TEST_F(Buttons, NeedAToolBarForShowingAndHidingAlike) {
  host.toolBar = nullptr;
  for (const Bool16 show : {1, 0})
    EXPECT_EQ(GLT_ShowButtons(show, nullptr), 0);
  EXPECT_EQ(host.story(), R"(
TavrelView.GetToolBar()
TavrelView.GetToolBar()
)");
}

TEST_F(Buttons, NeedSpaceForTwo) {
  host.spaceOnToolBar = false;
  EXPECT_EQ(GLT_ShowButtons(1, nullptr), 0);
  EXPECT_EQ(host.story(), R"(
TavrelView.GetToolBar()
TavrelView.ToolBarHasSpace(toolBar, 2, 0)
)");
}

TEST_F(Buttons, StayWhenThereIsNoSpaceForAnotherShowing) {
  GLT_ShowButtons(1, nullptr);
  const ToolButton before = gData->prevButton;
  host.spaceOnToolBar = false;
  EXPECT_EQ(GLT_ShowButtons(1, nullptr), 0);
  EXPECT_EQ(gData->prevButton, before);
  EXPECT_EQ(host.count("ToolButtonDetach"), 0U);
}

TEST_F(Buttons, AreNotRemovedByHiding) {
  GLT_ShowButtons(1, nullptr);
  EXPECT_EQ(gData->buttonsShown, 0) << "nothing sets it";
  host.clear();
  EXPECT_EQ(GLT_ShowButtons(0, gData->prevButton), 1);
  EXPECT_EQ(host.story(), R"(
TavrelView.GetToolBar()
)");
}

class WithShownFlag : public Buttons, public testing::WithParamInterface<Bool16> {};

TEST_P(WithShownFlag, AreDetachedAndKept) {
  GLT_ShowButtons(1, nullptr);
  const ToolButton before = gData->nextButton;
  gData->buttonsShown = 1;
  host.clear();
  EXPECT_EQ(GLT_ShowButtons(GetParam(), nullptr), 1);
  EXPECT_EQ(host.story(), R"(
TavrelView.GetToolBar()
TavrelView.ToolButtonDetach(TavrelGLT:Prev)
TavrelView.ToolButtonDetach(TavrelGLT:Next)
)");
  EXPECT_EQ(gData->buttonsShown, 0);
  EXPECT_EQ(gData->nextButton, before);
}

INSTANTIATE_TEST_SUITE_P(Buttons, WithShownFlag, testing::Values(0, 1));

TEST_F(Buttons, ThatDoNotExistAreNotDetached) {
  gData->buttonsShown = 1;
  EXPECT_EQ(GLT_ShowButtons(0, nullptr), 1);
  EXPECT_EQ(host.count("ToolButtonDetach"), 0U);
  EXPECT_EQ(gData->buttonsShown, 0);
}

TEST_F(Buttons, AreShownForAnyFlagButZero) {
  GLT_ShowButtons(0x4000, nullptr);
  EXPECT_EQ(host.count("ToolBarInsertButton"), 2U);
}

TEST_F(Buttons, AreShownWithoutAFrame) {
  host.raiseIn("ToolBarInsertButton");
  EXPECT_FALSE(host.run([] { GLT_ShowButtons(1, nullptr); }));
  EXPECT_EQ(host.count("PushExceptionFrame"), 0U);
}

// Pressing

std::vector<uint32_t> s_codes;
void recordCode(Doc /*document*/, HLL * /*list*/, uint32_t code, void * /*userData*/) { s_codes.push_back(code); }

struct Press : Row {
  ButtonActionProc button;
  uint32_t modifiers;
  uint32_t code; ///< passed to the registrant
};
class Pressing : public testing::TestWithParam<Press> {};

TEST_P(Pressing, JumpsByTheCodeOfTheModifier) {
  RecordingHost host;
  s_codes.clear();
  registerRecords(host, {{4, 1}, {9, 1}, {12, 1}}, recordCode);
  setPosition(host.doc, {1, 0});
  host.modifiers = GetParam().modifiers;
  GetParam().button(nullptr, nullptr);
  EXPECT_EQ(s_codes, std::vector<uint32_t>{GetParam().code});
}

INSTANTIATE_TEST_SUITE_P(Buttons, Pressing,
                         testing::ValuesIn<Press>({
                             {{"Next"}, GLTNextExecProc, 0, GLT_JUMP_NEXT},
                             {{"NextWithTheModifier"}, GLTNextExecProc, 1, GLT_JUMP_NEXT_BEYOND},
                             {{"NextWithOthers"}, GLTNextExecProc, 0xFFFFFFFE, GLT_JUMP_NEXT},
                             {{"NextWithAll"}, GLTNextExecProc, 0xFFFFFFFF, GLT_JUMP_NEXT_BEYOND},
                             {{"Prev"}, GLTPrevExecProc, 0, GLT_JUMP_PREV},
                             {{"PrevWithTheModifier"}, GLTPrevExecProc, 1, GLT_JUMP_PREV_BEYOND},
                             {{"PrevWithOthers"}, GLTPrevExecProc, 0xFFFFFFFE, GLT_JUMP_PREV},
                             {{"PrevWithAll"}, GLTPrevExecProc, 0xFFFFFFFF, GLT_JUMP_PREV_BEYOND},
                         }),
                         rowName<Press>);

TEST(NextPress, TurnsToTheNextPageAndScrolls) {
  RecordingHost host;
  registerPages(host, {{4, 10, 3}, {9, 20, 3}});
  GLTNextExecProc(nullptr, nullptr);
  EXPECT_EQ(host.story(), R"(
TavrelView.GetFrontDoc()
TavrelView.GetModifierKeyState()
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewBeginBatch(view)
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewShowPage(view, 9)
TavrelView.DocGetModelDoc(doc)
DocModel.DocOpenPage(modelDoc, 9)
DocModel.SelectionFromCharRanges(page9, *, 1)
Kernel.PopExceptionFrame()
DocModel.PageClose(page9)
TavrelView.PageViewBeginBatch(view)
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
DocModel.SelectionPageNumber(selection)
TavrelView.PageViewShowPage(view, 9)
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

TEST(NextPress, WithoutADocumentInFrontDoesNothing) {
  RecordingHost host;
  registerPages(host, {{4, 10, 3}, {9, 20, 3}});
  host.frontDoc = nullptr;
  GLTNextExecProc(nullptr, nullptr);
  GLTPrevExecProc(nullptr, nullptr);
  EXPECT_EQ(host.story(), R"(
TavrelView.GetFrontDoc()
TavrelView.GetModifierKeyState()
TavrelView.GetFrontDoc()
TavrelView.GetModifierKeyState()
)");
}

TEST(NextPress, JumpsInTheFrontDocument) {
  RecordingHost host;
  registerPages(host, {{4, 10, 3}, {9, 20, 3}});
  const ListOwner other({{1, 1, 1}, {2, 1, 1}});
  GLT_RegisterHLL(host.otherDoc, other, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  host.frontDoc = host.otherDoc;
  GLTNextExecProc(nullptr, nullptr);
  EXPECT_EQ(positionOf(host.doc), (Position{0, 0}));
  EXPECT_EQ(positionOf(host.otherDoc), (Position{1, 0}));
}

TEST(NextPress, LeavesNoFrameOnARaiseOfAnyCall) {
  const auto prepare = [](RecordingHost &host) { registerPages(host, {{4, 10, 3}, {9, 20, 3}}); };
  const auto press = [](RecordingHost &) { GLTNextExecProc(nullptr, nullptr); };
  EXPECT_EQ(raiseAtEveryCall({prepare, press, nullptr, true, false, true}), 22U);
}

} // namespace
