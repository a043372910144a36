// Tables by name and version, and the servers through which plug-ins offer their own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Guest.h"
#include "host/kernel/table.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelSupport.h"

namespace {

using tavrel::HFT;
using tavrel::HFTServer;
using test::Guest;

HFT request(const char *name, uint32_t version) { return Kernel::RequestTable(Kernel::AtomFromString(name), version); }

void someFunction() {}

HFT offered; // what the guest's provide procedure gives out
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
    guest.attempt([&] { server = TavrelSupport::NewHFTServer(name, provide, destroy, nullptr); });
    return server;
  }
  host::Runtime runtime;
  Guest guest{runtime};
};

TEST_F(Tables, TheHostsOwnAreThereAtExactlyTheirVersion) {
  EXPECT_EQ(request("TavrelSupport", 0x00050000), gTavrelSupportHFT);
  EXPECT_EQ(request("TavrelSupport", 0x00050001), nullptr);
  EXPECT_EQ(request("TavrelSupport", 0x0004FFFF), nullptr);
}

TEST_F(Tables, EmptyTablesAreNotNull) {
  EXPECT_NE(request("Cobble", 0x00050000), nullptr);
  EXPECT_NE(request("TSExtra", 0x00050000), nullptr);
}

TEST_F(Tables, AnUnknownTableIsNull) {
  EXPECT_EQ(request("Nonesuch", 1), nullptr);
  EXPECT_EQ(Kernel::RequestTable(0, 1), nullptr);
}

TEST_F(Tables, WhoBuildsTheApplicationAddsTablesAtAnyVersion) {
  tavrel::Entry entries[1] = {};
  runtime.addTable("TavrelView", 0x00020002, entries);
  EXPECT_EQ(request("TavrelView", 0x00020002), entries);
}

TEST_F(Tables, AMissingOperationIsNamedWhenTheTableIsBuilt) {
  host::Table table("Kernel", Kernel::operations);
  table.provideBare<someFunction>(Kernel::PopExceptionFrame);
  try {
    table.finish();
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
  guest.attempt([] {
    TavrelSupport::NewHFTServer(
        "Broken",
        [](HFTServer, uint32_t) -> HFT {
          Kernel::RaiseError(1);
          return nullptr;
        },
        nullptr, nullptr);
  });
  EXPECT_EQ(request("Broken", 1), nullptr);
  EXPECT_EQ(guest.reports.size(), 1U);
}

TEST_F(Tables, ASecondServerOfANameRaises) {
  serve("Mine");
  EXPECT_EQ(guest.attempt([] { TavrelSupport::NewHFTServer("Mine", provide, destroy, nullptr); }),
            tavrel::errBadArgument);
  EXPECT_EQ(guest.attempt([] { TavrelSupport::NewHFTServer("Kernel", provide, destroy, nullptr); }),
            tavrel::errBadArgument);
}

TEST_F(Tables, AServerWithoutNameOrProvideProcedureRaises) {
  EXPECT_EQ(guest.attempt([] { TavrelSupport::NewHFTServer(nullptr, provide, destroy, nullptr); }),
            tavrel::errBadArgument);
  EXPECT_EQ(guest.attempt([] { TavrelSupport::NewHFTServer("Mine", nullptr, destroy, nullptr); }),
            tavrel::errBadArgument);
}

TEST_F(Tables, ServersAreDestroyedOnceAndAreGone) {
  serve("Mine");
  serve("Yours");
  runtime.tables.destroyServers();
  runtime.tables.destroyServers();
  EXPECT_EQ(destroyed, 2);
  EXPECT_EQ(request("Mine", 1), nullptr);
}

TEST_F(Tables, ANewTableIsEmpty) {
  const HFT table = TavrelSupport::NewHFT(serve("Mine"), 23);
  for (int selector = 0; selector < 23; ++selector)
    EXPECT_EQ(table[selector], nullptr);
  TavrelSupport::DestroyHFT(table);
}

TEST_F(Tables, AnEntryIsTheCallbackStored) {
  const HFT table = TavrelSupport::NewHFT(serve("Mine"), 2);
  TavrelSupport::ReplaceHFTEntry(table, 1, guest.callback(someFunction), 0);
  EXPECT_EQ(table[1], tavrel::entryOf(someFunction));
  TavrelSupport::DestroyHFT(table);
}

TEST_F(Tables, AnEntryBeyondTheTableRaises) {
  const HFT table = TavrelSupport::NewHFT(serve("Mine"), 2);
  const tavrel::Callback callback = guest.callback(someFunction);
  EXPECT_EQ(guest.attempt([=] { TavrelSupport::ReplaceHFTEntry(table, 2, callback, 0); }), tavrel::errBadArgument);
  EXPECT_EQ(guest.attempt([=] { TavrelSupport::ReplaceHFTEntry(table, 0, callback, 1); }), tavrel::errBadArgument);
}

TEST_F(Tables, AnEntryThatIsNoCallbackRaises) {
  const HFT table = TavrelSupport::NewHFT(serve("Mine"), 2);
  EXPECT_EQ(guest.attempt([=] { TavrelSupport::ReplaceHFTEntry(table, 1, someFunction, 0); }), tavrel::errBadHandle);
  EXPECT_EQ(guest.attempt([=] { TavrelSupport::ReplaceHFTEntry(table, 1, nullptr, 0); }), tavrel::errBadHandle);
}

TEST_F(Tables, TablesOfUnknownServersAndOfNoSelectorsRaise) {
  const HFTServer server = serve("Mine");
  EXPECT_EQ(guest.attempt([] { TavrelSupport::NewHFT(nullptr, 1); }), tavrel::errBadHandle);
  EXPECT_EQ(guest.attempt([=] { TavrelSupport::NewHFT(server, 0); }), tavrel::errBadArgument);
  EXPECT_EQ(guest.attempt([=] { TavrelSupport::NewHFT(server, UINT32_MAX); }), tavrel::errBadArgument);
}

TEST_F(Tables, DestroyingATableTwiceRaisesAndNullIsLetPass) {
  const HFTServer server = serve("Mine");
  EXPECT_EQ(guest.attempt([=] {
    const HFT table = TavrelSupport::NewHFT(server, 1);
    TavrelSupport::DestroyHFT(nullptr);
    TavrelSupport::DestroyHFT(table);
    TavrelSupport::DestroyHFT(table);
  }),
            tavrel::errBadHandle);
  EXPECT_EQ(runtime.tables.tableCount(), 0U);
}

// A plug-in that knows many versions asks for every number between two of them.
TEST_F(Tables, AskingForTwoHundredThousandVersionsEndsWithTheRightOne) {
  tavrel::Entry entries[1] = {};
  runtime.addTable("TavrelView", 0x00020002, entries);
  HFT table = nullptr;
  uint32_t version = 0x00050001;
  guest.attempt([&] {
    while ((table = request("TavrelView", version)) == nullptr)
      --version;
  });
  EXPECT_EQ(table, entries);
  EXPECT_EQ(version, 0x00020002U);
}

} // namespace
