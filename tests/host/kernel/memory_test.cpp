// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The host's allocator for plug-ins.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstring>

#include "TestPlugin.h"
#include "support/FailingMemory.h"
#include "tavrel/TavrelSupport.h"

// Defined where a sanitizer is linked.
extern "C" [[gnu::weak]] void __lsan_do_leak_check();

namespace {

using test::TestPlugin;

struct Memory : testing::Test {
  host::Runtime runtime;
  TestPlugin testPlugin{runtime};
};

TEST_F(Memory, ABlockCanBeWrittenToItsLastByte) {
  void *block = TavrelSupport::Malloc(1000);
  std::memset(block, 0xAB, 1000);
  TavrelSupport::Free(block);
  EXPECT_EQ(runtime.memory.blocks(), 0U);
}

TEST_F(Memory, ABlockOfNothingIsABlock) {
  const size_t before = liveBytes();
  void *block = TavrelSupport::Malloc(0);
  EXPECT_NE(block, nullptr);
  EXPECT_EQ(liveBytes(), before + 1);
  TavrelSupport::Free(block);
}

// The C library's realloc frees a block that is resized to nothing.
TEST_F(Memory, ABlockResizedToNothingIsABlock) {
  const size_t before = liveBytes();
  void *block = TavrelSupport::Realloc(TavrelSupport::Malloc(10), 0);
  EXPECT_NE(block, nullptr);
  EXPECT_EQ(liveBytes(), before + 1);
  EXPECT_EQ(runtime.memory.blocks(), 1U);
  EXPECT_EQ(runtime.memory.bytes(), 0U);
  TavrelSupport::Free(block);
}

TEST_F(Memory, ExhaustedMemoryIsNullNotARaise) {
  if (__lsan_do_leak_check != nullptr)
    GTEST_SKIP() << "the allocator of a sanitizer ends the program instead of giving null";
  rlimit before{};
  getrlimit(RLIMIT_AS, &before);
  rlimit narrow = before;
  narrow.rlim_cur = 1U << 30U;
  setrlimit(RLIMIT_AS, &narrow);
  void *fresh = nullptr, *resized = nullptr, *small = TavrelSupport::Malloc(10);
  EXPECT_EQ(testPlugin.attempt([&] {
    fresh = TavrelSupport::Malloc(UINT32_MAX);
    resized = TavrelSupport::Realloc(small, UINT32_MAX);
  }),
            0);
  setrlimit(RLIMIT_AS, &before);
  EXPECT_EQ(fresh, nullptr);
  EXPECT_EQ(resized, nullptr);
  EXPECT_EQ(runtime.memory.bytes(), 10U) << "the old block stays as it is";
  TavrelSupport::Free(small);
}

TEST_F(Memory, ResizingKeepsTheBytes) {
  auto *block = static_cast<char *>(TavrelSupport::Malloc(3));
  std::memcpy(block, "ab", 3);
  block = static_cast<char *>(TavrelSupport::Realloc(block, 100000));
  EXPECT_STREQ(block, "ab");
  EXPECT_EQ(runtime.memory.bytes(), 100000U);
  TavrelSupport::Free(block);
}

TEST_F(Memory, MemoryIsAccountedToThePluginBeingCalled) {
  void *ofTestPlugin = nullptr;
  testPlugin.attempt([&] { ofTestPlugin = TavrelSupport::Malloc(10); });
  void *ofHost = TavrelSupport::Malloc(7);
  EXPECT_EQ(runtime.memory.bytes(testPlugin.id), 10U);
  EXPECT_EQ(runtime.memory.bytes(host::hostExtension), 7U);
  EXPECT_EQ(runtime.memory.bytes(), 17U);
  TavrelSupport::Free(ofTestPlugin);
  TavrelSupport::Free(ofHost);
}

TEST_F(Memory, FreeingNullDoesNothing) {
  EXPECT_EQ(testPlugin.attempt([] { TavrelSupport::Free(nullptr); }), 0);
}

TEST_F(Memory, FreeingTwiceRaises) {
  EXPECT_EQ(testPlugin.attempt([] {
    void *block = TavrelSupport::Malloc(1);
    TavrelSupport::Free(block);
    TavrelSupport::Free(block);
  }),
            tavrel::errBadHandle);
}

TEST_F(Memory, FreeingAnUnknownBlockRaises) {
  static int mine;
  EXPECT_EQ(testPlugin.attempt([] { TavrelSupport::Free(&mine); }), tavrel::errBadHandle);
}

TEST_F(Memory, ResizingAnUnknownBlockRaises) {
  EXPECT_EQ(testPlugin.attempt([] { TavrelSupport::Realloc(nullptr, 1); }), tavrel::errBadHandle);
}

TEST_F(Memory, WhatAPluginLeavesIsFreedWithTheHost) {
  const size_t before = liveBlocks();
  {
    host::Memory memory;
    memory.allocate(testPlugin.id, 100);
    memory.resize(memory.allocate(testPlugin.id, 10), 1000);
    EXPECT_EQ(liveBlocks(), before + 2);
  }
  EXPECT_EQ(liveBlocks(), before);
}

} // namespace
