// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Search and replace in both kinds of strings.
#include <gtest/gtest.h>

#include <cstring>

#include "plugin/util/miUtils.h"
#include "tests/plugin/util/strings.h"
#include "tests/support/Rows.h"

namespace {

constexpr size_t bufferSize = 24;

std::string dotted(const std::string &written) { return written + dots(bufferSize - written.size()); }

uint32_t lengthOf(const char *text) { return static_cast<uint32_t>(text != nullptr ? strlen(text) : 0); }

uint32_t lengthOf(const std::string &bytes) { return static_cast<uint32_t>(bytes.size()); }

struct ReplaceRow : Row {
  const char *source, *find, *replacement, *result;
};

class Replacement : public testing::TestWithParam<ReplaceRow> {};

TEST_P(Replacement, EndsInOneZeroByte) {
  const ReplaceRow &row = GetParam();
  std::string buffer = dots(bufferSize);
  EXPECT_EQ(miReplaceStrSAFE(buffer.data(), row.source, row.find, row.replacement), buffer.data());
  EXPECT_EQ(buffer, dotted(row.result + nul));
}

TEST_P(Replacement, WithLengthsEndsInTwoZeroBytes) {
  const ReplaceRow &row = GetParam();
  std::string buffer = dots(bufferSize);
  EXPECT_EQ(miReplaceStrExSAFE(buffer.data(), row.source, row.find, lengthOf(row.find), row.replacement,
                               lengthOf(row.replacement)),
            buffer.data());
  EXPECT_EQ(buffer, dotted(row.result + nulUnit));
}

const ReplaceRow replacements[] = {
    {{"Longer"}, "a.b.c", ".", "::", "a::b::c"},   {{"NullIsNothing"}, "a.b.c", ".", nullptr, "abc"},
    {{"EmptyIsNothing"}, "a.b.c", ".", "", "abc"}, {{"Shorter"}, "a--b--c", "--", "-", "a-b-c"},
    {{"NotFound"}, "abc", "x", "yyy", "abc"},      {{"EmptySource"}, "", "x", "yyy", ""},
    {{"CompleteSource"}, "abc", "abc", "x", "x"},  {{"LongerThanTheSource"}, "ab", "abc", "x", "ab"},
    {{"FromLeftToRight"}, "aaa", "aa", "b", "ba"}, {{"ResultIsNotSearchedAgain"}, "aa", "a", "aa", "aaaa"},
    {{"AtTheEnds"}, ".a.", ".", "-", "-a-"},       {{"AlmostFound"}, "ababac", "abac", "x", "abx"},
};
INSTANTIATE_TEST_SUITE_P(Bytes, Replacement, testing::ValuesIn(replacements), rowName<ReplaceRow>);

struct UcsRow : Row {
  std::string source, find, replacement, result;
};

class UcsReplacement : public testing::TestWithParam<UcsRow> {};

TEST_P(UcsReplacement, SearchesByUnits) {
  const UcsRow &row = GetParam();
  std::string buffer = dots(bufferSize);
  EXPECT_EQ(miReplaceStrExSAFE(buffer.data(), ended(row.source).c_str(), row.find.c_str(), lengthOf(row.find),
                               row.replacement.data(), lengthOf(row.replacement)),
            buffer.data());
  EXPECT_EQ(buffer, dotted(row.result + nulUnit));
}

/// Units without a mark: what is found and inserted within a UCS string.
std::string units(const char *letters) { return ucs(letters).substr(2); }

const UcsRow ucsReplacements[] = {
    {{"Longer"}, ucs("a.b.c"), units("."), units("::"), ucs("a::b::c")},
    {{"Nothing"}, ucs("a.b.c"), units("."), "", ucs("abc")},
    {{"Several"}, ucs("abcabc"), units("bc"), units("x"), ucs("axax")},
    {{"NotFound"}, ucs("abc"), units("x"), units("y"), ucs("abc")},
    {{"MarkAlone"}, ucs(""), units("x"), units("y"), ucs("")},
    {{"OnlyAtUnits"}, ucs({0x4100, 0x4200}), std::string("\0\x42", 2), units("x"), ucs({0x4100, 0x4200})},
    {{"ZeroBytesEndNothing"}, ucs({0x4100, 0x0042, 0x4300}), units("B"), units("x"), ucs({0x4100, 'x', 0x4300})},
    {{"MarkIsAUnitLikeOthers"}, ucs("ab"), "\xFE\xFF", "", std::string("\0a\0b", 4)},
};
INSTANTIATE_TEST_SUITE_P(Ucs, UcsReplacement, testing::ValuesIn(ucsReplacements), rowName<UcsRow>);

TEST(UcsReplacementOfNull, IsNothing) {
  std::string buffer = dots(bufferSize);
  const std::string source = ended(ucs("a.b"));
  miReplaceStrExSAFE(buffer.data(), source.c_str(), units(".").c_str(), 2, nullptr, 0);
  EXPECT_EQ(buffer, dotted(ucs("ab") + nulUnit));
}

TEST(ReplacementWithLengths, OfNullHasNoLength) {
  std::string buffer = dots(bufferSize);
  miReplaceStrExSAFE(buffer.data(), "a.b", ".", 1, nullptr, 5);
  EXPECT_EQ(buffer, dotted("ab" + nulUnit));
}

TEST(ReplacementWithLengths, CountsOnlyTheLengthsGiven) {
  std::string buffer = dots(bufferSize);
  miReplaceStrExSAFE(buffer.data(), "a.b", ".xyz", 1, "::no", 2);
  EXPECT_EQ(buffer, dotted("a::b" + nulUnit));
}

// A part that would reach beyond the end is not found.
TEST(ReplacementWithLengths, StaysWithinTheSource) {
  std::string buffer = dots(bufferSize);
  miReplaceStrExSAFE(buffer.data(), "ab", "b", 2, "x", 1);
  EXPECT_EQ(buffer, dotted("ab" + nulUnit));
  buffer = dots(bufferSize);
  miReplaceStrExSAFE(buffer.data(), ended(ucs("a")).c_str(), ended(units("a")).c_str(), 4, "xx", 2);
  EXPECT_EQ(buffer, dotted(ucs("a") + nulUnit));
  buffer = dots(bufferSize);
  miReplaceStrExSAFE(buffer.data(), ended(ucs("ab")).c_str(), "\0", 1, "", 0);
  EXPECT_EQ(buffer, dotted("\xFE\xFF" + std::string("a\0", 2) + nulUnit)) << "half units are left out";
}

TEST(ReplacementInBytes, StaysWithinATextThatEndsLikeAMark) {
  std::string buffer = dots(bufferSize);
  const std::string text("x\xFE\xFF\0A\0\0", 7), part = ended(ucs("A"));
  miReplaceStrSAFE(buffer.data(), text.c_str(), part.c_str(), "y");
  EXPECT_EQ(buffer, dotted("x\xFE\xFF" + nul));
}

// An empty part would be found for ever.
TEST(EmptyFind, LeavesTheSource) {
  std::string buffer = dots(bufferSize);
  miReplaceStrSAFE(buffer.data(), "abc", "", "x");
  EXPECT_EQ(buffer, dotted("abc" + nul));
  buffer = dots(bufferSize);
  miReplaceStrExSAFE(buffer.data(), "abc", "", 0, "x", 1);
  EXPECT_EQ(buffer, dotted("abc" + nulUnit));
}

} // namespace
