// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Byte helpers of the platform part.
#include <gtest/gtest.h>

#include <string>

#include "plugin/md/mdUtils.h"
#include "tests/plugin/md/setting.h"
#include "tests/support/Rows.h"

namespace {

struct SwabRow : Row {
  int32_t count;
  const char *destination;
  ptrdiff_t read;
};

class Swab : public testing::TestWithParam<SwabRow> {};

TEST_P(Swab, SwapsPairs) {
  const char source[] = "abcdef";
  char destination[] = "......";
  EXPECT_EQ(mdSwab(source, destination, GetParam().count) - source, GetParam().read);
  EXPECT_STREQ(destination, GetParam().destination);
}

const SwabRow pairs[] = {
    {{"Negative"}, -2, "......", 0},
    {{"Smallest"}, INT32_MIN, "......", 0},
    {{"None"}, 0, "......", 0},
    {{"One"}, 1, "......", 0},
    {{"Two"}, 2, "ba....", 2},
    {{"Four"}, 4, "badc..", 4},
    {{"FiveLeavesTheFifth"}, 5, "badc..", 4},
    {{"Six"}, 6, "badcfe", 6},
};
INSTANTIATE_TEST_SUITE_P(Counts, Swab, testing::ValuesIn(pairs), rowName<SwabRow>);

TEST(SwabInPlace, SwapsPairs) {
  char bytes[] = "abcdef";
  mdSwab(bytes, bytes, 6);
  EXPECT_STREQ(bytes, "badcfe");
}

struct CompareRow : Row {
  const char *a, *b;
  int result;
};

class CaselessOrder : public testing::TestWithParam<CompareRow> {};

TEST_P(CaselessOrder, Is) {
  EXPECT_EQ(mdStricmp(GetParam().a, GetParam().b), GetParam().result);
  EXPECT_EQ(mdStricmp(GetParam().b, GetParam().a), -GetParam().result);
}

const CompareRow texts[] = {
    {{"Empty"}, "", "", 0},
    {{"Caseless"}, "abC", "ABc", 0},
    {{"FirstDifferenceCounts"}, "abc", "ABD", -1},
    {{"LongerIsGreater"}, "abc", "AB", 1},
    {{"EmptyIsLess"}, "", "A", -1},
    {{"DigitsBeforeLetters"}, "9", "a", -1},
    {{"CapitalsFoldBeforeComparing"}, "_", "A", -1},
    {{"HighBytesBeforeLetters"}, "\xE4", "a", -1},
    {{"HighBytesBeforeEverything"}, "\x80", "\x01", -1},
    {{"LongerIsGreaterWithAHighByteToo"}, "a\xFF", "a", 1},
    {{"HighBytesAmongThemselves"}, "\x80", "\xFF", -1},
};
INSTANTIATE_TEST_SUITE_P(Texts, CaselessOrder, testing::ValuesIn(texts), rowName<CompareRow>);

TEST(CommonInit, Succeeds) {
  RecordingHost host;
  EXPECT_EQ(mdCommonInit(), 1);
  EXPECT_EQ(host.trace, std::vector<std::string>{});
}

} // namespace
