// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Highlight files that cannot be read or registered: what is returned, and what is not freed.
#include <gtest/gtest.h>

#include "tests/host/Faults.h"
#include "tests/plugin/input/reading.h"
#include "tests/support/FailingMemory.h"

using namespace tavrel;

namespace {

const std::string inWords = "<XML> <Body version=3> <highlights> <loc pg=3 pos=1 len=2> </Body>";

TEST(ReaderFailure, NoMemoryForTheWorkingCopy) {
  RecordingHost host;
  host.failAt(0);
  EXPECT_EQ(readFile(fileOf("<loc pg=3 pos=1>")), 0);
  EXPECT_EQ(host.calls, 1U);
  EXPECT_EQ(registered(), Highlights{});
}

// The early returns do not free the working copy.
TEST(ReaderFailure, NoDocumentLeavesTheWorkingCopy) {
  RecordingHost host;
  EXPECT_EQ(readFor(nullptr, fileOf("<loc pg=3 pos=1>")), 0);
  EXPECT_EQ(host.count("Malloc"), 1U);
  EXPECT_EQ(host.blocks.size(), 1U);
}

TEST(ReaderFailure, NoDataLeavesTheWorkingCopy) {
  RecordingHost host;
  EXPECT_EQ(registerGLT(host.doc, nullptr, 20), 0);
  EXPECT_EQ(host.trace, (std::vector<std::string>{"TavrelSupport.Malloc(21)"}));
  EXPECT_EQ(host.blocks.size(), 1U);
}

TEST(ReaderFailure, NoLengthLeavesTheWorkingCopy) {
  RecordingHost host;
  EXPECT_EQ(registerGLT(host.doc, "<XML>", 0), 0);
  EXPECT_EQ(host.trace, (std::vector<std::string>{"TavrelSupport.Malloc(1)"}));
  EXPECT_EQ(host.blocks.size(), 1U);
}

TEST(ReaderFailure, LengthWithoutSpaceForItsNulIsRefused) {
  RecordingHost host;
  EXPECT_EQ(registerGLT(host.doc, "<XML>", UINT32_MAX), 0);
  EXPECT_TRUE(host.blocks.empty());
}

TEST(ReaderFailure, OtherFirstWordLeavesTheWorkingCopy) {
  RecordingHost host;
  EXPECT_EQ(readFile("<html> <XML> <highlights> <loc pg=3 pos=1> </Body>"), 0);
  EXPECT_EQ(host.blocks.size(), 1U);
}

// The working copy of a text that is read to its end, or to a NUL, is freed.
TEST(ReaderFailure, EndOfTheTextFreesTheWorkingCopy) {
  for (const char *file : {" ", "=", "<XML>", "<XML> <highlights>", "<XML> <highlights> <loc pg=3 pos=1>",
                           "<XML> <highlights> <loc pg=3", "<XML> <Body Units=", "<XML> </XML> more"}) {
    RecordingHost host;
    EXPECT_EQ(readFile(file), 0) << file;
    EXPECT_TRUE(host.blocks.empty()) << file;
  }
}

TEST(ReaderFailure, NulFirstFreesTheWorkingCopy) {
  RecordingHost host;
  EXPECT_EQ(registerGLT(host.doc, "\0<html>", 7), 0);
  EXPECT_TRUE(host.blocks.empty());
}

// The version question.

TEST(ReaderVersion, AnswerYesRegistersWithVersionTwo) {
  RecordingHost host;
  host.alertAnswer = 1;
  EXPECT_EQ(readFile(inWords), 1);
  EXPECT_EQ(host.count("Alert"), 1U);
  EXPECT_EQ(GLTFindRecord(host.doc)->wordFinderVersion, 2);
  EXPECT_TRUE(host.blocks.empty());
}

TEST(ReaderVersion, AnyOtherAnswerRegistersNothing) {
  for (const int32_t answer : {2, 3, 0, -1}) {
    RecordingHost host;
    host.alertAnswer = answer;
    EXPECT_EQ(readFile(inWords), 0) << answer;
    EXPECT_EQ(registered(), Highlights{}) << answer;
    EXPECT_EQ(host.count("GetToolBar"), 0U) << answer;
    EXPECT_TRUE(host.blocks.empty()) << answer;
  }
}

TEST(ReaderVersion, AnswerNoLeavesTheOldRegistration) {
  RecordingHost host;
  readFile(fileOf("<loc pg=8 pos=1>"));
  host.alertAnswer = 2;
  EXPECT_EQ(readFile(inWords), 0);
  EXPECT_EQ(registered(), (Highlights{{8, 1, 0}}));
}

TEST(ReaderVersion, QuestionIsAskedWhenTheHostRaises) {
  for (const char *operation : {"WordFinderCreate", "DocGetModelDoc"}) {
    RecordingHost host;
    host.raiseIn(operation);
    host.alertAnswer = 2;
    EXPECT_TRUE(host.run([&] { EXPECT_EQ(readFile(inWords), 0) << operation; }));
    EXPECT_EQ(host.count("Alert"), 1U) << operation;
    EXPECT_EQ(host.count("WordFinderDestroy"), 0U) << operation;
    EXPECT_EQ(host.frames(), 0U) << operation;
    EXPECT_TRUE(host.blocks.empty()) << operation;
  }
}

TEST(ReaderVersion, RaisedErrorAnsweredYesRegistersWithVersionTwo) {
  RecordingHost host;
  host.raiseIn("WordFinderCreate");
  EXPECT_TRUE(
      host.run([&] { EXPECT_EQ(readFile("<XML> <Body version=1> <highlights> <loc pg=3 pos=1> </Body>"), 1); }));
  EXPECT_EQ(GLTFindRecord(host.doc)->wordFinderVersion, 2);
}

TEST(ReaderVersion, ErrorOfTheDestructionIsIgnored) {
  RecordingHost host;
  host.raiseIn("WordFinderDestroy");
  EXPECT_TRUE(
      host.run([&] { EXPECT_EQ(readFile("<XML> <Body version=1> <highlights> <loc pg=3 pos=1> </Body>"), 1); }));
  EXPECT_EQ(host.count("Alert"), 0U);
  EXPECT_EQ(host.frames(), 0U);
  EXPECT_EQ(GLTFindRecord(host.doc)->wordFinderVersion, 1) << "the file's version was there";
}

TEST(ReaderVersion, MissingVersionTwoIsAskedAboutToo) {
  RecordingHost host;
  host.wordFinderVersions = {};
  EXPECT_EQ(readFile("<XML> <highlights> <loc pg=3 pos=1> </Body>"), 1);
  EXPECT_EQ(host.count("Alert"), 1U);
}

// After the registration.

TEST(ReaderButtons, ToolBarIsPassedUnchecked) {
  RecordingHost host;
  host.toolBar = nullptr;
  EXPECT_EQ(readFile(fileOf("<loc pg=3 pos=1>")), 1);
  EXPECT_EQ(host.without({})[host.trace.size() - 2], "TavrelView.ToolBarUpdateButtonStates(null)");
}

TEST(ReaderButtons, NotAskedAgainWhenNothingWasRegistered) {
  RecordingHost host;
  readFile("<XML> <highlights> </XML>");
  EXPECT_EQ(host.count("ToolBarUpdateButtonStates"), 0U);
}

TEST(ReaderCallbacks, DoNothingAndAreMadeForEachFile) {
  RecordingHost host;
  readFile(fileOf("<loc pg=3 pos=1>"));
  readFile(fileOf("<loc pg=3 pos=1>"));
  EXPECT_EQ(host.count("CreateCallback"), 4U);
  const GLTRecord *record = GLTFindRecord(host.doc);
  EXPECT_EQ(entryOf(record->jumpProc), entryOf(auxGLTJumpNotification));
  EXPECT_EQ(entryOf(record->newProc), entryOf(auxGLTNewNotification));
}

// Failures while the registration shows the highlights are caught: the list is registered all the same.
TEST(ReaderFailure, HostThatCannotShowThemStillHasThem) {
  for (const char *operation : {"PageViewShowPage", "DocOpenPage", "SelectionFromCharRanges"}) {
    RecordingHost host;
    host.raiseIn(operation);
    EXPECT_TRUE(host.run([&] { EXPECT_EQ(readFile(fileOf("<loc pg=3 pos=1>")), 1) << operation; }));
    EXPECT_EQ(registered(), (Highlights{{3, 1, 0}})) << operation;
    EXPECT_TRUE(host.blocks.empty()) << operation;
  }
}

TEST(ReaderFailure, ErrorOutsideEveryFramePropagatesToTheHost) {
  RecordingHost host;
  host.raiseIn("Malloc");
  EXPECT_FALSE(host.run([&] { registerGLT(host.doc, "<XML>", 5); }));
  EXPECT_EQ(host.frames(), 0U);
}

// Memory that runs out.

TEST(ReaderMemory, ListThatCannotBeCreatedLeavesTheWorkingCopy) {
  RecordingHost host;
  const FailingMemory memory(1); // after the working copy
  EXPECT_EQ(readFile(fileOf("<loc pg=3 pos=1>")), 0);
  EXPECT_TRUE(memory.failed());
  EXPECT_EQ(host.blocks.size(), 1U);
  EXPECT_EQ(host.count("CreateCallback"), 0U);
}

// The registry takes the reader's list only if a copy would be the same.
TEST(ReaderMemory, PageWithoutAnArrayIsNotRegistered) {
  RecordingHost host;
  const FailingMemory memory(4); // after the working copy, the list, its pages and the first page's highlights
  EXPECT_EQ(readFile(fileOf("<loc pg=3 pos=1> <loc pg=4 pos=1> <loc pg=3 pos=2>")), 1);
  EXPECT_TRUE(memory.failed());
  EXPECT_EQ(registered(), (Highlights{{3, 1, 0}, {3, 2, 0}}));
  const HLL *list = GLT_GetHLL(host.doc);
  EXPECT_EQ(HLL_GetWordCount(list), 2U) << "and not what was accepted";
  EXPECT_EQ(HLL_GetPageCount(list), 1U) << "no page without highlights";
}

TEST(ReaderMemory, FailureOfAnyAllocationIsHandled) {
  const std::string file = fileOf("<loc pg=3 pos=1> <loc pg=3 pos=2> <loc pg=4 pos=1>");
  FaultTest test = {[](RecordingHost &) {}, [&](RecordingHost &) { readFile(file); }};
  test.leavesBlocks = true;
  EXPECT_GT(failAtEveryAllocation(test), 5U);
}

// A host that has little to show registers the highlights all the same.
TEST(ReaderFailure, HostWithoutViewDocumentModelOrSelectionStillHasThem) {
  for (const auto &lose : std::initializer_list<void (*)(RecordingHost &)>{
           [](RecordingHost &host) { host.view = nullptr; }, [](RecordingHost &host) { host.modelDoc = nullptr; },
           [](RecordingHost &host) { host.selection = nullptr; }}) {
    RecordingHost host;
    lose(host);
    EXPECT_EQ(readFile("<XML> <Body mode=active> <highlights> <loc pg=3 pos=1 len=2> </Body>"), 1);
    EXPECT_EQ(registered(), (Highlights{{3, 1, 2}}));
    EXPECT_TRUE(host.blocks.empty());
  }
}

} // namespace
