// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Attributes of a highlight file's body tag, and what is registered with them.
#include <gtest/gtest.h>

#include "tests/plugin/input/reading.h"
#include "tests/plugin/input/tokens.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

constexpr int32_t characters = GLT_CHARACTER_OFFSETS, words = 0;
constexpr int16_t notAsked = -1;

struct Registration {
  int32_t units;
  bool scroll;
  int16_t asked; ///< the version of word extraction that the host was asked for
  int16_t version;
  bool operator==(const Registration &) const = default;
};

std::ostream &operator<<(std::ostream &out, const Registration &r) {
  return out << "units " << r.units << " scroll " << r.scroll << " asked " << r.asked << " version " << r.version;
}

/// Reads for a host that has every version of word extraction.
Registration registrationOf(const std::string &file) {
  RecordingHost host;
  Registration registration = {-1, false, notAsked, -1};
  host.answer(DocModel::WordFinderCreate,
              std::function([&](ModelDoc, void *, void *, void *, int16_t version, uint32_t, void *) {
                registration.asked = version;
                const auto finder = reinterpret_cast<WordFinder>(0x9900);
                host.finders.insert(finder);
                return finder;
              }));
  EXPECT_EQ(readFile(file), 1);
  EXPECT_EQ(host.count("Alert"), 0U);
  registration.scroll = host.count("PageViewScrollToPoint") != 0;
  const GLTRecord *record = GLTFindRecord(host.doc);
  if (record == nullptr) return registration;
  registration.units = record->offsetUnits;
  registration.version = record->wordFinderVersion;
  return registration;
}

struct BodyRow : Row {
  std::string attributes;
  Registration expected;
};

class Body : public testing::TestWithParam<BodyRow> {};

TEST_P(Body, RegistersWith) { EXPECT_EQ(registrationOf(fileWith(GetParam().attributes)), GetParam().expected); }

const BodyRow units[] = {
    {{"Characters"}, R"(Units="characters")", {characters, false, notAsked, 2}},
    {{"CharactersInCapitals"}, R"(Units="CHARACTERS")", {characters, false, notAsked, 2}},
    {{"CharactersWithoutQuotes"}, "units=characters", {characters, false, notAsked, 2}},
    {{"NoQuotesAndLast"}, "mode=active Units=characters", {characters, true, notAsked, 2}},
    {{"Words"}, R"(Units="words")", {words, false, 2, 2}},
    {{"None"}, "", {words, false, 2, 2}},
    {{"OtherUnits"}, R"(Units="character")", {words, false, 2, 2}},
    {{"LongerUnits"}, R"(Units="charactersets")", {words, false, 2, 2}},
    {{"UnitsOf14CharactersAndMore"}, R"(Units="characters12345")", {words, false, 2, 2}},
    {{"UnitsOfManyCharacters"}, "Units=" + times(240, "c"), {words, false, 2, 2}},
    {{"SingleQuotes"}, "Units='characters' ", {words, false, 2, 2}},
    {{"LastUnitsWin"}, "Units=characters Units=words", {words, false, 2, 2}},
    {{"ShorterOnesReplaceLongerOnes"}, "Units=charactersets Units=characters", {characters, false, notAsked, 2}},
    {{"LongestLeaveTheVersion"}, "version=3 Units=charactersabcd", {words, false, 3, 3}},
};
INSTANTIATE_TEST_SUITE_P(Units, Body, testing::ValuesIn(units), rowName<BodyRow>);

const BodyRow modes[] = {
    {{"Active"}, R"(Units=characters mode="active")", {characters, true, notAsked, 2}},
    {{"ActiveInCapitals"}, R"(Units=characters MODE="ACTIVE")", {characters, true, notAsked, 2}},
    {{"Passive"}, R"(Units=characters mode="passive")", {characters, false, notAsked, 2}},
    {{"AnyOtherValueLeavesItActive"}, "Units=characters mode=active mode=passive", {characters, true, notAsked, 2}},
    {{"SingleQuotes"}, "Units=characters mode='active' ", {characters, false, notAsked, 2}},
};
INSTANTIATE_TEST_SUITE_P(Modes, Body, testing::ValuesIn(modes), rowName<BodyRow>);

const BodyRow versions[] = {
    {{"None"}, "Units=words", {words, false, 2, 2}},
    {{"One"}, R"(version="1")", {words, false, 1, 1}},
    {{"Three"}, R"(version="3")", {words, false, 3, 3}},
    {{"FractionIsIgnored"}, R"(version="3.1")", {words, false, 3, 3}},
    {{"NoNumberIsZero"}, R"(version="latest")", {words, false, 0, 0}},
    {{"Zero"}, R"(version="0")", {words, false, 0, 0}},
    {{"Negative"}, R"(version="-2")", {words, false, -2, -2}},
    {{"Keeps16Bits"}, R"(version="65539")", {words, false, 3, 3}},
    {{"Keeps16BitsSigned"}, R"(version="40000")", {words, false, -25536, -25536}},
    {{"NineCharacters"}, R"(version="000000012")", {words, false, 12, 12}},
    {{"TenthCharacterIsTruncated"}, R"(version="0000000123")", {words, false, 12, 12}},
    {{"ManyCharacters"}, "version=" + times(240, "0"), {words, false, 0, 0}},
    {{"LastOneWins"}, "version=1 version=3", {words, false, 3, 3}},
    {{"CharacterOffsetsTakeNoNoticeOfIt"}, R"(Units=characters version="3")", {characters, false, notAsked, 2}},
};
INSTANTIATE_TEST_SUITE_P(Versions, Body, testing::ValuesIn(versions), rowName<BodyRow>);

const BodyRow pendingNames[] = {
    {{"EarlierNameIsNotTakenForAValue"}, "mode Units characters active", {characters, true, notAsked, 2}},
    {{"LaterNameIsTakenForAValue"}, "Units=mode mode=active", {words, true, 2, 2}},
    {{"ValuesComeInOrderOfNames"}, "version mode Units characters active 3", {characters, true, notAsked, 2}},
    {{"KeptIntoTheNextBodyTag"}, "Units> <Body characters mode> <Body active", {characters, true, notAsked, 2}},
    {{"EmptyValueTakesTheNextWord"}, R"(version="" mode="active" Units="words" 3)", {words, true, 3, 3}},
    {{"BodyTagsAddUp"}, "mode=active> <Body Units=characters", {characters, true, notAsked, 2}},
    {{"TagsSideBySideAddUp"}, "mode=active><Body Units=characters", {characters, true, notAsked, 2}},
    {{"CompleteBodyTagHasNoAttributes"}, "mode=active> <Body> Units=characters <Body", {words, true, 2, 2}},
    {{"UnknownAttributesAreSkipped"}, "title=x Units=characters page=3", {characters, false, notAsked, 2}},
};
INSTANTIATE_TEST_SUITE_P(PendingNames, Body, testing::ValuesIn(pendingNames), rowName<BodyRow>);

TEST(BodyTag, OpensNoSection) {
  const RecordingHost host;
  EXPECT_EQ(readFile("<XML>\n<Body Units=characters>\n<loc pg=1 pos=2 len=3>\n</Body>\n</XML>\n"), 0);
  EXPECT_EQ(registered(), Highlights{});
}

struct ColorRow : Row {
  std::string attributes;
  Fixed red, green, blue;
};

class BodyColor : public testing::TestWithParam<ColorRow> {};

TEST_P(BodyColor, RegistersWith) {
  RecordingHost host;
  EXPECT_EQ(readFile(fileWith("Units=characters " + GetParam().attributes)), 1);
  ColorValue color = {9, {9, 9, 9, 9}};
  GLT_GetColor(host.doc, &color);
  EXPECT_EQ(color.space, colorSpaceRGB);
  EXPECT_EQ((std::vector<Fixed>(color.component, color.component + 4)),
            (std::vector<Fixed>{GetParam().red, GetParam().green, GetParam().blue, 0}));
}

/// A component of the file becomes the integer part: 255 is 255.0 and not 1.0.
constexpr Fixed of(int32_t component) { return component * fixedOne; }

const ColorRow colors[] = {
    {{"Red"}, R"(color="#FF0000")", of(255), 0, 0},
    {{"LowerCaseAndReversedDigits"}, R"(color="#ff8000")", of(255), of(8), 0},
    {{"DigitsOfAPairAreReversed"}, R"(color="#102030")", of(1), of(2), of(3)},
    {{"WithoutMark"}, R"(color="00FF21")", 0, of(255), of(18)},
    {{"WithoutQuotes"}, "color=#0000FF", 0, 0, of(255)},
    {{"Black"}, R"(color="#000000")", 0, 0, 0},
    {{"MissingDigitsAreZero"}, R"(color="#FF8")", of(255), of(8), 0},
    {{"OneDigit"}, R"(color="F")", of(15), 0, 0},
    {{"MarkAlone"}, R"(color="#")", 0, 0, 0},
    {{"FurtherDigitsAreSkipped"}, R"(color="#0000FF99")", 0, 0, of(255)},
    {{"LastOneWins"}, "color=#FF0000 color=#0000FF", 0, 0, of(255)},
    {{"NameAgainAsValueIsTheName"}, "mode=color color=#0000FF", 0, 0, of(255)},
    // An invalid colour leaves the default: red.
    {{"None"}, "", fixedOne, 0, 0},
    {{"HexadecimalPrefix"}, R"(color="0x00FF00")", fixedOne, 0, 0},
    {{"HexadecimalPrefixAfterMark"}, R"(color="#0x00FF00")", fixedOne, 0, 0},
    {{"Name"}, R"(color="blue")", fixedOne, 0, 0},
    {{"TwoMarks"}, R"(color="##0000FF")", fixedOne, 0, 0},
    {{"NoDigitAfterTheSixth"}, R"(color="#0000FFz")", fixedOne, 0, 0},
    {{"SingleQuotes"}, "color='#0000FF' ", fixedOne, 0, 0},
    {{"LaterBadOneClearsAnEarlierGoodOne"}, "color=#0000FF color=blue", fixedOne, 0, 0},
    {{"LaterGoodOneAfterABadOne"}, "color=blue color=#0000FF", 0, 0, of(255)},
    {{"LongestVersionLeavesIt"}, "color=#FFFFFF version=000000012", of(255), of(255), of(255)},
};
INSTANTIATE_TEST_SUITE_P(Colors, BodyColor, testing::ValuesIn(colors), rowName<ColorRow>);

} // namespace
