// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Lengths and comparisons of byte strings and of UCS strings.
#include <gtest/gtest.h>

#include "plugin/util/miUtils.h"
#include "tests/plugin/util/strings.h"
#include "tests/support/Rows.h"

namespace {

int sign(int32_t value) { return (value > 0) - (value < 0); }

struct LengthRow : Row {
  std::string text;
  bool ucs;
  uint32_t length;
};

class Length : public testing::TestWithParam<LengthRow> {};

TEST_P(Length, Is) {
  const std::string text = ended(GetParam().text);
  EXPECT_EQ(miIsUCS(text.c_str()), GetParam().ucs);
  EXPECT_EQ(miStrlen(text.c_str()), GetParam().length);
}

const LengthRow lengths[] = {
    {{"Empty"}, "", false, 0},
    {{"Bytes"}, "hello", false, 5},
    {{"HighBytes"}, "\xFF\xFE", false, 2},
    {{"HalfAMark"}, "\xFE", false, 1},
    {{"HalfAMarkAndMore"},
     "\xFE"
     "A\xFF",
     false,
     3},
    {{"MarkAlone"}, ucs(""), true, 2},
    {{"TwoUnits"}, ucs("AB"), true, 6},
    {{"UnitsWithZeroBytes"}, ucs({0x4100, 0x0041}), true, 6},
    {{"EndsAtTheFirstZeroUnit"}, ucs({0x41, 0x00, 0x42}), true, 4},
};
INSTANTIATE_TEST_SUITE_P(Strings, Length, testing::ValuesIn(lengths), rowName<LengthRow>);

struct CompareRow : Row {
  std::string a, b;
  int cased, caseless;
};

class Comparison : public testing::TestWithParam<CompareRow> {};

TEST_P(Comparison, Orders) {
  const std::string a = ended(GetParam().a), b = ended(GetParam().b);
  EXPECT_EQ(sign(miStrcmp(a.c_str(), b.c_str())), GetParam().cased);
  EXPECT_EQ(sign(miStrcmp(b.c_str(), a.c_str())), -GetParam().cased);
  EXPECT_EQ(sign(miStricmp(a.c_str(), b.c_str())), GetParam().caseless);
  EXPECT_EQ(sign(miStricmp(b.c_str(), a.c_str())), -GetParam().caseless);
  EXPECT_EQ(miStrEq(a.c_str(), b.c_str()), GetParam().cased == 0 ? 1 : 0);
}

const CompareRow byteStrings[] = {
    {{"Empty"}, "", "", 0, 0},       {{"Equal"}, "abc", "abc", 0, 0},    {{"Letters"}, "abc", "abd", -1, -1},
    {{"Case"}, "ABC", "abc", -1, 0}, {{"Shorter"}, "ab", "abc", -1, -1}, {{"HighBytes"}, "a", "\xE4", -1, -1},
};
INSTANTIATE_TEST_SUITE_P(Bytes, Comparison, testing::ValuesIn(byteStrings), rowName<CompareRow>);

const CompareRow ucsStrings[] = {
    {{"Empty"}, ucs(""), ucs(""), 0, 0},
    {{"Equal"}, ucs("abc"), ucs("abc"), 0, 0},
    {{"Letters"}, ucs("abc"), ucs("abd"), -1, -1},
    {{"Case"}, ucs("ABC"), ucs("abc"), -1, 0},
    {{"Shorter"}, ucs("ab"), ucs("abc"), -1, -1},
    {{"HighByteOrdersFirst"}, ucs({0x0141}), ucs({0x0241}), -1, -1},
    {{"HighByteBeforeLowByte"}, ucs({0x01FF}), ucs({0x0200}), -1, -1},
    {{"HighByteIsUnsigned"}, ucs({0x7F00}), ucs({0x8000}), -1, -1},
    {{"LowByteIsUnsigned"}, ucs({0x4E7F}), ucs({0x4E80}), -1, -1},
    {{"LowByteZeroIsNoEnd"}, ucs({0x4100, 0x41}), ucs({0x4100, 0x42}), -1, -1},
    {{"CaseOnlyWhereBothHighBytesAreZero"}, ucs({0x0141}), ucs({0x0161}), -1, -1},
    {{"CaseNotWhereOneHighByteIsZero"}, ucs({0x0041}), ucs({0x0161}), -1, -1},
};
INSTANTIATE_TEST_SUITE_P(Ucs, Comparison, testing::ValuesIn(ucsStrings), rowName<CompareRow>);

// One of each kind compares by bytes.
const CompareRow mixed[] = {
    {{"BytesAndUcs"}, "abc", ucs("abc"), -1, -1},
    {{"EmptyAndUcs"}, "", ucs(""), -1, -1},
    {{"HalfAMarkAndUcs"}, "\xFE", ucs("a"), -1, -1},
};
INSTANTIATE_TEST_SUITE_P(Mixed, Comparison, testing::ValuesIn(mixed), rowName<CompareRow>);

TEST(ComparisonOfUcs, YieldsNoMoreThanOne) {
  const std::string a = ended(ucs("a")), z = ended(ucs("z")), capital = ended(ucs("Z"));
  EXPECT_EQ(miStrcmp(a.c_str(), z.c_str()), -1);
  EXPECT_EQ(miStrcmp(z.c_str(), a.c_str()), 1);
  EXPECT_EQ(miStricmp(a.c_str(), capital.c_str()), -1);
  EXPECT_EQ(miStricmp(capital.c_str(), a.c_str()), 1);
}

struct EqualRow : Row {
  const char *a, *b;
  int result;
};

class Equality : public testing::TestWithParam<EqualRow> {};

TEST_P(Equality, Is) { EXPECT_EQ(miStrEq(GetParam().a, GetParam().b), GetParam().result); }

const EqualRow equalities[] = {
    {{"BothNull"}, nullptr, nullptr, 1},
    {{"OnlyTheFirstNull"}, nullptr, "x", 0},
    {{"OnlyTheSecondNull"}, "x", nullptr, 0},
    {{"NullIsNotEmpty"}, nullptr, "", 0},
    {{"EmptyIsNotNull"}, "", nullptr, 0},
    {{"Equal"}, "x", "x", 1},
    {{"Different"}, "x", "X", 0},
};
INSTANTIATE_TEST_SUITE_P(Strings, Equality, testing::ValuesIn(equalities), rowName<EqualRow>);

TEST(EqualityOfUcs, NullIsNotEmpty) {
  const std::string empty = ended(ucs(""));
  EXPECT_EQ(miStrEq(empty.c_str(), nullptr), 0);
  EXPECT_EQ(miStrEq(nullptr, empty.c_str()), 0);
}

struct BoundedRow : Row {
  std::string a, b;
  uint32_t n;
  int result;
};

class BoundedComparison : public testing::TestWithParam<BoundedRow> {};

TEST_P(BoundedComparison, Orders) {
  const std::string a = ended(GetParam().a), b = ended(GetParam().b);
  EXPECT_EQ(sign(miStrncmp(a.c_str(), b.c_str(), GetParam().n)), GetParam().result);
  EXPECT_EQ(sign(miStrncmp(b.c_str(), a.c_str(), GetParam().n)), -GetParam().result);
}

const BoundedRow bounded[] = {
    {{"NoBytes"}, "a", "b", 0, 0},
    {{"BeforeTheDifference"}, "abc", "abd", 2, 0},
    {{"AtTheDifference"}, "abc", "abd", 3, -1},
    {{"BothEndBefore"}, "ab", "ab", 9, 0},
    {{"OneEndsBefore"}, "ab", "abc", 9, -1},
    {{"MixedKinds"}, "abc", ucs("abc"), 1, -1},
    {{"UcsNoBytes"}, ucs("a"), ucs("b"), 0, 0},
    {{"UcsMarkOnly"}, ucs("a"), ucs("b"), 2, 0},
    {{"UcsOddCountsTheHighByteOnly"}, ucs({0x0141}), ucs({0x0142}), 3, 0},
    {{"UcsOddSeesTheHighByte"}, ucs({0x0142}), ucs({0x0241}), 3, -1},
    {{"UcsBeforeTheDifference"}, ucs("ab"), ucs("ac"), 5, 0},
    {{"UcsAtTheDifference"}, ucs("ab"), ucs("ac"), 6, -1},
    {{"UcsBothEndBefore"}, ucs("ab"), ucs("ab"), 100, 0},
    {{"UcsNothingAfterTheEnd"}, ucs({'a', 0, 'x'}), ucs({'a', 0, 'y'}), 100, 0},
    {{"UcsNothingAfterALaterEnd"}, ucs({'a', 'b', 0, 'x'}), ucs({'a', 'b', 0, 'y'}), 100, 0},
    {{"UcsOneEndsBefore"}, ucs("ab"), ucs("abc"), 100, -1},
    {{"UcsBytesAreUnsigned"}, ucs({0x7F7F}), ucs({0x8080}), 4, -1},
};
INSTANTIATE_TEST_SUITE_P(Strings, BoundedComparison, testing::ValuesIn(bounded), rowName<BoundedRow>);

// miUCSStrncmp takes any pointers to units: a mark is compared like a unit.
struct UnitsRow : Row {
  std::string a, b;
  uint32_t n;
  int result;
};

class UnitComparison : public testing::TestWithParam<UnitsRow> {};

TEST_P(UnitComparison, Is) {
  const std::string a = ended(GetParam().a), b = ended(GetParam().b);
  EXPECT_EQ(miUCSStrncmp(a.c_str(), b.c_str(), GetParam().n), GetParam().result);
  EXPECT_EQ(miUCSStrncmp(b.c_str(), a.c_str(), GetParam().n), -GetParam().result);
}

const UnitsRow units[] = {
    {{"MarkIsCompared"}, std::string("\xFE\xFE\0A", 4), ucs("A"), 4, -1},
    {{"MarkIsComparedHighByteFirst"}, std::string("\0\xFF", 2), ucs(""), 1, -1},
    {{"WithoutMark"}, std::string("\0A\0B", 4), std::string("\0A\0C", 4), 4, -1},
    {{"ZeroUnitInBothEnds"}, std::string("\0A\0\0\0B", 6), std::string("\0A\0\0\0C", 6), 6, 0},
    {{"ZeroByteIsNoEnd"}, std::string("A\0\0B", 4), std::string("A\0\0C", 4), 4, -1},
    {{"NoBytes"}, "AB", "CD", 0, 0},
    {{"FarApartIsOne"}, std::string("\0\x01", 2), std::string("\xFF\xFF", 2), 2, -1},
};
INSTANTIATE_TEST_SUITE_P(Units, UnitComparison, testing::ValuesIn(units), rowName<UnitsRow>);

TEST(CompareWithNull, TheStringIsGreater) {
  for (const std::string &text : {std::string("a"), std::string(), ended(ucs("a"))}) {
    EXPECT_EQ(miStrcmp(text.c_str(), nullptr), 1);
    EXPECT_EQ(miStricmp(text.c_str(), nullptr), 1);
  }
}

} // namespace
