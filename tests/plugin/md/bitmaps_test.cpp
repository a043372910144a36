// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The built-in bitmaps and the icon bundle. What needs a display is in shell_test.cpp.
#include <gtest/gtest.h>

#include <bit>
#include <cstddef>
#include <cstring>

#include "plugin/md/mdUtils.h"
#include "tests/plugin/md/setting.h"
#include "tests/support/FailingMemory.h"

using namespace tavrel;

namespace {

using Calls = std::vector<std::string>;

const std::vector<unsigned char> nextBits = {0x00, 0x00, 0x80, 0x1f, 0x81, 0x30, 0x83, 0x50, 0x87, 0xf0, 0x8f,
                                             0x80, 0x9f, 0x80, 0xbf, 0xbe, 0xbf, 0x80, 0x9f, 0xbe, 0x8f, 0x80,
                                             0x87, 0xbe, 0x83, 0x80, 0x81, 0x80, 0x80, 0xff, 0x00, 0x00};
const std::vector<unsigned char> prevBits = {0x00, 0x00, 0x3f, 0x00, 0x61, 0x80, 0xa1, 0xc0, 0xe1, 0xe1, 0x01,
                                             0xf1, 0x01, 0xf9, 0x7d, 0xfd, 0x01, 0xfd, 0x7d, 0xf9, 0x01, 0xf1,
                                             0x7d, 0xe1, 0x01, 0xc1, 0x01, 0x81, 0xff, 0x01, 0x00, 0x00};

void expectEntry(uint16_t id, const char *name, const std::vector<unsigned char> &bits) {
  EXPECT_STREQ(bitmapData[id].name, name);
  EXPECT_STREQ(bitmapData[id].className, name);
  EXPECT_EQ(std::vector<unsigned char>(bitmapData[id].bits, bitmapData[id].bits + 32), bits);
  EXPECT_EQ(bitmapData[id].width, 16U);
  EXPECT_EQ(bitmapData[id].height, 16U);
}

TEST(BitmapTable, Next) { expectEntry(bitmapNext, "next", nextBits); }

TEST(BitmapTable, Prev) { expectEntry(bitmapPrev, "prev", prevBits); }

TEST(BitmapTable, IdentifiersOfTheButtons) {
  EXPECT_EQ(bitmapNext, 0);
  EXPECT_EQ(bitmapPrev, 1);
  EXPECT_EQ(std::size(bitmapData), 2U);
}

TEST(Bitmaps, LookedUpOnceWithAShell) {
  RecordingHost host;
  pretendShell(host);
  EXPECT_EQ(mdGetBitmap(0), 0x71U);
  EXPECT_EQ(mdGetBitmap(0), 0x71U);
  EXPECT_EQ(mdGetBitmap(1), 0x72U);
  EXPECT_EQ(host.trace, (Calls{R"(Desktop.GetResourceBitmap(shell, "next", "next", *, 16, 16))",
                               R"(Desktop.GetResourceBitmap(shell, "prev", "prev", *, 16, 16))"}));
}

TEST(Bitmaps, BitsArePassedToTheHost) {
  RecordingHost host;
  pretendShell(host);
  host.answer(Desktop::GetResourceBitmap,
              std::function([](Widget, const char *, const char *, const unsigned char *bits, uint32_t, uint32_t) {
                return Bitmap{bits[2]};
              }));
  EXPECT_EQ(mdGetBitmap(0), 0x80U);
  EXPECT_EQ(mdGetBitmap(1), 0x3fU);
}

TEST(Bitmaps, NoneWithoutAShellAndAskedAgainWithOne) {
  RecordingHost host;
  EXPECT_EQ(mdGetBitmap(0), 0U);
  EXPECT_EQ(host.trace, Calls{});
  pretendShell(host);
  EXPECT_EQ(mdGetBitmap(0), 0x71U);
}

TEST(Bitmaps, NoneFromTheHostIsAskedAgain) {
  RecordingHost host;
  pretendShell(host);
  host.failAt(0);
  EXPECT_EQ(mdGetBitmap(1), 0U);
  EXPECT_EQ(mdGetBitmap(1), 0x72U);
  EXPECT_EQ(host.count("GetResourceBitmap"), 2U);
}

TEST(Bitmaps, UnknownIdentifiersAreNotLookedUp) {
  RecordingHost host;
  pretendShell(host);
  for (const uint16_t id : {2, 3, 0x8000, 0xFFFF})
    EXPECT_EQ(mdGetBitmap(id), 0U) << id;
  EXPECT_EQ(host.trace, Calls{});
  EXPECT_EQ(bitmapCache[0], 0U);
  EXPECT_EQ(bitmapCache[1], 0U);
}

TEST(Bitmaps, ReleasedOnesStayCached) {
  RecordingHost host;
  pretendShell(host);
  const Bitmap bitmap = mdGetBitmap(0);
  host.clear();
  EXPECT_EQ(mdReleaseBitmap(bitmap), bitmap);
  EXPECT_EQ(mdReleaseBitmap(0), 0U);
  EXPECT_EQ(mdGetBitmap(0), bitmap);
  EXPECT_EQ(host.trace, Calls{});
}

TEST(Bitmaps, NoBitmapOrNoShellHasNoSize) {
  RecordingHost host;
  EXPECT_EQ(mdGetBitmapSize(0), 0U);
  EXPECT_EQ(mdGetBitmapSize(0x71), 0U) << "no shell";
  pretendShell(host);
  EXPECT_EQ(mdGetBitmapSize(0), 0U);
}

TEST(IconBundles, HaveAFixedLayout) {
  EXPECT_EQ(sizeof(IconBundle), 20U);
  EXPECT_EQ(offsetof(IconBundle, signature), 0U);
  EXPECT_EQ(offsetof(IconBundle, version), 8U);
  EXPECT_EQ(offsetof(IconBundle, bitmap), 12U);
}

TEST(IconBundles, HoldSignatureVersionAndBitmaps) {
  RecordingHost host;
  pretendShell(host);
  IconBundle *bundle = mdGetIconBundle(1, 0);
  ASSERT_NE(bundle, nullptr);
  uint32_t bundled[5];
  memcpy(bundled, bundle, sizeof bundled);
  EXPECT_EQ(std::vector<uint32_t>(bundled, bundled + 5),
            (std::vector<uint32_t>{0x54564943, 0x4F4E4255, 0x00050000, 0x72, 0x71}));
  mdReleaseIconBundle(bundle);
}

// The only result that depends on the machine's byte order.
TEST(IconBundles, ReadTheirNameWhereTheMostSignificantByteIsFirst) {
  RecordingHost host;
  IconBundle *bundle = mdGetIconBundle(0, 1);
  ASSERT_NE(bundle, nullptr);
  const std::string name(reinterpret_cast<const char *>(bundle), 8);
  EXPECT_EQ(name, std::endian::native == std::endian::big ? "TVICONBU" : "CIVTUBNO");
  mdReleaseIconBundle(bundle);
}

TEST(IconBundles, BitmapsThatAreNotAvailableAreZero) {
  RecordingHost host;
  IconBundle *bundle = mdGetIconBundle(0, 2);
  ASSERT_NE(bundle, nullptr);
  EXPECT_EQ(bundle->version, 0x00050000U);
  EXPECT_EQ(bundle->bitmap[0], 0U);
  EXPECT_EQ(bundle->bitmap[1], 0U);
  mdReleaseIconBundle(bundle);
}

TEST(IconBundles, NullWhenMemoryRunsOut) {
  RecordingHost host;
  pretendShell(host);
  const FailingMemory memory(0);
  EXPECT_EQ(mdGetIconBundle(0, 1), nullptr);
  EXPECT_EQ(host.trace, Calls{});
}

TEST(IconBundles, AreFreedWhenReleasedAndNoneIsAccepted) {
  RecordingHost host;
  const size_t blocks = liveBlocks(), freedTwice = blocksFreedTwice();
  IconBundle *bundle = mdGetIconBundle(0, 1);
  EXPECT_EQ(liveBlocks(), blocks + 1);
  mdReleaseIconBundle(bundle);
  mdReleaseIconBundle(nullptr);
  EXPECT_EQ(liveBlocks(), blocks);
  EXPECT_EQ(blocksFreedTwice(), freedTwice);
}

} // namespace
