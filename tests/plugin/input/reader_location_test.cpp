// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Location tags of a highlight file, and the highlights that they make.
#include <gtest/gtest.h>

#include "tests/plugin/input/reading.h"
#include "tests/support/Rows.h"

namespace {

struct LocationRow : Row {
  std::string tags;
  Highlights highlights;
};

class Location : public testing::TestWithParam<LocationRow> {};

TEST_P(Location, Makes) {
  RecordingHost host;
  EXPECT_EQ(readFile(fileOf(GetParam().tags)), GetParam().highlights.empty() ? 0 : 1);
  EXPECT_EQ(registered(), GetParam().highlights);
  EXPECT_TRUE(host.blocks.empty());
}

const LocationRow forms[] = {
    {{"Short"}, R"(<loc pg="3" pos="120" len="6"/>)", {{3, 120, 6}}},
    {{"Long"}, R"(<location page="3" position="131" length="4"/>)", {{3, 131, 4}}},
    {{"NamesMix"}, R"(<loc page="3" pos="120" length="6"></loc>)", {{3, 120, 6}}},
    {{"AnyOrderOfAttributes"}, R"(<loc len="6" pos="120" pg="3" />)", {{3, 120, 6}}},
    {{"NoQuotes"}, "<loc pg=3 pos=10 len=2>", {{3, 10, 2}}},
    {{"NoEqualsSigns"}, "<loc pg 3 pos 10 len 2 >", {{3, 10, 2}}},
    {{"OverSeveralLines"}, "<loc\n pg=\"3\"\n\n\tpos=\"10\"\r\n len=\"2\"\n>", {{3, 10, 2}}},
    {{"UnknownAttributesAreSkipped"}, R"(<loc id="7" pg="3" pos="10" class="x" len="2"/>)", {{3, 10, 2}}},
    {{"NoLengthIsLengthZero"}, R"(<loc pg="3" pos="10"/>)", {{3, 10, 0}}},
    {{"NoPageIsDropped"}, R"(<loc pos="10" len="2"/>)", {}},
    {{"NoPositionIsDropped"}, R"(<loc pg="3" len="2"/>)", {}},
    {{"TagsWithoutAttributesAddNothing"}, "<location> <loc>", {}},
    {{"AttributesAfterACompleteTagAreSkipped"}, "<loc> pg=3 pos=10 len=2", {}},
    {{"OtherTagsAreSkipped"}, R"(<hit pg="3" pos="10" len="2"/> <locations pg="4" pos="1">)", {}},
    {{"TextBetweenTagsIsSkipped"},
     "words <loc pg=3 pos=10 len=2> pg=4 !? <b> <loc pg=5 pos=1 len=1>",
     {{3, 10, 2}, {5, 1, 1}}},
    {{"PagesAreInOrderOfAdding"},
     "<loc pg=9 pos=1> <loc pg=2 pos=1> <loc pg=9 pos=2>",
     {{9, 1, 0}, {9, 2, 0}, {2, 1, 0}}},
    {{"FirstLengthOfAPositionWins"}, "<loc pg=3 pos=1 len=2> <loc pg=3 pos=1 len=9>", {{3, 1, 2}}},
    {{"LastValueOfAnAttributeWins"}, "<loc pg=3 pg=4 pos=1 pos=2 len=5 len=6>", {{4, 2, 6}}},
    {{"EachTagStartsAnew"}, "<loc pg=3 pos=1 len=5> <loc pg=3 pos=2> <loc pos=3>", {{3, 1, 5}, {3, 2, 0}}},
};
INSTANTIATE_TEST_SUITE_P(Forms, Location, testing::ValuesIn(forms), rowName<LocationRow>);

const LocationRow sideBySide[] = {
    {{"TwoTags"}, R"(<loc pg="3" pos="1" len="1"/><loc pg="4" pos="2" len="2"/>)", {{3, 1, 1}, {4, 2, 2}}},
    {{"NoQuotes"}, "<loc pg=3 pos=1 len=1><loc pg=4 pos=2 len=2>", {{3, 1, 1}, {4, 2, 2}}},
    {{"ClosingTagBetween"}, "<loc pg=3 pos=1 len=1></loc><loc pg=4 pos=2 len=2></loc>", {{3, 1, 1}, {4, 2, 2}}},
    {{"ThreeInOneWord"}, "<loc><location><loc pg=4 pos=2>", {{4, 2, 0}}},
    {{"NamePendingOverTheSeam"}, R"(<location page><location pos="5">)", {}},
    {{"NamePendingTakesTheNextWordForItsValue"}, R"(<location page><location pos="5" pos="6" len="7">)", {{0, 6, 7}}},
    {{"QuotedWordIsNotSplit"}, "<loc pg=3 pos=1 len='2><loc pg=4' pos=7>", {{3, 7, 0}}},
    {{"ParenthesizedWordIsNotSplit"}, "<loc pg=3 pos=1 len=(2><loc) pos=7>", {{3, 7, 0}}},
    {{"QuoteInsideAWordDoesNotPreventTheSplit"}, "<loc pg=3 pos=1'><loc pg=4 pos=2>", {{3, 1, 0}, {4, 2, 0}}},
    {{"OnlyTagEndsDirectlyBeforeTagStartsAreSeams"}, "<loc pg=3 pos=1>> <<loc pg=4 pos=2>", {{3, 1, 0}}},
};
INSTANTIATE_TEST_SUITE_P(SideBySide, Location, testing::ValuesIn(sideBySide), rowName<LocationRow>);

const LocationRow numbers[] = {
    {{"NoNumberIsZero"}, "<loc pg=three pos=ten len=two>", {{0, 0, 0}}},
    {{"DigitsInFront"}, "<loc pg=3x pos=10.5 len=2-1>", {{3, 10, 2}}},
    {{"SingleQuotesAreZero"}, "<loc pg='3' pos='10' len='2' >", {{0, 0, 0}}},
    {{"SingleQuotesRunOnOverTheTagEnd"}, "<loc pg='3' pos='10' len='2'> <loc pg=4 pos=1>", {}},
    {{"ParenthesesAreZero"}, "<loc pg=(3) pos=(10) len=(2) >", {{0, 0, 0}}},
    {{"PlusSignIsSkipped"}, "<loc pg=+3 pos=+10 len=+2>", {{3, 10, 2}}},
    {{"HexadecimalIsZero"}, "<loc pg=0x3 pos=0x10 len=0x2>", {{0, 0, 0}}},
    {{"LeadingZeros"}, "<loc pg=003 pos=010 len=002>", {{3, 10, 2}}},
    {{"PageMinusOneIsNoPage"}, "<loc pg=-1 pos=10>", {}},
    {{"OtherNegativePagesAreTaken"}, "<loc pg=-2 pos=10>", {{-2, 10, 0}}},
    {{"LargestPage"}, "<loc pg=2147483647 pos=10>", {{INT32_MAX, 10, 0}}},
    {{"PageIsClamped"}, "<loc pg=99999999999999999999 pos=10>", {{INT32_MAX, 10, 0}}},
    {{"PageIsClampedToo32Bits"}, "<loc pg=4294967295 pos=10>", {{INT32_MAX, 10, 0}}},
    {{"PageIsClampedBelow"}, "<loc pg=-99999999999 pos=10>", {{INT32_MIN, 10, 0}}},
    {{"LargestPosition"}, "<loc pg=3 pos=65534>", {{3, 65534, 0}}},
    {{"Position65535IsNoPosition"}, "<loc pg=3 pos=65535 len=2>", {}},
    {{"PositionMinusOneIsNoPosition"}, "<loc pg=3 pos=-1>", {}},
    {{"PositionKeeps16Bits"}, "<loc pg=3 pos=65546>", {{3, 10, 0}}},
    {{"PositionWrapsToNone"}, "<loc pg=3 pos=131071>", {}},
    {{"PositionIsClampedBefore16Bits"}, "<loc pg=3 pos=99999999999 len=2>", {}},
    {{"PositionIsClampedBelow"}, "<loc pg=3 pos=-99999999999>", {{3, 0, 0}}},
    {{"NegativePosition"}, "<loc pg=3 pos=-5>", {{3, 65531, 0}}},
    {{"LengthKeeps16Bits"}, "<loc pg=3 pos=1 len=70000>", {{3, 1, 4464}}},
    {{"LengthIsClampedBefore16Bits"}, "<loc pg=3 pos=1 len=99999999999>", {{3, 1, 65535}}},
    {{"LargestLength"}, "<loc pg=3 pos=1 len=65535>", {{3, 1, 65535}}},
};
INSTANTIATE_TEST_SUITE_P(Numbers, Location, testing::ValuesIn(numbers), rowName<LocationRow>);

// A name without a value stays pending into the next tag; any word that follows is its value.
const LocationRow pendingNames[] = {
    {{"PageKeptIntoTheNextTag"}, "<loc pos=1 pg> <loc 7 pos=2>", {{7, 2, 0}}},
    {{"PositionKeptIntoTheNextTag"}, "<loc pg=3 pos> <loc 5 pg=4>", {{4, 5, 0}}},
    {{"LengthKeptIntoTheNextTag"}, "<loc pg=3 pos=1 len> <loc 9 pg=4 pos=2>", {{3, 1, 0}, {4, 2, 9}}},
    {{"LaterNameIsTakenAsValueOfAnEarlierOne"}, "<loc pg pos=5 pos=6>", {{0, 6, 0}}},
    {{"EarlierNameIsANameAgain"}, "<loc pos pg=5 6>", {{5, 6, 0}}},
    {{"ReadInOrderOfNamesAndNotOfTags"}, "<loc len pos pg 5 6 7>", {{5, 6, 7}}},
    {{"EmptyValueTakesTheNextName"}, R"(<loc pg="" pos="5" pos="6">)", {{0, 6, 0}}},
    {{"TagEndInAWordOfItsOwnIsAnEmptyValue"}, "<loc pg=3 pos=5 len= > <loc pg=4 pos=6 8>", {{3, 5, 0}, {4, 6, 0}}},
    {{"TagEndIsTakenOffTheLastWordOnce"}, "<loc pg=3 pos=5 len=2>> <loc pg=4 pos=6>", {{3, 5, 2}, {4, 6, 0}}},
};
INSTANTIATE_TEST_SUITE_P(PendingNames, Location, testing::ValuesIn(pendingNames), rowName<LocationRow>);

TEST(LocationList, ManyPagesAndHighlights) {
  RecordingHost host;
  std::string tags;
  Highlights expected;
  for (int page = 0; page < 40; ++page)
    for (uint16_t word = 0; word < 50; ++word) {
      tags += "<loc pg=" + std::to_string(page) + " pos=" + std::to_string(word * 3) + " len=2/>";
      expected.push_back({page, static_cast<uint16_t>(word * 3), 2});
    }
  EXPECT_EQ(readFile(fileOf(tags)), 1);
  EXPECT_EQ(registered(), expected);
}

TEST(LocationList, BelongsToTheDocument) {
  RecordingHost host;
  readFile(fileOf("<loc pg=3 pos=1>"));
  EXPECT_EQ(HLL_GetData(GLT_GetHLL(host.doc)), static_cast<void *>(host.doc));
}

} // namespace
