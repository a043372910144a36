// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The table "TavrelGLT" that the plug-in offers: its server, its versions, its entries.
#include <gtest/gtest.h>

#include "plugin/glt/glt.h"
#include "plugin/glt/gltHFT.h"
#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

TEST(ExportedTable, IsOfferedUnderItsName) {
  const RecordingHost host;
  EXPECT_EQ(GLTExportHFTServer(), 1);
  EXPECT_NE(gGLTHFTServer, nullptr);
  EXPECT_EQ(gGLTHFT, nullptr);
  EXPECT_EQ(host.story(), R"(
TavrelSupport.NewHFTServer("TavrelGLT", GLTProvideHFT, GLTDestroyHFT, null)
)");
}

TEST(ExportedTable, IsNotOfferedWithoutAServer) {
  RecordingHost host;
  host.failAt(0);
  EXPECT_EQ(GLTExportHFTServer(), 0);
  EXPECT_EQ(gGLTHFTServer, nullptr);
}

TEST(ExportedTable, OfAnEarlierExportIsForgotten) {
  const RecordingHost host;
  gGLTHFT = gKernelHFT; // any table
  GLTExportHFTServer();
  EXPECT_EQ(gGLTHFT, nullptr);
}

/// A host to which the table is offered.
class OfferedTable : public testing::Test {
protected:
  OfferedTable() {
    gExtensionID = 77;
    GLTExportHFTServer();
    host.clear();
  }
  HFT request(uint32_t version) { return host.provide(gGLTHFTServer, version); }
  RecordingHost host;
};

struct Request : Row {
  uint32_t version;
  bool served;
};
class RequestedVersion : public OfferedTable, public testing::WithParamInterface<Request> {};

TEST_P(RequestedVersion, IsServedUpToFive) { EXPECT_EQ(request(GetParam().version) != nullptr, GetParam().served); }

INSTANTIATE_TEST_SUITE_P(ExportedTable, RequestedVersion,
                         testing::ValuesIn<Request>({
                             {{"Zero"}, 0, true},
                             {{"One"}, 0x00010000, true},
                             {{"Five"}, 0x00050000, true},
                             {{"FivePointOne"}, 0x00050001, false},
                             {{"Six"}, 0x00060000, false},
                             {{"HighestIsUnsigned"}, 0xFFFFFFFF, false},
                         }),
                         rowName<Request>);

TEST_F(OfferedTable, IsBuiltWithTwentyTwoEntriesInTheirOrder) {
  host.answer(Kernel::CreateCallback, std::function([this](ExtensionID, Entry function) {
                return host.named(function, "entry" + std::to_string(host.count("CreateCallback")));
              }));
  request(0x00050000);
  std::vector<std::string> expected = {"TavrelSupport.NewHFT(server, 23)"};
  for (int selector = 1; selector <= 22; ++selector) {
    const std::string number = std::to_string(selector);
    expected.push_back("TavrelSupport.ReplaceHFTEntry(exportedTable, " + number + ", entry" + number + ", 0)");
  }
  EXPECT_EQ(host.without({"CreateCallback"}), expected);
  EXPECT_EQ(host.count("CreateCallback"), 22U);
}

TEST_F(OfferedTable, WrapsAnEntryForThisPlugInThenStoresIt) {
  request(0x00050000);
  ASSERT_EQ(host.trace.size(), 45U);
  for (size_t call = 1; call < host.trace.size(); call += 2) {
    EXPECT_TRUE(host.trace[call].starts_with("Kernel.CreateCallback(77, ")) << host.trace[call];
    EXPECT_TRUE(host.trace[call + 1].starts_with("TavrelSupport.ReplaceHFTEntry(exportedTable, "));
  }
}

TEST_F(OfferedTable, HasEachFunctionAtItsSelector) {
  request(0x00050000);
  const std::map<uint32_t, Entry> expected = {
      {1, entryOf(GLT_NewHLL)},        {2, entryOf(GLT_CopyHLL)},
      {3, entryOf(GLT_DeleteHLL)},     {4, entryOf(GLT_RegisterHLL)},
      {5, entryOf(GLT_UnregisterHLL)}, {6, entryOf(GLT_GetViewMode)},
      {7, entryOf(GLT_SetViewMode)},   {8, entryOf(GLT_GetHLL)},
      {9, entryOf(GLT_GetPos)},        {10, entryOf(GLT_SetPos)},
      {11, entryOf(GLT_Jump)},         {12, entryOf(HLL_GetData)},
      {13, entryOf(HLL_SetData)},      {14, entryOf(HLL_GetWordCount)},
      {15, entryOf(HLL_GetPageCount)}, {16, entryOf(HLL_GetHL)},
      {17, entryOf(HLL_AddHL)},        {18, entryOf(HLL_FindPagePos)},
      {19, entryOf(GLT_GetColor)},     {20, entryOf(GLT_SetColor)},
      {21, entryOf(GLT_ShowButtons)},  {22, entryOf(GLT_RegisterWordOffsetHLL)}};
  EXPECT_EQ(host.exported, expected);
}

TEST_F(OfferedTable, HasTheWordOffsetRegistrationLast) {
  const ListOwner list({{3, 1, 1}});
  request(0x00050000);
  const auto registerWords = functionOf<decltype(&GLT_RegisterWordOffsetHLL)>(host.exported.at(22));
  const auto registerAny = functionOf<decltype(&GLT_RegisterHLL)>(host.exported.at(4));
  registerWords(host.doc, list, nullptr, nullptr, 0, nullptr, 1);
  registerAny(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  EXPECT_EQ(host.count("SelectionFromWordRanges"), 2U) << "once registered, once retired";
  EXPECT_EQ(host.count("SelectionFromCharRanges"), 1U);
}

TEST_F(OfferedTable, ShowsOrHidesTheButtonsAtTwentyOne) {
  ExtensionExportHFTs();
  host.provide(gGLTHFTServer, 0x00050000);
  const auto show = functionOf<decltype(&GLT_ShowButtons)>(host.exported.at(21));
  EXPECT_EQ(show(0, nullptr), 1);
  EXPECT_EQ(host.count("ToolBarInsertButton"), 0U);
  EXPECT_EQ(show(1, nullptr), 1);
  EXPECT_EQ(host.count("ToolBarInsertButton"), 2U);
}

TEST_F(OfferedTable, IsBuiltOnceForAllClients) {
  const HFT first = request(0x00050000);
  EXPECT_EQ(request(0x00040000), first);
  EXPECT_EQ(host.count("NewHFT"), 1U);
}

TEST_F(OfferedTable, IsNotBuiltForAVersionThatItDoesNotServe) {
  request(0x00060000);
  EXPECT_EQ(host.story(), "\n");
  EXPECT_NE(request(0x00050000), nullptr) << "and is built for one that it serves";
}

TEST_F(OfferedTable, FailedBuildIsNotRetried) {
  host.failAt(0);
  EXPECT_EQ(request(0x00050000), nullptr);
  EXPECT_EQ(request(0x00050000), nullptr);
  EXPECT_EQ(host.story(), R"(
TavrelSupport.NewHFT(server, 23)
)");
}

TEST_F(OfferedTable, RaisingBuildIsNotRetried) {
  host.raiseIn("NewHFT");
  EXPECT_FALSE(host.run([this] { request(0x00050000); }));
  host.noFaults();
  EXPECT_EQ(request(0x00050000), nullptr);
  EXPECT_EQ(host.count("PushExceptionFrame"), 0U);
}

TEST_F(OfferedTable, HalfBuiltTableIsNotServed) {
  host.raiseAt(10);
  EXPECT_FALSE(host.run([this] { request(0x00050000); }));
  host.noFaults();
  EXPECT_GT(host.exported.size(), 0U);
  EXPECT_EQ(request(0x00050000), nullptr);
}

TEST_F(OfferedTable, IsNotServedAnyMoreWhenItsReleaseFails) {
  request(0x00050000);
  host.raiseIn("DestroyHFT");
  EXPECT_FALSE(host.run([this] { host.destroy(gGLTHFTServer); }));
  host.noFaults();
  EXPECT_EQ(request(0x00050000), nullptr);
}

TEST_F(OfferedTable, NeverBuiltIsReleasedAsNull) {
  host.destroy(gGLTHFTServer);
  EXPECT_EQ(host.story(), R"(
TavrelSupport.DestroyHFT(null)
)");
}

TEST_F(OfferedTable, IsReleasedWhenTheServerIsDestroyed) {
  request(0x00050000);
  host.clear();
  host.destroy(gGLTHFTServer);
  EXPECT_EQ(gGLTHFT, nullptr);
  EXPECT_EQ(host.story(), R"(
TavrelSupport.DestroyHFT(exportedTable)
)");
}

TEST_F(OfferedTable, IsNotBuiltAgainAfterTheServerIsDestroyed) {
  request(0x00050000);
  host.destroy(gGLTHFTServer);
  EXPECT_EQ(request(0x00050000), nullptr);
  EXPECT_EQ(gGLTHFTBuilt, 1);
  EXPECT_EQ(host.count("NewHFT"), 1U);
}

} // namespace
