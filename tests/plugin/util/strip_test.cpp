// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// White space in both kinds of strings.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include <cstring>

#include "plugin/util/miText.h"
#include "tests/plugin/util/strings.h"
#include "tests/support/Rows.h"

namespace {

TEST(Space, IsOneOfSixBytes) {
  for (int byte = 0; byte < 0x100; ++byte)
    EXPECT_EQ(miIsspace(static_cast<uint8_t>(byte)), byte == ' ' || (byte >= 9 && byte <= 13) ? 1 : 0) << byte;
}

// Only the low four bits of a unit below 0x100 are tested: a space is no white space, 0x0019 is.
TEST(Space, UnitIsTestedByItsLowFourBits) {
  for (int unit = 0; unit < 0x100; ++unit)
    EXPECT_EQ(miUCSIsSpace(static_cast<uint16_t>(unit)), unit % 16 >= 9 && unit % 16 <= 13 ? 1 : 0) << unit;
  EXPECT_EQ(miUCSIsSpace(0x0020), 0);
  for (const uint16_t unit : {0x0109, 0x2009, 0x3000, 0xFF0D})
    EXPECT_EQ(miUCSIsSpace(unit), 0) << unit;
}

struct StripRow : Row {
  std::string text, ends, all;
};

class Strip : public testing::TestWithParam<StripRow> {
protected:
  /// The string and its two terminators after it has been stripped.
  static std::string stripped(tavrel::Bool16 (*strip)(char *), const std::string &expected) {
    std::string buffer = ended(GetParam().text);
    const bool empty = expected.empty() || expected == ucs("");
    EXPECT_EQ(strip(buffer.data()), empty ? 0 : 1);
    return buffer.substr(0, expected.size() + (expected.starts_with("\xFE\xFF") ? 2 : 1));
  }
  static std::string terminated(const std::string &text) {
    return text + (text.starts_with("\xFE\xFF") ? nulUnit : nul);
  }
};

TEST_P(Strip, RemovesBothEnds) { EXPECT_EQ(stripped(miStrip, GetParam().ends), terminated(GetParam().ends)); }

TEST_P(Strip, RemovesAll) { EXPECT_EQ(stripped(miStripAll, GetParam().all), terminated(GetParam().all)); }

const StripRow bytes[] = {
    {{"BothEnds"}, "  a b  ", "a b", "ab"},
    {{"OnlySpace"}, " \t\n\v\f\r", "", ""},
    {{"Empty"}, "", "", ""},
    {{"Nothing"}, "abc", "abc", "abc"},
    {{"InTheMiddle"}, " a b\tc ", "a b\tc", "abc"},
    {{"OneCharacter"}, "\na", "a", "a"},
    {{"HighBytesStay"}, "\x85 \xA0", "\x85 \xA0", "\x85\xA0"},
};
INSTANTIATE_TEST_SUITE_P(Bytes, Strip, testing::ValuesIn(bytes), rowName<StripRow>);

const StripRow units[] = {
    {{"BothEnds"}, ucs("  a b  "), ucs("a b"), ucs("ab")},
    {{"SpaceAfterTwoUnits"}, ucs("ab "), ucs("ab"), ucs("ab")},
    {{"ZeroBytesAcrossTwoUnits"}, ucs({0x4100, 'b'}), ucs({0x4100, 'b'}), ucs({0x4100, 'b'})},
    {{"OnlySpace"}, ucs(" \t\n\v\f\r"), ucs(""), ucs("")},
    {{"MarkAlone"}, ucs(""), ucs(""), ucs("")},
    {{"Nothing"}, ucs("abc"), ucs("abc"), ucs("abc")},
    {{"HighByteMakesItAnotherUnit"},
     ucs({0x0120, 'a', 0x0109}),
     ucs({0x0120, 'a', 0x0109}),
     ucs({0x0120, 'a', 0x0109})},
    {{"LowNibbleIsNotEnough"}, ucs({0x19, 'a', 0x1D}), ucs({0x19, 'a', 0x1D}), ucs({0x19, 'a', 0x1D})},
    // Two zero bytes that are halves of two units end the moved text, but not the string.
    {{"ZeroBytesAcrossTwoLaterUnits"},
     ucs({0x4142, 0x4300, 'd'}),
     ucs({0x4142, 0x4300, 'd'}),
     ucs({0x4142, 0x4300, 'd'})},
    {{"SpaceBeforeZeroBytesAcrossTwoUnits"},
     ucs({'a', ' ', 0x4300, 'd'}),
     ucs({'a', ' ', 0x4300, 'd'}),
     ucs({'a', 0x4300, 'd'})},
    {{"SpaceAtTheEndAfterZeroBytesAcrossTwoUnits"}, ucs({0x4100, 'b', ' '}), ucs({0x4100, 'b'}), ucs({0x4100, 'b'})},
    {{"MovedByOneUnitEndsWhereAThirdZeroByteIs"},
     ucs({' ', 0x4142, 0x4300, 'd'}),
     ucs({0x4142, 0x4300}),
     ucs({0x4142, 0x4300, 'd'})},
    {{"MovedByTwoUnitsLeavesTheRestInPlace"},
     ucs({' ', ' ', 0x4142, 0x4300, 'd'}),
     ucs({0x4142, 0x4300, 0x0042, 0x4300, 'd'}),
     ucs({0x4142, 0x4300, 'd'})},
    {{"ZeroBytesApart"},
     ucs({' ', 0x4100, 0x4200, 0x4300}),
     ucs({0x4100, 0x4200, 0x4300}),
     ucs({0x4100, 0x4200, 0x4300})},
};
INSTANTIATE_TEST_SUITE_P(Ucs, Strip, testing::ValuesIn(units), rowName<StripRow>);

TEST(UcsStrip, WritesTwoZeroBytesWhereTheCopyingStopped) {
  std::string text = ucs({' ', ' ', 0x4142, 0x4300, 'd'}) + nulUnit;
  miUCSStrip(text.data());
  EXPECT_EQ(text, std::string("\xFE\xFF\x41\x42\x43\0\0\x42\x43\0\0d\0\0", 14));
}

TEST(StripOfNull, IsEmpty) {
  EXPECT_EQ(miStripAll(nullptr), 0);
  EXPECT_EQ(miUCSStripAll(nullptr), 0);
}

TEST(StripAll, ExaminesNoMoreThan65535Positions) {
  for (const auto &[positions, left] :
       std::vector<std::pair<size_t, std::string>>{{65534, "b"}, {65535, " b"}, {70000, " b"}}) {
    std::string text = std::string(positions, 'a') + " b";
    EXPECT_EQ(miStripAll(text.data()), 1);
    EXPECT_EQ(text.c_str(), std::string(positions, 'a') + left) << positions;
  }
}

/// So many spaces and an "a", a space and a "b".
std::string spacesBefore(size_t count) {
  std::string text = "\xFE\xFF";
  for (size_t i = 0; i < count; ++i)
    text += std::string("\0 ", 2);
  return text + std::string("\0a\0 \0b\0\0", 8);
}

TEST(UcsStripAll, ExaminesNoMoreThan65535Units) {
  for (const auto &[spaces, left] : std::vector<std::pair<size_t, std::string>>{
           {65533, ucs("ab")}, {65534, ucs("a b")}, {65535, ucs("a b")}, {65536, ucs(" a b")}}) {
    std::string text = spacesBefore(spaces);
    EXPECT_EQ(miUCSStripAll(text.data()), 1);
    EXPECT_EQ(text.substr(0, left.size() + 2), left + nulUnit) << spaces;
  }
}

} // namespace
