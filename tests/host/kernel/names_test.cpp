// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Atoms, callbacks, plug-in numbers: what things are called.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestPlugin.h"
#include "tavrel/Kernel.h"

namespace {

using test::TestPlugin;

void someFunction() {}
void anotherFunction() {}

struct Names : testing::Test {
  host::Runtime runtime;
  TestPlugin testPlugin{runtime};
};

TEST_F(Names, TheSameNameHasTheSameAtom) {
  EXPECT_EQ(Kernel::AtomFromString("TavrelGLT"), Kernel::AtomFromString("TavrelGLT"));
}

TEST_F(Names, AnotherNameHasAnotherAtom) { EXPECT_NE(Kernel::AtomFromString("a"), Kernel::AtomFromString("b")); }

TEST_F(Names, AnAtomIsNeverZero) { EXPECT_NE(Kernel::AtomFromString(""), 0); }

TEST_F(Names, TheNameOfAnAtomIsCopied) {
  char name[] = "Prev";
  const tavrel::Atom atom = Kernel::AtomFromString(name);
  name[0] = 'x';
  EXPECT_EQ(runtime.atoms.name(atom), "Prev");
}

TEST_F(Names, AnAtomWithoutANameRaises) {
  EXPECT_EQ(testPlugin.attempt([] { Kernel::AtomFromString(nullptr); }), tavrel::errBadArgument);
}

TEST_F(Names, OneAtomTooManyRaisesInsteadOfReusingANumber) {
  for (int n = 0; n < 0xFFFF; ++n)
    try {
      runtime.atoms.atom("name " + std::to_string(n));
    } catch (const host::HostError &) {
      break; // the host's own tables have some of them
    }
  EXPECT_EQ(testPlugin.attempt([] { Kernel::AtomFromString("one more"); }), tavrel::errNoMemory);
  EXPECT_EQ(runtime.atoms.name(0xFFFF).substr(0, 5), "name ");
}

TEST_F(Names, ACallbackIsTheFunctionItself) {
  EXPECT_EQ(Kernel::CreateCallback(testPlugin.id, someFunction), tavrel::entryOf(someFunction));
}

TEST_F(Names, RegisteringACallbackAgainCostsNothing) {
  const auto before = runtime.callbacks.size();
  for (int n = 0; n < 1000; ++n)
    Kernel::CreateCallback(testPlugin.id, someFunction);
  EXPECT_EQ(runtime.callbacks.size(), before + 1);
}

TEST_F(Names, TheHostKnowsWhoseACallbackIs) {
  const tavrel::ExtensionID other = runtime.extensions.add("other");
  Kernel::CreateCallback(testPlugin.id, someFunction);
  Kernel::CreateCallback(other, anotherFunction);
  EXPECT_EQ(runtime.callbacks.owner(tavrel::entryOf(someFunction)), testPlugin.id);
  EXPECT_EQ(runtime.callbacks.owner(tavrel::entryOf(anotherFunction)), other);
}

TEST_F(Names, ACallbackOfAnotherPluginRaises) {
  const tavrel::ExtensionID other = runtime.extensions.add("other");
  Kernel::CreateCallback(testPlugin.id, someFunction);
  EXPECT_EQ(testPlugin.attempt([=] { Kernel::CreateCallback(other, someFunction); }), tavrel::errBadArgument);
}

TEST_F(Names, ACallbackWithoutAFunctionRaises) {
  EXPECT_EQ(testPlugin.attempt([this] { Kernel::CreateCallback(testPlugin.id, nullptr); }), tavrel::errBadArgument);
}

TEST_F(Names, ACallbackOfAnUnknownPluginRaises) {
  EXPECT_EQ(testPlugin.attempt([] { Kernel::CreateCallback(4711, someFunction); }), tavrel::errBadHandle);
}

TEST_F(Names, TheHostHasCallbacksOfItsOwn) {
  EXPECT_EQ(testPlugin.attempt([] { Kernel::CreateCallback(host::hostExtension, someFunction); }), 0);
  EXPECT_EQ(runtime.callbacks.owner(tavrel::entryOf(someFunction)), host::hostExtension);
}

TEST_F(Names, ARetiredPluginIsNotCalled) {
  bool called = false;
  runtime.extensions.retire(testPlugin.id);
  testPlugin.attempt([&] { called = true; });
  EXPECT_FALSE(called);
}

TEST_F(Names, ACallOfARetiredPluginIsACallThatFailed) {
  runtime.extensions.retire(testPlugin.id);
  EXPECT_FALSE(host::runInPlugin(
      {testPlugin.id, "the body"}, [](void *) {}, nullptr));
}

} // namespace
