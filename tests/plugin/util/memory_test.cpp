// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Memory from the host, with a raise when it is exhausted, and the plain wrappers.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "plugin/util/miUtils.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/util/strings.h"
#include "tests/support/FailingMemory.h"
#include "tests/support/Rows.h"

namespace {

using Calls = std::vector<std::string>;

const Calls raised(const std::string &call) { return {call, "Kernel.RaiseError(2)"}; }

std::string bytesOf(const void *block, size_t size) { return std::string(static_cast<const char *>(block), size); }

TEST(Calloc, AllocatesFromTheHostAndClears) {
  RecordingHost host;
  void *block = TScalloc(3, 4);
  EXPECT_EQ(host.trace, (Calls{"TavrelSupport.Malloc(12)"}));
  EXPECT_EQ(host.blocks.count(block), 1U);
  EXPECT_EQ(bytesOf(block, 12), std::string(12, '\0'));
}

TEST(Calloc, ClearsWhatTheHostLeftThere) {
  RecordingHost host;
  char dirty[] = "dirty";
  host.answer(TavrelSupport::Malloc, std::function([&](uint32_t) -> void * { return dirty; }));
  EXPECT_EQ(TScalloc(1, 3), dirty);
  EXPECT_EQ(bytesOf(dirty, 5), std::string("\0\0\0ty", 5));
}

TEST(Calloc, NullWhenMemoryIsExhausted) {
  RecordingHost host;
  host.failAt(0);
  EXPECT_EQ(TScalloc(3, 4), nullptr);
  EXPECT_EQ(host.trace, (Calls{"TavrelSupport.Malloc(12)"}));
}

// Sizes are 32-bit, also where an address is wider: the product wraps around.
TEST(Calloc, ProductKeeps32Bits) {
  RecordingHost host;
  TScalloc(0x10000, 0x10001);
  EXPECT_EQ(host.trace, (Calls{"TavrelSupport.Malloc(65536)"}));
}

TEST(SureMalloc, AllocatesFromTheHost) {
  RecordingHost host;
  void *block = TSSureMalloc(10);
  EXPECT_EQ(host.trace, (Calls{"TavrelSupport.Malloc(10)"}));
  EXPECT_EQ(host.blocks.count(block), 1U);
}

TEST(SureCalloc, AllocatesFromTheHostAndClears) {
  RecordingHost host;
  void *block = TSSureCalloc(2, 5);
  EXPECT_EQ(host.trace, (Calls{"TavrelSupport.Malloc(10)"}));
  EXPECT_EQ(bytesOf(block, 10), std::string(10, '\0'));
}

TEST(SureRealloc, ResizesABlock) {
  RecordingHost host;
  void *block = TSSureMalloc(4);
  memcpy(block, "abc", 4);
  block = TSSureRealloc(block, 4000);
  EXPECT_EQ(host.trace.back(), "TavrelSupport.Realloc(*, 4000)");
  EXPECT_EQ(bytesOf(block, 4), std::string("abc\0", 4));
}

TEST(SureRealloc, NullIsANewClearedBlock) {
  RecordingHost host;
  void *block = TSSureRealloc(nullptr, 6);
  EXPECT_EQ(host.trace, (Calls{"TavrelSupport.Malloc(6)"}));
  EXPECT_EQ(bytesOf(block, 6), std::string(6, '\0'));
}

// Exhausted memory is host error 2, which propagates to the innermost frame.

struct SureRow : Row {
  void *(*allocate)();
  const char *call;
};

class SureAllocation : public testing::TestWithParam<SureRow> {};

char s_block[4];

TEST_P(SureAllocation, RaisesError2WhenMemoryIsExhausted) {
  RecordingHost host;
  host.failAt(0);
  EXPECT_FALSE(host.run([&] { GetParam().allocate(); }));
  EXPECT_EQ(host.trace, raised(GetParam().call));
  EXPECT_EQ(Kernel::GetExceptionCode(), tavrel::errNoMemory);
}

TEST_P(SureAllocation, IsNullWhenTheRaiseReturns) {
  RecordingHost host;
  host.failAt(0);
  host.answer(Kernel::RaiseError, std::function([](int32_t) {}));
  EXPECT_EQ(GetParam().allocate(), nullptr);
  EXPECT_EQ(host.trace, raised(GetParam().call));
}

const SureRow sureAllocations[] = {
    {{"Malloc"}, [] { return TSSureMalloc(9); }, "TavrelSupport.Malloc(9)"},
    {{"Calloc"}, [] { return TSSureCalloc(3, 3); }, "TavrelSupport.Malloc(9)"},
    {{"Realloc"}, [] { return TSSureRealloc(s_block, 9); }, "TavrelSupport.Realloc(*, 9)"},
    {{"ReallocOfNull"}, [] { return TSSureRealloc(nullptr, 9); }, "TavrelSupport.Malloc(9)"},
};
INSTANTIATE_TEST_SUITE_P(Each, SureAllocation, testing::ValuesIn(sureAllocations), rowName<SureRow>);

// Blocks of the C library.

TEST(IfNotNullFree, FreesOrDoesNothing) {
  RecordingHost host;
  const size_t blocks = liveBlocks();
  void *block = malloc(3);
  EXPECT_EQ(liveBlocks(), blocks + 1);
  TSIfNotNullFree(nullptr);
  EXPECT_EQ(liveBlocks(), blocks + 1);
  TSIfNotNullFree(block);
  EXPECT_EQ(liveBlocks(), blocks);
  EXPECT_EQ(host.trace, Calls{});
}

TEST(CopyMem, IsASeparateCopy) {
  const char source[] = "a\0b";
  void *copy = miCopyMem(source, 4);
  EXPECT_NE(copy, source);
  EXPECT_EQ(bytesOf(copy, 4), bytesOf(source, 4));
  TSIfNotNullFree(copy);
}

TEST(CopyMem, NullWhenMemoryIsExhausted) {
  const FailingMemory memory(0);
  EXPECT_EQ(miCopyMem("abc", 4), nullptr);
}

TEST(CopyStr, ByteString) {
  char *copy = miCopyStrImpl("abc");
  EXPECT_STREQ(copy, "abc");
  TSIfNotNullFree(copy);
}

TEST(CopyStr, UcsStringWithItsTerminatingUnit) {
  const std::string source = ended(ucs("AB"));
  char *copy = miCopyStrImpl(source.c_str());
  EXPECT_EQ(bytesOf(copy, 8), source);
  TSIfNotNullFree(copy);
}

TEST(CopyStr, NullOfNull) { EXPECT_EQ(miCopyStrImpl(nullptr), nullptr); }

TEST(CopyStr, NullWhenMemoryIsExhausted) {
  const FailingMemory memory(0);
  EXPECT_EQ(miCopyStrImpl("abc"), nullptr);
}

// Wrappers: each does what its namesake does and returns the destination.

TEST(Wrappers, Memset) {
  std::string block = dots(5);
  EXPECT_EQ(miMemsetSAFE(block.data(), 'x', 3), block.data());
  EXPECT_EQ(block, "xxx..");
}

TEST(Wrappers, Memcpy) {
  std::string block = dots(5);
  EXPECT_EQ(miMemcpySAFE(block.data(), "a\0b", 3), block.data());
  EXPECT_EQ(block, std::string("a\0b..", 5));
}

TEST(Wrappers, MemmoveOverlaps) {
  std::string block = "abcdef";
  EXPECT_EQ(miMemmoveSAFE(block.data() + 1, block.data(), 4), block.data() + 1);
  EXPECT_EQ(block, "aabcdf");
  miMemmoveSAFE(block.data(), block.data() + 1, 4);
  EXPECT_EQ(block, "abcddf");
}

TEST(Wrappers, SizeZeroDoesNothing) {
  std::string block = dots(2);
  miMemsetSAFE(block.data(), 'x', 0);
  miMemcpySAFE(block.data(), "ab", 0);
  miMemmoveSAFE(block.data(), "ab", 0);
  EXPECT_EQ(block, dots(2));
}

TEST(Wrappers, StrcpyAndStrcat) {
  std::string text = dots(8);
  EXPECT_EQ(miStrcpy_localSAFE(text.data(), "abc"), text.data());
  EXPECT_EQ(miStrcat_localSAFE(text.data(), "de"), text.data());
  EXPECT_EQ(text, "abcde" + nul + "..");
}

TEST(Wrappers, SearchesForBytes) {
  const char text[] = "a.b.c";
  EXPECT_EQ(miStrchr(text, '.'), text + 1);
  EXPECT_EQ(miStrrchr(text, '.'), text + 3);
  EXPECT_EQ(miStrstr(text, ".c"), text + 3);
  EXPECT_EQ(miStrchr(text, 'x'), nullptr);
  EXPECT_EQ(miStrrchr(text, 'x'), nullptr);
  EXPECT_EQ(miStrstr(text, "cc"), nullptr);
  EXPECT_EQ(miStrchr(text, '\0'), text + 5);
}

struct NumberRow : Row {
  const char *text;
  int32_t value;
};

class WrappedNumber : public testing::TestWithParam<NumberRow> {};

TEST_P(WrappedNumber, Reads) {
  EXPECT_EQ(miAtoi(GetParam().text), GetParam().value);
  EXPECT_EQ(miAtol(GetParam().text), GetParam().value);
}

const NumberRow numbers[] = {
    {{"Number"}, "120", 120},
    {{"Negative"}, "-7", -7},
    {{"SpacesAndSign"}, " \t+7", 7},
    {{"DigitsInFront"}, "12ab", 12},
    {{"NoNumber"}, "ab", 0},
    {{"Empty"}, "", 0},
    {{"LeadingZeros"}, "0012", 12},
    {{"Largest"}, "2147483647", INT32_MAX},
    {{"OneAboveIsClamped"}, "2147483648", INT32_MAX},
    {{"Smallest"}, "-2147483648", INT32_MIN},
    {{"OneBelowIsClamped"}, "-2147483649", INT32_MIN},
    {{"Beyond64BitsIsClamped"}, "99999999999999999999999", INT32_MAX},
    {{"Below64BitsIsClamped"}, "-99999999999999999999999", INT32_MIN},
};
INSTANTIATE_TEST_SUITE_P(Texts, WrappedNumber, testing::ValuesIn(numbers), rowName<NumberRow>);

} // namespace
