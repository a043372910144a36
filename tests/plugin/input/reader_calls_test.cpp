// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What the host is asked, call by call, while a highlight file becomes highlights on its document.
#include <gtest/gtest.h>

#include "plugin/md/mdResources.h"
#include "plugin/pi/mdPI.h"
#include "tests/plugin/input/reading.h"

using namespace tavrel;

namespace {

using Calls = std::vector<std::string>;

Calls operator+(Calls calls, const Calls &more) {
  calls.insert(calls.end(), more.begin(), more.end());
  return calls;
}

constexpr const char *wrongVersion =
    "The highlights for this document may be incorrect because of incompatible version "
    "of Tavrel. Display highlights anyway?";

const Calls copied = {"TavrelSupport.Malloc(%)"}, freed = {"TavrelSupport.Free(*)"};

const Calls granted = {
    "Kernel.PushExceptionFrame(*, RestorePlugInFrame)",
    "TavrelView.DocGetModelDoc(doc)",
    "DocModel.WordFinderCreate(modelDoc, null, null, null, 2, 8, null)",
    "Kernel.PopExceptionFrame()",
    "Kernel.PushExceptionFrame(*, RestorePlugInFrame)",
    "DocModel.WordFinderDestroy(finder)",
    "Kernel.PopExceptionFrame()",
};

const Calls refused = {
    "Kernel.PushExceptionFrame(*, RestorePlugInFrame)",
    "TavrelView.DocGetModelDoc(doc)",
    "DocModel.WordFinderCreate(modelDoc, null, null, null, 3, 8, null)",
    "Kernel.PopExceptionFrame()",
    std::string("TavrelView.Alert(2, \"") + wrongVersion + "\", \"Yes\", \"No\", null, 0)",
};

/// The registration up to the page, then the selection, then the rest of the mapping.
Calls mapped(const std::string &selection) {
  return {
      "Kernel.CreateCallback(42, auxGLTJumpNotification)",
      "Kernel.CreateCallback(42, auxGLTNewNotification)",
      "TavrelView.DocGetPageView(doc)",
      R"(Kernel.AtomFromString("GLT"))",
      R"(Kernel.AtomFromString("GLT"))",
      R"(Kernel.AtomFromString("GLT"))",
      R"(Kernel.AtomFromString("GLT"))",
      "Kernel.PushExceptionFrame(*, RestorePlugInFrame)",
      "TavrelView.DocGetPageView(doc)",
      "TavrelView.PageViewShowPage(view, 3)",
      "TavrelView.DocGetModelDoc(doc)",
      "DocModel.DocOpenPage(modelDoc, 3)",
      selection,
      "Kernel.PopExceptionFrame()",
      "DocModel.PageClose(page3)",
      "TavrelView.PageViewHighlightText(view, selection)",
  };
}

const Calls scrolled = {
    "TavrelView.PageViewBeginBatch(view)",
    "Kernel.PushExceptionFrame(*, RestorePlugInFrame)",
    "DocModel.SelectionPageNumber(selection)",
    "TavrelView.PageViewShowPage(view, 3)",
    "TavrelView.PageViewGetVisibleRect(view, *)",
    "DocModel.SelectionBounds(selection, *)",
    "TavrelView.PageViewGetPageTransform(view, *)",
    "TavrelSupport.TransformFixedRect(*, *, *)",
    "TavrelView.PageViewScrollToPoint(view, -150, 310)",
    "Kernel.PopExceptionFrame()",
    "TavrelView.PageViewEndBatch(view)",
};

const Calls buttonsAskedAgain = {"TavrelView.GetToolBar()", "TavrelView.ToolBarUpdateButtonStates(toolBar)"};

/// Reads the file; the size of the working copy is left out of what is to be expected.
Calls callsOf(RecordingHost &host, const std::string &file) {
  gExtensionID = 42;
  EXPECT_TRUE(host.run([&] { readFile(file); }));
  Calls calls = host.trace;
  const std::string size = std::to_string(file.size() + 1);
  for (std::string &call : calls)
    if (call == "TavrelSupport.Malloc(" + size + ")") call = "TavrelSupport.Malloc(%)";
  return calls;
}

const std::string locations =
    "<highlights> <loc pg=3 pos=120 len=6> <loc pg=3 pos=131 len=4> </highlights> </Body> </XML>";

TEST(ReaderCalls, CharactersScrolledTo) {
  RecordingHost host;
  EXPECT_EQ(callsOf(host, "<XML> <Body Units=characters mode=active> " + locations),
            copied + mapped("DocModel.SelectionFromCharRanges(page3, *, 2)") + scrolled + buttonsAskedAgain + freed);
}

TEST(ReaderCalls, CharactersNotScrolledTo) {
  RecordingHost host;
  EXPECT_EQ(callsOf(host, "<XML> <Body Units=characters version=3> " + locations),
            copied + mapped("DocModel.SelectionFromCharRanges(page3, *, 2)") + buttonsAskedAgain + freed);
}

TEST(ReaderCalls, WordsOfAVersionThatTheHostHas) {
  RecordingHost host;
  EXPECT_EQ(callsOf(host, "<XML> " + locations),
            copied + granted + mapped("DocModel.SelectionFromWordRanges(page3, *, 2, 2)") + buttonsAskedAgain + freed);
}

TEST(ReaderCalls, WordsScrolledTo) {
  RecordingHost host;
  EXPECT_EQ(callsOf(host, "<XML> <Body mode=active> " + locations),
            copied + granted + mapped("DocModel.SelectionFromWordRanges(page3, *, 2, 2)") + scrolled +
                buttonsAskedAgain + freed);
}

TEST(ReaderCalls, WordsOfAVersionThatTheHostHasNotAnsweredYes) {
  RecordingHost host;
  host.alertAnswer = 1;
  EXPECT_EQ(callsOf(host, "<XML> <Body version=3> " + locations),
            copied + refused + mapped("DocModel.SelectionFromWordRanges(page3, *, 2, 2)") + buttonsAskedAgain + freed);
}

TEST(ReaderCalls, WordsOfAVersionThatTheHostHasNotAnsweredNo) {
  RecordingHost host;
  host.alertAnswer = 2;
  EXPECT_EQ(callsOf(host, "<XML> <Body version=3> " + locations), copied + refused + freed);
}

TEST(ReaderCalls, QuestionLooksItsTextsUpWhenThereIsAShell) {
  RecordingHost host;
  rootWidget = host.named(reinterpret_cast<Widget>(0x9000), "shell");
  host.alertAnswer = 2;
  host.resources = {{"yes", "Ja"}, {"no", "Nein"}, {"wrongVersion", "Trotzdem zeigen?"}};
  EXPECT_EQ(
      callsOf(host, "<XML> <Body version=3> " + locations),
      (Calls{"TavrelSupport.Malloc(%)", "Kernel.PushExceptionFrame(*, RestorePlugInFrame)",
             "TavrelView.DocGetModelDoc(doc)", "DocModel.WordFinderCreate(modelDoc, null, null, null, 3, 8, null)",
             "Kernel.PopExceptionFrame()", R"(Desktop.GetResourceString(shell, "yes", "Yes"))",
             R"(Desktop.GetResourceString(shell, "no", "No"))",
             std::string(R"(Desktop.GetResourceString(shell, "wrongVersion", ")") + wrongVersion + "\")",
             R"(TavrelView.Alert(2, "Trotzdem zeigen?", "Ja", "Nein", null, 0))", "TavrelSupport.Free(*)"}));
}

// A user's texts are truncated to 19 bytes for a label and 255 for the question.
TEST(ReaderCalls, QuestionTruncatesItsTexts) {
  RecordingHost host;
  rootWidget = host.named(reinterpret_cast<Widget>(0x9000), "shell");
  host.alertAnswer = 2;
  const std::string text(300, 'x');
  host.resources = {{"yes", text}, {"no", text}, {"wrongVersion", text}};
  const Calls calls = callsOf(host, "<XML> <Body version=3> " + locations);
  const std::string message = text.substr(0, 255), label = text.substr(0, 19);
  EXPECT_EQ(calls[calls.size() - 2],
            "TavrelView.Alert(2, \"" + message + "\", \"" + label + "\", \"" + label + "\", null, 0)");
}

TEST(ReaderCalls, FileWithoutHighlights) {
  RecordingHost host;
  EXPECT_EQ(callsOf(host, "<XML> <Body> <highlights> </highlights> </Body> </XML>"), copied + freed);
}

TEST(ReaderCalls, FileOfAnotherKind) {
  RecordingHost host;
  EXPECT_EQ(callsOf(host, "<html> <Body>"), copied);
}

TEST(ReaderCalls, SecondFileReplacesTheFirst) {
  RecordingHost host;
  readFile(fileOf("<loc pg=3 pos=1 len=2>"));
  host.clear();
  EXPECT_EQ(readFile(fileOf("<loc pg=4 pos=5 len=6>")), 1);
  EXPECT_EQ(registered(), (Highlights{{4, 5, 6}}));
  EXPECT_EQ(host.count("PageViewHighlightText"), 2U) << "the old marks are removed, the new ones are shown";
}

TEST(ReaderCalls, CharactersArePassedToTheHostUnchanged) {
  RecordingHost host;
  readFile(fileOf("<loc pg=3 pos=120 len=6> <loc pg=3 pos=131 len=4>"));
  ASSERT_EQ(host.ranges.size(), 2U);
  EXPECT_EQ(host.ranges[0].pos, 120);
  EXPECT_EQ(host.ranges[1].pos, 131);
  EXPECT_EQ(host.ranges[1].len, 4);
}

} // namespace
