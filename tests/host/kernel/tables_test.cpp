// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Tables by name and version, and the servers through which plug-ins offer their own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestPlugin.h"
#include "host/kernel/table.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelSupport.h"

namespace {

using tavrel::HFT;
using tavrel::HFTServer;
using test::TestPlugin;

HFT request(const char *name, uint32_t version) { return Kernel::RequestTable(Kernel::AtomFromString(name), version); }

void someFunction() {}
void anotherFunction() {}

HFT offered; // what the test plug-in's provide procedure gives out
HFTServer askedServer;
int destroyed;
HFT provide(HFTServer server, uint32_t version) {
  askedServer = server;
  return version <= 5 ? offered : nullptr;
}
void destroy(HFTServer) { ++destroyed; }

struct Tables : testing::Test {
  Tables() {
    offered = nullptr;
    destroyed = 0;
  }
  HFTServer serve(const char *name) {
    HFTServer server = nullptr;
    testPlugin.attempt([&] { server = TavrelSupport::NewHFTServer(name, provide, destroy, nullptr); });
    return server;
  }
  host::Runtime runtime;
  TestPlugin testPlugin{runtime};
};

TEST_F(Tables, TheHostsOwnAreThereAtExactlyTheirVersion) {
  EXPECT_EQ(request("TavrelSupport", 0x00050000), gTavrelSupportHFT);
  EXPECT_EQ(request("TavrelSupport", 0x00050001), nullptr);
  EXPECT_EQ(request("TavrelSupport", 0x0004FFFF), nullptr);
}

TEST_F(Tables, TheKernelTableCanBeRequestedToo) { EXPECT_EQ(request("Kernel", 0x00020000), gKernelHFT); }

TEST_F(Tables, EmptyTablesAreNotNull) {
  EXPECT_NE(request("Cobble", 0x00050000), nullptr);
  EXPECT_NE(request("TSExtra", 0x00050000), nullptr);
}

TEST_F(Tables, AnUnknownTableIsNull) {
  EXPECT_EQ(request("Nonesuch", 1), nullptr);
  EXPECT_EQ(Kernel::RequestTable(0, 1), nullptr);
}

TEST_F(Tables, TheApplicationAddsTablesAtAnyVersion) {
  tavrel::Entry entries[1] = {};
  runtime.addTable("TavrelView", 0x00020002, entries);
  EXPECT_EQ(request("TavrelView", 0x00020002), entries);
}

TEST_F(Tables, ATableThatLacksAnOperationIsNotGivenOutAndTheOperationIsNamed) {
  host::Table table("Kernel", Kernel::operations);
  table.provideBare<someFunction>(Kernel::PopExceptionFrame);
  try {
    table.entries();
    FAIL() << "a table with holes";
  } catch (const host::HostError &error) {
    EXPECT_STREQ(error.what(), "table Kernel lacks RaiseError");
  }
}

TEST_F(Tables, AServersTableIsWhatItProvides) {
  const HFTServer server = serve("Mine");
  offered = TavrelSupport::NewHFT(server, 3);
  EXPECT_EQ(request("Mine", 5), offered);
  EXPECT_EQ(askedServer, server);
  EXPECT_EQ(request("Mine", 6), nullptr);
  TavrelSupport::DestroyHFT(offered);
}

TEST_F(Tables, AProvideProcedureThatRaisesGivesNoTable) {
  testPlugin.attempt([] {
    TavrelSupport::NewHFTServer(
        "Broken",
        [](HFTServer, uint32_t) -> HFT {
          Kernel::RaiseError(1);
          return nullptr;
        },
        nullptr, nullptr);
  });
  EXPECT_EQ(request("Broken", 1), nullptr);
  EXPECT_EQ(testPlugin.reports.size(), 1U);
}

TEST_F(Tables, ASecondServerOfANameRaises) {
  serve("Mine");
  EXPECT_EQ(testPlugin.attempt([] { TavrelSupport::NewHFTServer("Mine", provide, destroy, nullptr); }),
            tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([] { TavrelSupport::NewHFTServer("Kernel", provide, destroy, nullptr); }),
            tavrel::errBadArgument);
}

TEST_F(Tables, AServerWithoutNameOrProvideProcedureRaises) {
  EXPECT_EQ(testPlugin.attempt([] { TavrelSupport::NewHFTServer(nullptr, provide, destroy, nullptr); }),
            tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([] { TavrelSupport::NewHFTServer("Mine", nullptr, destroy, nullptr); }),
            tavrel::errBadArgument);
}

TEST_F(Tables, ServersAreDestroyedOnceAndRemoved) {
  serve("Mine");
  serve("Yours");
  runtime.tables.closeServers(testPlugin.id);
  runtime.tables.closeServers(testPlugin.id);
  EXPECT_EQ(destroyed, 2);
  EXPECT_EQ(request("Mine", 1), nullptr);
}

TEST_F(Tables, AServerThatIsDestroyedMakesNoTable) {
  const HFTServer server = serve("Mine");
  runtime.tables.closeServers(testPlugin.id);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelSupport::NewHFT(server, 1); }), tavrel::errBadHandle);
}

TEST_F(Tables, ADestroyProcedureCannotMakeANewServer) {
  testPlugin.attempt([] {
    TavrelSupport::NewHFTServer(
        "Mine", provide,
        [](HFTServer) {
          ++destroyed;
          TavrelSupport::NewHFTServer("Again", provide, destroy, nullptr);
        },
        nullptr);
  });
  runtime.tables.closeServers(testPlugin.id);
  runtime.tables.closeServers(testPlugin.id);
  EXPECT_EQ(destroyed, 1);
  EXPECT_THAT(
      testPlugin.reports,
      testing::ElementsAre("test plug-in: the destroy procedure failed with error 5: a table server of a plug-in that "
                           "is ending"));
  offered = gTavrelSupportHFT;
  EXPECT_EQ(request("Again", 1), nullptr);
}

TEST_F(Tables, AServerIsNotOfferedWhileItsDestroyProcedureRuns) {
  static HFT table;
  testPlugin.attempt([] {
    TavrelSupport::NewHFTServer(
        "Mine", provide, [](HFTServer) { table = request("Mine", 1); }, nullptr);
  });
  table = offered = gTavrelSupportHFT;
  runtime.tables.closeServers(testPlugin.id);
  EXPECT_EQ(table, nullptr);
}

TEST_F(Tables, ServersOfOtherPluginsStay) {
  TestPlugin other(runtime, "other");
  other.attempt([] { TavrelSupport::NewHFTServer("Theirs", provide, destroy, nullptr); });
  serve("Mine");
  runtime.tables.closeServers(testPlugin.id);
  EXPECT_EQ(destroyed, 1);
  offered = gTavrelSupportHFT;
  EXPECT_EQ(request("Theirs", 1), offered);
}

TEST_F(Tables, ADestroyedTableRaisesAndItsAddressNeverReturns) {
  const HFTServer server = serve("Mine");
  const HFT stale = TavrelSupport::NewHFT(server, 3);
  TavrelSupport::DestroyHFT(stale);
  for (int n = 0; n < 100; ++n) {
    const HFT table = TavrelSupport::NewHFT(server, 3);
    ASSERT_NE(table, stale);
    TavrelSupport::DestroyHFT(table);
  }
  EXPECT_EQ(testPlugin.attempt([=] { stale[1](); }), tavrel::errBadHandle);
  const tavrel::Callback callback = testPlugin.callback(someFunction);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelSupport::ReplaceHFTEntry(stale, 1, callback, 0); }), tavrel::errBadHandle);
}

TEST_F(Tables, TheErrorOfADestroyedTableSaysThatItWasTakenBack) {
  const HFT stale = TavrelSupport::NewHFT(serve("Mine"), 1);
  TavrelSupport::DestroyHFT(stale);
  testPlugin.attempt([=] { stale[0](); });
  EXPECT_THAT(testPlugin.reports, testing::ElementsAre("test plug-in: the body failed with error 3: an operation of a "
                                                       "plug-in that has ended or taken its table back"));
}

TEST_F(Tables, OneSelectorTooManyForATableRaises) {
  const HFTServer server = serve("Mine");
  EXPECT_EQ(testPlugin.attempt([=] { TavrelSupport::NewHFT(server, 0x10001); }), tavrel::errBadArgument);
}

TEST_F(Tables, TooManySelectorsRaise) {
  const HFTServer server = serve("Mine");
  constexpr uint32_t largest = 0x10000;
  EXPECT_EQ(testPlugin.attempt([=] {
    for (size_t made = 0; made < host::TableRegistry::mostSelectors; made += largest)
      TavrelSupport::DestroyHFT(TavrelSupport::NewHFT(server, largest));
  }),
            0);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelSupport::NewHFT(server, 1); }), tavrel::errNoMemory);
}

TEST_F(Tables, TheCallbackOfARetiredPluginInAnothersTableRaises) {
  TestPlugin other(runtime, "other");
  const HFT table = TavrelSupport::NewHFT(serve("Mine"), 2);
  TavrelSupport::ReplaceHFTEntry(table, 0, testPlugin.callback(someFunction), 0);
  TavrelSupport::ReplaceHFTEntry(table, 1, other.callback(anotherFunction), 0);
  runtime.tables.retire(other.id, runtime.callbacks);
  EXPECT_EQ(testPlugin.attempt([=] { table[0](); }), 0);
  EXPECT_EQ(testPlugin.attempt([=] { table[1](); }), tavrel::errBadHandle);
}

TEST_F(Tables, UsesOfTablesAreRecorded) {
  TestPlugin client(runtime, "client");
  serve("Mine");
  const auto requestMine = [] { request("Mine", 1); };
  client.attempt(requestMine);
  EXPECT_THAT(runtime.tables.uses(), testing::ElementsAre()) << "the server gave nothing";
  offered = gTavrelSupportHFT;
  client.attempt(requestMine);
  testPlugin.attempt(requestMine);
  requestMine();
  EXPECT_THAT(runtime.tables.uses(), testing::ElementsAre(host::TableUse{client.id, testPlugin.id}))
      << "neither the provider itself nor the host is a client";
}

TEST_F(Tables, ANewTableIsEmpty) {
  const HFT table = TavrelSupport::NewHFT(serve("Mine"), 23);
  for (int selector = 0; selector < 23; ++selector)
    EXPECT_EQ(table[selector], nullptr);
  TavrelSupport::DestroyHFT(table);
}

TEST_F(Tables, AnEntryIsTheCallbackStored) {
  const HFT table = TavrelSupport::NewHFT(serve("Mine"), 2);
  TavrelSupport::ReplaceHFTEntry(table, 1, testPlugin.callback(someFunction), 0);
  EXPECT_EQ(table[1], tavrel::entryOf(someFunction));
  TavrelSupport::DestroyHFT(table);
}

TEST_F(Tables, AnEntryBeyondTheTableRaises) {
  const HFT table = TavrelSupport::NewHFT(serve("Mine"), 2);
  const tavrel::Callback callback = testPlugin.callback(someFunction);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelSupport::ReplaceHFTEntry(table, 2, callback, 0); }), tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelSupport::ReplaceHFTEntry(table, 0, callback, 1); }), tavrel::errBadArgument);
}

TEST_F(Tables, AnEntryThatIsNoCallbackRaises) {
  const HFT table = TavrelSupport::NewHFT(serve("Mine"), 2);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelSupport::ReplaceHFTEntry(table, 1, someFunction, 0); }),
            tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelSupport::ReplaceHFTEntry(table, 1, nullptr, 0); }), tavrel::errBadHandle);
}

TEST_F(Tables, TablesOfUnknownServersAndOfNoSelectorsRaise) {
  const HFTServer server = serve("Mine");
  EXPECT_EQ(testPlugin.attempt([] { TavrelSupport::NewHFT(nullptr, 1); }), tavrel::errBadHandle);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelSupport::NewHFT(server, 0); }), tavrel::errBadArgument);
  EXPECT_EQ(testPlugin.attempt([=] { TavrelSupport::NewHFT(server, UINT32_MAX); }), tavrel::errBadArgument);
}

TEST_F(Tables, DestroyingATableTwiceRaisesAndNullIsIgnored) {
  const HFTServer server = serve("Mine");
  EXPECT_EQ(testPlugin.attempt([=] {
    const HFT table = TavrelSupport::NewHFT(server, 1);
    TavrelSupport::DestroyHFT(nullptr);
    TavrelSupport::DestroyHFT(table);
    TavrelSupport::DestroyHFT(table);
  }),
            tavrel::errBadHandle);
  EXPECT_EQ(runtime.tables.tableCount(), 0U);
}

// A plug-in may request every version between two numbers.
TEST_F(Tables, AskingForTwoHundredThousandVersionsEndsWithTheRightOne) {
  tavrel::Entry entries[1] = {};
  runtime.addTable("TavrelView", 0x00020002, entries);
  HFT table = nullptr;
  uint32_t version = 0x00050001;
  testPlugin.attempt([&] {
    while ((table = request("TavrelView", version)) == nullptr)
      --version;
  });
  EXPECT_EQ(table, entries);
  EXPECT_EQ(version, 0x00020002U);
}

} // namespace
