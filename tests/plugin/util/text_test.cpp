// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Text helpers: substitution, counting, paths, fields, the time, rounding.
#include <gtest/gtest.h>

#include <ctime>

#include "plugin/util/miText.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/util/strings.h"
#include "tests/support/Rows.h"

namespace {

struct TranslateRow : Row {
  std::string text;
  char from, to;
  std::string result;
};

class TranslatedBytes : public testing::TestWithParam<TranslateRow> {};

TEST_P(TranslatedBytes, AreReplacedEverywhere) {
  std::string text = GetParam().text;
  EXPECT_EQ(miTranslate(text.data(), GetParam().from, GetParam().to), text.data() + text.size());
  EXPECT_EQ(text, GetParam().result);
}

const TranslateRow translations[] = {
    {{"Several"}, "a-b-c", '-', '_', "a_b_c"},
    {{"None"}, "abc", '-', '_', "abc"},
    {{"Empty"}, "", '-', '_', ""},
    {{"HighByte"}, "\xE4\xE4", '\xE4', 'a', "aa"},
};
INSTANTIATE_TEST_SUITE_P(Texts, TranslatedBytes, testing::ValuesIn(translations), rowName<TranslateRow>);

struct CountRow : Row {
  const char *text, *part;
  uint32_t count;
};

class CountedParts : public testing::TestWithParam<CountRow> {};

TEST_P(CountedParts, DoNotOverlap) { EXPECT_EQ(miCountStr(GetParam().text, GetParam().part), GetParam().count); }

const CountRow counts[] = {
    {{"Adjacent"}, "aaaa", "aa", 2},
    {{"FromTheLeft"}, "aaa", "aa", 1},
    {{"Apart"}, "abcab", "ab", 2},
    {{"None"}, "abc", "x", 0},
    {{"EmptyText"}, "", "a", 0},
    {{"LongerThanTheText"}, "ab", "abc", 0},
    {{"EmptyPartIsGuarded"}, "abc", "", 0},
    {{"TextThatEndsLikeAMark"}, "x\xFE\xFF", "\xFE\xFF\x41\x42\0", 0},
};
INSTANTIATE_TEST_SUITE_P(Texts, CountedParts, testing::ValuesIn(counts), rowName<CountRow>);

// The part would continue after the text's end.
TEST(PartAcrossTheEnd, IsNotThere) {
  const std::string text("x\xFE\xFF\0A\0\0", 7), part = ended(ucs("A"));
  EXPECT_EQ(miCountStr(text.c_str(), part.c_str()), 0U);
  std::string out = dots(16);
  EXPECT_EQ(miSnarf(text.c_str(), part.c_str(), nullptr, out.data(), 9), nullptr);
}

struct PathRow : Row {
  const char *path, *result;
};

class PathSteps : public testing::TestWithParam<PathRow> {};

TEST_P(PathSteps, Collapse) {
  std::string path = GetParam().path;
  EXPECT_EQ(miSubstituteDots(path.data()), path.data());
  EXPECT_STREQ(path.c_str(), GetParam().result);
}

const PathRow paths[] = {
    {{"Both"}, "/x/y/../z/./w", "/x/z/w"},
    {{"Up"}, "/a/b/../c", "/a/c"},
    {{"NoSlashIsInvented"}, "ab/../c", "c"},
    {{"OneCharacter"}, "a/../c", "c"},
    {{"DoubleSlashIsTheStep"}, "a//../b", "a/b"},
    {{"TwoUp"}, "/a/b/c/../../d", "/a/d"},
    {{"ToTheRoot"}, "/a/../b", "/b"},
    {{"Here"}, "a/./b", "a/b"},
    {{"SeveralHere"}, "/./a/././b", "/a/b"},
    {{"UpBeforeHere"}, "a/./../b", "a/b"},
    {{"TrailingUpStays"}, "/a/b/..", "/a/b/.."},
    {{"TrailingHereStays"}, "/a/.", "/a/."},
    {{"Plain"}, "/a/b.c/..d", "/a/b.c/..d"},
    {{"Empty"}, "", ""},
    {{"AboveTheRootStays"}, "/../a/./b", "/../a/./b"},
    {{"AboveTheRootMidway"}, "/a/../../x/./y", "/../x/y"},
};
INSTANTIATE_TEST_SUITE_P(Paths, PathSteps, testing::ValuesIn(paths), rowName<PathRow>);

struct SnarfRow : Row {
  const char *source, *start, *end;
  uint32_t max;
  const char *out;
  ptrdiff_t next; ///< -1: null
};

class Snarf : public testing::TestWithParam<SnarfRow> {};

TEST_P(Snarf, CopiesBetweenMarks) {
  const SnarfRow &row = GetParam();
  std::string out = dots(16);
  const char *next = miSnarf(row.source, row.start, row.end, out.data(), row.max);
  EXPECT_STREQ(out.c_str(), row.out);
  EXPECT_EQ(next != nullptr ? next - row.source : -1, row.next);
}

const SnarfRow snarfs[] = {
    {{"LongEndAfterATruncatedCopy"}, "abcdef", nullptr, "12345678", 3, "abc", 11},
    {{"BetweenBoth"}, "key=(v);", "=", ";", 10, "(v)", 8},
    {{"NextIsAfterTheEnd"}, "key=(v);more", "=", ";", 10, "(v)", 8},
    {{"LongMarks"}, "a<<b>>c", "<<", ">>", 10, "b", 6},
    {{"NoStart"}, "a;b", nullptr, ";", 10, "a", 2},
    {{"EmptyStart"}, "a;b", "", ";", 10, "a", 2},
    {{"StartIsNotThere"}, "a;b", "=", ";", 10, "", -1},
    {{"EndIsNotThere"}, "a=bc", "=", ";", 10, "bc", 4},
    {{"Nothing"}, "a=;b", "=", ";", 10, "", 3},
    {{"FullPassesTheEndsLengthToo"}, "=abcdef;", "=", ";", 3, "abc", 5},
    {{"NoEnd"}, "k=abcdef", "=", nullptr, 4, "abc", 6},
    {{"NoEndPassesMaxWhateverRemains"}, "k=abcdef", "=", "", 9, "abcdef", 11},
    {{"NoEndAtTheTerminator"}, "k=", "=", nullptr, 4, "", 2},
};
INSTANTIATE_TEST_SUITE_P(Marks, Snarf, testing::ValuesIn(snarfs), rowName<SnarfRow>);

TEST(SnarfOfNull, IsNull) {
  char out[] = "x";
  EXPECT_EQ(miSnarf(nullptr, "a", "b", out, 1), nullptr);
  EXPECT_STREQ(out, "");
}

struct FieldRow : Row {
  std::string line;
  bool keepEscapes;
  std::vector<std::string> fields;
};

class Fields : public testing::TestWithParam<FieldRow> {};

TEST_P(Fields, AreReadOneByOne) {
  RecordingHost host;
  std::vector<std::string> fields;
  uint32_t position = 0;
  while (position < GetParam().line.size()) {
    char *field = miSnarfEntry(GetParam().line.c_str(), &position, GetParam().keepEscapes ? 1 : 0);
    fields.emplace_back(field);
    TavrelSupport::Free(field);
  }
  EXPECT_EQ(position, GetParam().line.size()) << "the end follows the last field";
  EXPECT_EQ(fields, GetParam().fields);
  EXPECT_TRUE(host.blocks.empty());
}

const FieldRow fieldRows[] = {
    {{"QuotedComma"}, "  \"a,b\", c", false, {"a,b", "c"}},
    {{"Plain"}, "a,b,c", false, {"a", "b", "c"}},
    {{"SpaceAroundIsRemoved"}, " a b \t, c ", false, {"a b", "c"}},
    {{"EmptyFields"}, ",,a", false, {"", "", "a"}},
    {{"OnlySpace"}, "  ", false, {""}},
    {{"LineFeed"}, "x\\ny", false, {"x\ny"}},
    {{"CarriageReturn"}, "x\\ry", false, {"x\ry"}},
    {{"OtherEscapesLoseTheBackslash"}, R"(x\t\\\"y)", false, {R"(xt\"y)"}},
    {{"EscapedComma"}, "a\\,b,c", false, {"a,b", "c"}},
    {{"KeptEscapes"}, R"(x\n\"y,z)", true, {R"(x\n\"y)", "z"}},
    {{"EscapedCommaIsResolvedWhereOthersAreKept"}, "a\\,b,c", true, {"a,b", "c"}},
    {{"QuotedSpace"}, "\" \",x", false, {"", "x"}},
    {{"BackslashAtTheEndIsTakenAway"}, "ab\\", false, {"ab"}},
    {{"BackslashAtTheEndIsKeptWithTheOthers"}, "ab\\", true, {"ab\\"}},
    {{"QuotesInside"}, "a\"b,c\"d,e", false, {"ab,cd", "e"}},
    {{"OpenQuoteRunsToTheEnd"}, "\"a,b", false, {"a,b"}},
};
INSTANTIATE_TEST_SUITE_P(Lines, Fields, testing::ValuesIn(fieldRows), rowName<FieldRow>);

TEST(Field, PositionMovesAfterTheComma) {
  RecordingHost host;
  uint32_t position = 0;
  char *field = miSnarfEntry("  \"a,b\", c", &position, 0);
  EXPECT_STREQ(field, "a,b");
  EXPECT_EQ(position, 8U) << "at the space before c";
  TavrelSupport::Free(field);
}

TEST(Field, IsShrunkToItsLength) {
  RecordingHost host;
  uint32_t position = 0;
  TavrelSupport::Free(miSnarfEntry("ab,cdef", &position, 0));
  EXPECT_EQ(host.trace, (std::vector<std::string>{"TavrelSupport.Malloc(8)", "TavrelSupport.Realloc(*, 3)",
                                                  "TavrelSupport.Free(*)"}));
}

TEST(Field, ExhaustedMemoryIsError2) {
  RecordingHost host;
  uint32_t position = 0;
  host.failAt(0);
  EXPECT_FALSE(host.run([&] { miSnarfEntry("a", &position, 0); }));
  EXPECT_EQ(host.trace.back(), "Kernel.RaiseError(2)");
}

TEST(Field, IsNullWhenTheRaiseReturns) {
  RecordingHost host;
  host.answer(Kernel::RaiseError, std::function([](int32_t) {}));
  host.failAt(0);
  uint32_t position = 0;
  EXPECT_EQ(miSnarfEntry("a", &position, 0), nullptr);
}

TEST(Time, WithoutAFormatIsCtimeWithoutItsLineFeed) {
  const time_t before = time(nullptr);
  const std::string text = miStrftime(nullptr);
  std::string possible;
  for (time_t now = before; now <= time(nullptr); ++now)
    possible += ctime(&now);
  EXPECT_EQ(text.size(), 24U);
  EXPECT_NE(possible.find(text + "\n"), std::string::npos);
}

TEST(Time, ByAFormat) {
  EXPECT_STREQ(miStrftime("plain"), "plain");
  EXPECT_STREQ(miStrftime("ab%n"), "ab") << "without a line feed at its end";
  EXPECT_STREQ(miStrftime("a%n"), "a");
  EXPECT_STREQ(miStrftime("%n"), "\n") << "except for a line feed alone";
  EXPECT_EQ(std::string(miStrftime("%Y-%m-%d")).size(), 10U);
}

TEST(Time, ThatIsTooLongIsEmpty) {
  const std::string longest(129, 'x');
  EXPECT_EQ(miStrftime(longest.c_str()), longest);
  EXPECT_STREQ(miStrftime((longest + "x").c_str()), "");
}

struct RoundRow : Row {
  double value;
  int32_t floor, ceil, round;
};

class Rounding : public testing::TestWithParam<RoundRow> {};

TEST_P(Rounding, IsDownUpAndNearest) {
  EXPECT_EQ(miFloor(GetParam().value), GetParam().floor);
  EXPECT_EQ(miCeil(GetParam().value), GetParam().ceil);
  EXPECT_EQ(miRoundToInt(GetParam().value), GetParam().round);
}

// Halves are rounded towards zero.
const RoundRow rounded[] = {
    {{"Zero"}, 0.0, 0, 0, 0},
    {{"Integer"}, 2.0, 2, 2, 2},
    {{"NegativeInteger"}, -2.0, -2, -2, -2},
    {{"BelowHalf"}, 2.4, 2, 3, 2},
    {{"Half"}, 2.5, 2, 3, 2},
    {{"AboveHalf"}, 2.6, 2, 3, 3},
    {{"SmallHalf"}, 0.5, 0, 1, 0},
    {{"SmallAboveHalf"}, 0.6, 0, 1, 1},
    {{"NegativeSmallHalf"}, -0.5, -1, 0, 0},
    {{"NegativeBelowHalf"}, -1.4, -2, -1, -1},
    {{"NegativeHalf"}, -2.5, -3, -2, -2},
    {{"NegativeAboveHalf"}, -2.6, -3, -2, -3},
    {{"OneAndAHalf"}, -1.5, -2, -1, -1},
};
INSTANTIATE_TEST_SUITE_P(Values, Rounding, testing::ValuesIn(rounded), rowName<RoundRow>);

} // namespace
