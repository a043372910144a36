// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The reader's small helpers: colours, reversed hexadecimal digits, comparison.
#include <gtest/gtest.h>

#include "plugin/input/gltAux.h"
#include "tests/support/Rows.h"

namespace {

struct RGBRow : Row {
  std::string text;
  int result;
  uint16_t red, green, blue; ///< 77 stays as it was
  std::string after;
};

class RGB : public testing::TestWithParam<RGBRow> {};

TEST_P(RGB, Parses) {
  std::string text = GetParam().text;
  uint16_t red = 77, green = 77, blue = 77;
  EXPECT_EQ(ParseRGB(text.data(), &red, &green, &blue), GetParam().result);
  EXPECT_EQ((std::vector<uint16_t>{red, green, blue}),
            (std::vector<uint16_t>{GetParam().red, GetParam().green, GetParam().blue}));
  EXPECT_EQ(text, GetParam().after);
}

const RGBRow colors[] = {
    {{"PairsOfDigits"}, "FF8000", 1, 255, 8, 0, "FF8000"},
    {{"LeftDigitIsTheLesser"}, "102030", 1, 1, 2, 3, "102030"},
    {{"BecomesUpperCase"}, "abcdef", 1, 0xBA, 0xDC, 0xFE, "ABCDEF"},
    {{"Empty"}, "", 1, 0, 0, 0, ""},
    {{"OneDigit"}, "7", 1, 7, 0, 0, "7"},
    {{"TwoDigits"}, "12", 1, 33, 0, 0, "12"},
    {{"ThreeDigits"}, "123", 1, 33, 3, 0, "123"},
    {{"FiveDigits"}, "12345", 1, 33, 67, 5, "12345"},
    {{"MoreThanSixDigits"}, "1020304050", 1, 1, 2, 3, "1020304050"},
    {{"NoDigit"}, "12g456", 0, 77, 77, 77, "12G456"},
    {{"UpperCaseAsFarAsItGets"}, "ab-cd", 0, 77, 77, 77, "AB-cd"},
    {{"HexadecimalPrefixIsNoColour"}, "0x00FF00", 0, 77, 77, 77, "0X00FF00"},
    {{"LetterAfterF"}, "00000G", 0, 77, 77, 77, "00000G"},
    {{"CharacterAfterTheLetters"}, "00~", 0, 77, 77, 77, "00~"},
    {{"HighByte"}, "00\xE4", 0, 77, 77, 77, "00\xE4"},
};
INSTANTIATE_TEST_SUITE_P(Colors, RGB, testing::ValuesIn(colors), rowName<RGBRow>);

TEST(RGBNull, IsNoColour) {
  uint16_t red = 77, green = 77, blue = 77;
  EXPECT_EQ(ParseRGB(nullptr, &red, &green, &blue), 0);
  EXPECT_EQ(red, 77);
}

struct HexRow : Row {
  const char *text;
  uint16_t value;
};

class ReversedHexadecimal : public testing::TestWithParam<HexRow> {};

TEST_P(ReversedHexadecimal, Reads) {
  uint16_t value = 77;
  EXPECT_EQ(HexToInt(GetParam().text, &value), 1);
  EXPECT_EQ(value, GetParam().value);
}

const HexRow digits[] = {
    {{"FF"}, "FF", 255},
    {{"EightyIsEight"}, "80", 8},
    {{"ZeroF"}, "0F", 240},
    {{"Twelve"}, "12", 33},
    {{"Empty"}, "", 0},
    {{"OneDigit"}, "A", 10},
    {{"FourDigits"}, "1234", 0x4321},
    {{"FifthDigitIsLeftOut"}, "12349", 0x4321},
    {{"Largest"}, "FFFF", 0xFFFF},
    {{"LowerCaseIsItsCodeMinus55"}, "a0", 42},
    {{"AnyCharacterIsItsCodeMinus55"}, "!", 0xFFEA},
    {{"Keeps16Bits"}, "000z", 0x3000},
};
INSTANTIATE_TEST_SUITE_P(Digits, ReversedHexadecimal, testing::ValuesIn(digits), rowName<HexRow>);

TEST(ReversedHexadecimalNull, LeavesTheValue) {
  uint16_t value = 77;
  EXPECT_EQ(HexToInt(nullptr, &value), 0);
  EXPECT_EQ(value, 77);
}

struct CompareRow : Row {
  const char *a, *b;
  int difference;
};

class CaselessComparison : public testing::TestWithParam<CompareRow> {};

TEST_P(CaselessComparison, IsTheDifference) {
  EXPECT_EQ(gltstricmp(GetParam().a, GetParam().b), GetParam().difference);
  EXPECT_EQ(gltstricmp(GetParam().b, GetParam().a), -GetParam().difference);
}

const CompareRow comparisons[] = {
    {{"Empty"}, "", "", 0},
    {{"Equal"}, "units", "units", 0},
    {{"Caseless"}, "Units", "uNITS", 0},
    {{"Different"}, "abc", "ABD", -1},
    {{"FirstDifferenceCounts"}, "azz", "baa", -1},
    {{"FurtherApart"}, "Z", "a", 25},
    {{"Shorter"}, "ab", "abc", -'c'},
    {{"EmptyAndNot"}, "", "X", -'x'},
    {{"NotLetters"}, "[", "a", '[' - 'a'},
};
INSTANTIATE_TEST_SUITE_P(Texts, CaselessComparison, testing::ValuesIn(comparisons), rowName<CompareRow>);

TEST(AllDigits, OnlyDigitsOrNothing) {
  EXPECT_EQ(isallnum("0123456789"), 1);
  EXPECT_EQ(isallnum(""), 1);
  for (const char *text : {"12a", "a12", "-1", "1:", "1/", "1.0", " 1", "1 ", "\xB2"})
    EXPECT_EQ(isallnum(text), 0) << text;
}

} // namespace
