// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Handles: numbers that name objects, and that no other object ever gets.
#include "host/kernel/handles.h"

#include <gtest/gtest.h>

namespace {

struct Thing {};
using ThingHandle = struct ThingRec *;
using OtherHandle = struct OtherRec *;

struct HandlesTest : testing::Test {
  int32_t codeOf(ThingHandle handle) {
    try {
      things.find(handle);
      return tavrel::errNone;
    } catch (const host::HostError &error) {
      return error.code;
    }
  }
  host::Handles<ThingHandle, Thing> things{"thing"};
};

TEST_F(HandlesTest, NamesItsObject) {
  Thing first, second;
  const ThingHandle handle = things.add(&first);
  things.add(&second);
  EXPECT_EQ(&things.find(handle), &first);
  EXPECT_EQ(things.handle(&first), handle);
}

TEST_F(HandlesTest, IsNoAddress) {
  Thing thing;
  EXPECT_NE(static_cast<void *>(things.add(&thing)), static_cast<void *>(&thing));
}

TEST_F(HandlesTest, TheSameObjectHasTheSameHandle) {
  Thing thing;
  EXPECT_EQ(things.add(&thing), things.add(&thing));
  EXPECT_EQ(things.size(), 1U);
}

TEST_F(HandlesTest, OfARemovedObjectIsAnErrorThoughAnotherObjectHasItsAddress) {
  Thing thing;
  const ThingHandle stale = things.add(&thing);
  things.remove(&thing);
  const ThingHandle fresh = things.add(&thing);
  EXPECT_NE(fresh, stale);
  EXPECT_EQ(codeOf(stale), tavrel::errBadHandle);
  EXPECT_EQ(&things.find(fresh), &thing);
}

TEST_F(HandlesTest, OfAnotherKindIsAnError) {
  Thing thing;
  things.add(&thing);
  host::Handles<OtherHandle, Thing> others("other");
  const OtherHandle other = others.add(&thing);
  EXPECT_EQ(codeOf(reinterpret_cast<ThingHandle>(other)), tavrel::errBadHandle);
}

TEST_F(HandlesTest, NullAndUnknownObjectsHaveNone) {
  const Thing unknown;
  EXPECT_EQ(things.handle(nullptr), nullptr);
  EXPECT_EQ(things.handle(&unknown), nullptr);
  EXPECT_EQ(codeOf(nullptr), tavrel::errBadHandle);
}

TEST_F(HandlesTest, TheErrorNamesTheKind) {
  try {
    things.find(nullptr);
    ADD_FAILURE() << "null is no handle";
  } catch (const host::HostError &error) {
    EXPECT_STREQ(error.what(), "no such thing");
  }
}

TEST(HandleNumbers, EndInsteadOfStartingAgain) {
  host::HandleNumbers numbers(std::numeric_limits<uintptr_t>::max() - 1);
  EXPECT_EQ(numbers.next(), std::numeric_limits<uintptr_t>::max());
  EXPECT_THROW(numbers.next(), host::HostError);
}

} // namespace
