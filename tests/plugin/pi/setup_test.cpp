// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Negotiation, set-up and handshake: what the host passes, what the plug-in requests and what it writes.
#include <gtest/gtest.h>

#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tests/host/RecordingHost.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

/// A host before set-up: the plug-in holds no table.
class SetupHost : public RecordingHost {
public:
  SetupHost() {
    gKernelHFT = gTavrelSupportHFT = gDocModelHFT = gTavrelViewHFT = gDesktopHFT = nullptr;
    record = {handshakeVersion, 77, kernelTable(), nullptr};
  }
  uint32_t setUp() { return PISetupSDK(handshakeVersion, &record); }

  /// The versions of a table that the plug-in asked for, in order.
  std::vector<uint32_t> versionsAsked(const std::string &name) {
    const std::string start = "Kernel.RequestTable(" + std::to_string(atom(name)) + ", ";
    std::vector<uint32_t> versions;
    for (const std::string &call : trace)
      if (call.starts_with(start)) versions.push_back(static_cast<uint32_t>(std::stoul(call.substr(start.size()))));
    return versions;
  }

  SetupRecord record = {};
};

/// Everything from `first` down to `last`.
std::vector<uint32_t> descending(uint32_t first, uint32_t last) {
  std::vector<uint32_t> numbers;
  for (uint32_t n = first; n >= last; --n)
    numbers.push_back(n);
  return numbers;
}

// Negotiation

struct Negotiation : Row {
  uint32_t offered, spoken;
};
class SmallerVersion : public testing::TestWithParam<Negotiation> {};

TEST_P(SmallerVersion, IsNegotiated) {
  uint32_t version = 0xDEAD;
  void *setup = nullptr;
  EXPECT_EQ(PINegotiate(GetParam().offered, &version, &setup), 1U);
  EXPECT_EQ(version, GetParam().spoken);
  EXPECT_EQ(setup, reinterpret_cast<void *>(&PISetupSDK));
}

INSTANTIATE_TEST_SUITE_P(Negotiation, SmallerVersion,
                         testing::ValuesIn<Negotiation>({
                             {{"None"}, 0, 0},
                             {{"Older"}, 0x00010000, 0x00010000},
                             {{"JustOlder"}, 0x0001FFFF, 0x0001FFFF},
                             {{"Same"}, 0x00020000, 0x00020000},
                             {{"Newer"}, 0x00030000, 0x00020000},
                             {{"HighestIsUnsigned"}, 0xFFFFFFFF, 0x00020000},
                         }),
                         rowName<Negotiation>);

// Set-up

TEST(Setup, AsksForSixTablesAndHandsBackTheHandshake) {
  SetupHost host;
  EXPECT_EQ(host.setUp(), 1U);
  EXPECT_EQ(host.story(), R"(
Kernel.AtomFromString("TavrelSupport")
Kernel.RequestTable(1, 327680)
Kernel.AtomFromString("Cobble")
Kernel.RequestTable(2, 327680)
Kernel.AtomFromString("DocModel")
Kernel.RequestTable(3, 327680)
Kernel.AtomFromString("TavrelView")
Kernel.RequestTable(4, 327681)
Kernel.AtomFromString("Desktop")
Kernel.RequestTable(5, 262144)
Kernel.AtomFromString("TSExtra")
Kernel.RequestTable(6, 327680)
Kernel.CreateCallback(77, PIHandshake)
)");
  EXPECT_EQ(host.record.handshake, entryOf(PIHandshake));
}

TEST(Setup, KeepsWhatItWasGiven) {
  SetupHost host;
  host.setUp();
  EXPECT_EQ(gExtensionID, 77U);
  EXPECT_EQ(gKernelHFT, host.kernelTable());
  EXPECT_EQ(gKernelVersion, 0x00020000U) << "the handshake version counts as its version";
  const std::vector<std::pair<std::string, HFT>> held = {
      {"TavrelSupport", gTavrelSupportHFT}, {"Cobble", gCobbleHFT},   {"DocModel", gDocModelHFT},
      {"TavrelView", gTavrelViewHFT},       {"Desktop", gDesktopHFT}, {"TSExtra", gTSExtraHFT}};
  for (const auto &[name, table] : held)
    EXPECT_EQ(table, host.table(name)) << name;
}

TEST(Setup, NotesTheVersionsThatWereGranted) {
  SetupHost host;
  host.setUp();
  EXPECT_EQ((std::vector{gTavrelSupportVersion, gCobbleVersion, gDocModelVersion, gTavrelViewVersion, gDesktopVersion,
                         gTSExtraVersion}),
            (std::vector{0x00050000U, 0x00050000U, 0x00050000U, 0x00050001U, 0x00040000U, 0x00050000U}));
}

/// Every global that set-up writes.
std::vector<uintptr_t> globals() {
  const auto word = [](const void *pointer) { return reinterpret_cast<uintptr_t>(pointer); };
  return {gExtensionID,      gKernelVersion,       gTavrelSupportVersion,   gCobbleVersion,
          gDocModelVersion,  gTavrelViewVersion,   gDesktopVersion,         gTSExtraVersion,
          word(gKernelHFT),  word(gCobbleHFT),     word(gTavrelSupportHFT), word(gDocModelHFT),
          word(gDesktopHFT), word(gTavrelViewHFT), word(gTSExtraHFT)};
}

struct OtherVersion : Row {
  uint32_t argument, inRecord;
};
class OtherHandshakeVersion : public testing::TestWithParam<OtherVersion> {};

TEST_P(OtherHandshakeVersion, LeavesEveryGlobalUntouched) {
  SetupHost host;
  host.setUp();
  gTSExtraVersion = 0x00060000;
  const std::vector<uintptr_t> before = globals();
  host.clear();
  host.record = {GetParam().inRecord, 78, nullptr, nullptr};
  EXPECT_EQ(PISetupSDK(GetParam().argument, &host.record), 0U);
  EXPECT_EQ(globals(), before);
  EXPECT_EQ(host.record.handshake, nullptr);
  EXPECT_EQ(host.story(), "\n");
}

INSTANTIATE_TEST_SUITE_P(Setup, OtherHandshakeVersion,
                         testing::ValuesIn<OtherVersion>({
                             {{"InTheArgument"}, 0x00010000, 0x00020000},
                             {{"InTheRecord"}, 0x00020000, 0x00010000},
                             {{"InBoth"}, 0x00010000, 0x00010000},
                             {{"NewerMinor"}, 0x00020001, 0x00020001},
                         }),
                         rowName<OtherVersion>);

TEST(Setup, StepsDownByOneThroughEveryVersion) {
  SetupHost host;
  host.granted["TavrelView"] = 0x00040005;
  EXPECT_EQ(host.setUp(), 1U);
  EXPECT_EQ(host.versionsAsked("TavrelView"), descending(0x00050001, 0x00040005));
  EXPECT_EQ(gTavrelViewVersion, 0x00040005U);
}

TEST(Setup, LooksTheNameUpAgainOnEveryTry) {
  SetupHost host;
  host.granted["Desktop"] = 0x0003FFFE;
  host.setUp();
  EXPECT_EQ(std::count(host.trace.begin(), host.trace.end(), R"(Kernel.AtomFromString("Desktop"))"), 3);
}

struct Range : Row {
  const char *table;
  uint32_t first, last;
  uint32_t *version;
};
class TableRange : public testing::TestWithParam<Range> {};

TEST_P(TableRange, ReachesToItsMinimum) {
  SetupHost host;
  host.granted[GetParam().table] = GetParam().last;
  EXPECT_EQ(host.setUp(), 1U);
  EXPECT_EQ(*GetParam().version, GetParam().last);
}

TEST_P(TableRange, EndsAtItsMinimum) {
  SetupHost host;
  host.granted[GetParam().table] = GetParam().last - 1;
  EXPECT_EQ(host.setUp(), 0U);
  EXPECT_EQ(host.versionsAsked(GetParam().table), descending(GetParam().first, GetParam().last));
  EXPECT_EQ(*GetParam().version, GetParam().last - 1);
  EXPECT_EQ(host.record.handshake, nullptr);
}

TEST_P(TableRange, StartsAtItsMaximum) {
  SetupHost host;
  host.granted[GetParam().table] = GetParam().first + 1;
  EXPECT_EQ(host.setUp(), 0U);
  EXPECT_EQ(host.versionsAsked(GetParam().table).at(0), GetParam().first);
}

INSTANTIATE_TEST_SUITE_P(Setup, TableRange,
                         testing::ValuesIn<Range>({
                             {{"TavrelSupport"}, "TavrelSupport", 0x00050000, 0x00050000, &gTavrelSupportVersion},
                             {{"Cobble"}, "Cobble", 0x00050000, 0x00050000, &gCobbleVersion},
                             {{"DocModel"}, "DocModel", 0x00050000, 0x00050000, &gDocModelVersion},
                             {{"TavrelView"}, "TavrelView", 0x00050001, 0x00020002, &gTavrelViewVersion},
                             {{"Desktop"}, "Desktop", 0x00040000, 0x00020000, &gDesktopVersion},
                             {{"TSExtra"}, "TSExtra", 0x00050000, 0x00050000, &gTSExtraVersion},
                         }),
                         rowName<Range>);

TEST(Setup, AsksForNoTableAfterAMissingOne) {
  SetupHost host;
  host.granted.erase("DocModel");
  EXPECT_EQ(host.setUp(), 0U);
  EXPECT_EQ(host.trace.back(), "Kernel.RequestTable(3, 327680)");
  EXPECT_EQ(gTavrelSupportHFT, host.table("TavrelSupport")) << "the tables that it has stay";
  EXPECT_EQ(gCobbleHFT, host.table("Cobble"));
  EXPECT_EQ(gDocModelHFT, nullptr);
  EXPECT_EQ(gTavrelViewVersion, 0U);
}

TEST(Setup, MissingLastTableLeavesFiveHeld) {
  SetupHost host;
  host.granted.erase("TSExtra");
  EXPECT_EQ(host.setUp(), 0U);
  EXPECT_EQ((std::vector{gTavrelSupportHFT, gCobbleHFT, gDocModelHFT, gTavrelViewHFT, gDesktopHFT}),
            (std::vector{host.table("TavrelSupport"), host.table("Cobble"), host.table("DocModel"),
                         host.table("TavrelView"), host.table("Desktop")}));
  EXPECT_EQ(gTSExtraHFT, nullptr);
  EXPECT_EQ(gTSExtraVersion, 0x0004FFFFU);
  EXPECT_EQ(host.record.handshake, nullptr);
}

TEST(Setup, FailingHostCallUnwindsToTheHost) {
  SetupHost host;
  host.raiseIn("CreateCallback");
  EXPECT_FALSE(host.run([&] { host.setUp(); }));
  EXPECT_EQ(host.count("PushExceptionFrame"), 0U);
  EXPECT_EQ(host.record.handshake, nullptr);
}

// Handshake

HandshakeRecord filledRecord() {
  HandshakeRecord record = {};
  memset(&record, 0x5A, sizeof record);
  return record;
}

TEST(Handshake, WritesNameInitialisationExportAndUnload) {
  RecordingHost host;
  gExtensionID = 77;
  HandshakeRecord record = filledRecord();
  EXPECT_EQ(PIHandshake(handshakeVersion, &record), 1U);
  EXPECT_EQ(host.story(), R"(
Kernel.AtomFromString("TavrelGLT")
Kernel.CreateCallback(77, ExtensionInit)
Kernel.CreateCallback(77, ExtensionExportHFTs)
Kernel.CreateCallback(77, ExtensionTerm)
)");
  EXPECT_EQ(record.name, host.atom("TavrelGLT"));
  EXPECT_EQ(record.initialise, entryOf(ExtensionInit));
  EXPECT_EQ(record.exportTables, entryOf(ExtensionExportHFTs));
  EXPECT_EQ(record.unload, entryOf(ExtensionTerm));
}

TEST(Handshake, LeavesTheHostsFieldsAlone) {
  const RecordingHost host;
  const HandshakeRecord before = filledRecord();
  HandshakeRecord record = before;
  PIHandshake(handshakeVersion, &record);
  EXPECT_EQ(record.hostWord, before.hostWord);
  EXPECT_EQ(record.hostFlags, before.hostFlags);
  EXPECT_EQ(record.importTables, before.importTables);
}

TEST(Handshake, OtherVersionWritesNothing) {
  const RecordingHost host;
  const HandshakeRecord before = filledRecord();
  for (const uint32_t version : {0x00010000U, 0x00020001U, 0U}) {
    HandshakeRecord record = before;
    EXPECT_EQ(PIHandshake(version, &record), 0U);
    EXPECT_EQ(memcmp(&record, &before, sizeof record), 0);
  }
  EXPECT_EQ(host.story(), "\n");
}

TEST(Handshake, WritesInOrderUntilTheHostFails) {
  RecordingHost host;
  const HandshakeRecord before = filledRecord();
  HandshakeRecord record = before;
  host.raiseAt(2);
  EXPECT_FALSE(host.run([&] { PIHandshake(handshakeVersion, &record); }));
  EXPECT_EQ(record.initialise, entryOf(ExtensionInit));
  EXPECT_EQ(record.exportTables, before.exportTables);
  EXPECT_EQ(record.unload, before.unload);
}

} // namespace
