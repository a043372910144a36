// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Registrations that fail or are repeated: what they leave registered, allocated and filed.
#include <gtest/gtest.h>

#include "plugin/glt/glt.h"
#include "plugin/glt/miAssoc.h"
#include "tests/host/Faults.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"
#include "tests/plugin/glt/positions.h"
#include "tests/support/FailingMemory.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

/// A registered list can be unregistered after any failure.
void expectUsable(RecordingHost &host, const std::string & /*call*/) {
  if (HLL *list = GLT_GetHLL(host.doc)) GLT_UnregisterHLL(host.doc, list);
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
}

TEST(RegistryFailures, RegistrationLeavesAValidStateOnARaiseOfAnyCall) {
  const ListOwner list({{7, 1, 1}});
  const auto prepare = [](RecordingHost &host) {
    registerPages(host, {{4, 1, 1}});
    host.reliable = {"AtomFromString"}; // a known name always has its atom
  };
  const auto act = [&list](RecordingHost &host) {
    EXPECT_EQ(GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, noteNew, 1, nullptr), 1);
  };
  EXPECT_EQ(raiseAtEveryCall({prepare, act, expectUsable, true, false, true}), 24U);
}

TEST(RegistryFailures, UnregisteringLeavesAValidStateOnARaiseOfAnyCall) {
  const auto prepare = [](RecordingHost &host) { registerPages(host, {{4, 1, 1}}); };
  const auto act = [](RecordingHost &host) { GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc)); };
  EXPECT_EQ(raiseAtEveryCall({prepare, act, expectUsable, false, false, true}), 10U);
}

TEST(RegistryTable, ListRegisteredAgainIsHeldOnce) {
  RecordingHost host;
  registerPages(host, {{4, 1, 1}});
  const size_t blocks = liveBlocks();
  GLT_RegisterHLL(host.doc, GLT_GetHLL(host.doc), GLT_CHARACTER_OFFSETS, nullptr, nullptr, 1, nullptr);
  EXPECT_EQ(liveBlocks(), blocks);
}

TEST(RegistryTable, ListRegisteredAgainStaysRegisteredWhereTheKeyCannotBeMade) {
  for (const size_t call : {12U, 13U, 14U, 15U}) { // the keys of the removal and of the filing
    RecordingHost host;
    registerPages(host, {{4, 1, 1}});
    const size_t blocks = liveBlocks();
    HLL *list = GLT_GetHLL(host.doc);
    host.clear();
    host.raiseAt(call);
    EXPECT_FALSE(
        host.run([&] { GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr); }));
    EXPECT_EQ(host.trace.back(), "Kernel.AtomFromString(\"GLT\")");
    EXPECT_EQ(recordOf(host.doc)->hll, list);
    EXPECT_EQ(liveBlocks(), blocks);
  }
}

TEST(RegistryTable, NullOverAListIsNone) {
  RecordingHost host;
  registerPages(host, {{4, 1, 1}});
  EXPECT_EQ(GLT_RegisterHLL(host.doc, nullptr, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 1, nullptr), 1);
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
}

TEST(RegistryTable, NullOverNullIsNone) {
  RecordingHost host;
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(GLT_RegisterHLL(host.doc, nullptr, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 1, nullptr), 1);
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
}

TEST(RegistryTable, OtherEntriesOfTheTableAreNoRegistrations) {
  RecordingHost host;
  const ListOwner list({{4, 1, 1}});
  GLTRecord likeOne = {};
  likeOne.hll = list;
  likeOne.filed = true;
  likeOne.serial = 5;
  const Atom glt = host.atom("GLT"), other = host.atom("other");
  GLT_GetHLL(host.doc); // from here on the registry knows the atom of its key
  AssociateNew(&host, glt, other, &likeOne, sizeof likeOne);
  AssociateNew(&host, other, glt, &likeOne, sizeof likeOne);
  EXPECT_EQ(GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 1, nullptr), 1);
  EXPECT_EQ(highlightsOf(GLT_GetHLL(host.doc)), (Highlights{{4, 1, 1}}));
  AssociateDelete(&host, glt, other);
  AssociateDelete(&host, other, glt);
}

/// A newly registered list holds its own highlights, and none of an interrupted registration.
void expectRegistersAfresh(RecordingHost &host, const std::string &call) {
  const ListOwner list({{7, 1, 1}});
  GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  EXPECT_EQ(highlightsOf(GLT_GetHLL(host.doc)), (Highlights{{7, 1, 1}}));
  expectUsable(host, call);
}

TEST(RegistryFailures, RegisteringTheRegisteredListLeavesNothingForTheNextOneOnARaiseOfAnyCall) {
  const auto prepare = [](RecordingHost &host) { registerPages(host, {{4, 1, 1}, {5, 1, 1}}); };
  const auto act = [](RecordingHost &host) {
    GLT_RegisterHLL(host.doc, GLT_GetHLL(host.doc), GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  };
  EXPECT_GT(raiseAtEveryCall({prepare, act, expectRegistersAfresh, true, false, true}), 0U);
}

TEST(RegistryFailures, RegistrationReturnsOneWithoutMemory) {
  const auto prepare = [](RecordingHost &) {};
  const auto act = [](RecordingHost &host) {
    const ListOwner list({{4, 1, 1}}); // three allocations of the test
    EXPECT_EQ(GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, noteNew, 1, nullptr), 1);
  };
  EXPECT_EQ(failAtEveryAllocation({prepare, act, expectUsable}), 8U);
}

/// Registers (4, 1, 1); the n-th allocation of the registration fails.
void registerWithoutMemory(RecordingHost &host, size_t n) {
  const ListOwner list({{4, 1, 1}});
  const FailingMemory memory(n);
  EXPECT_EQ(GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 1, nullptr), 1);
}

TEST(RegistryFailures, WithoutACopyOfTheListNothingIsMapped) {
  RecordingHost host;
  registerWithoutMemory(host, 0);
  ASSERT_NE(recordOf(host.doc), nullptr) << "filed with a null list";
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
  EXPECT_EQ(host.count("DocOpenPage"), 0U);
}

struct Unfiled : Row {
  size_t failing;
};
class UnfiledRecord : public testing::TestWithParam<Unfiled> {};

TEST_P(UnfiledRecord, IsShownAsBuilt) {
  RecordingHost host;
  registerWithoutMemory(host, GetParam().failing);
  EXPECT_EQ(recordOf(host.doc), nullptr);
  EXPECT_EQ(host.count("PageViewHighlightText"), 1U);
  EXPECT_EQ(host.count("PageViewScrollToPoint"), 1U);
}

INSTANTIATE_TEST_SUITE_P(RegistryFailures, UnfiledRecord,
                         testing::ValuesIn<Unfiled>({{{"NoEntry"}, 3}, {{"NoBytes"}, 4}}), rowName<Unfiled>);

TEST(RegistryFailures, RecordWithANullListReadsAsAnEmptyOne) {
  RecordingHost host;
  registerWithoutMemory(host, 0);
  host.clear();
  EXPECT_EQ(GLT_SetPos(host.doc, 0, 0, 0), 0);
  GLT_Jump(host.doc, GLT_JUMP_NEXT);
  EXPECT_EQ(host.count("PageViewShowPage"), 1U);
  EXPECT_NE(host.story().find("PageViewShowPage(view, 0)"), std::string::npos);
}

} // namespace
