// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Location tags that are alike, nearly alike, or spelled otherwise than those around them: each one has the meaning
// that it has alone.
#include <gtest/gtest.h>

#include "tests/plugin/input/reading.h"
#include "tests/plugin/input/tokens.h"
#include "tests/support/Rows.h"

namespace {

struct ShapeRow : Row {
  std::string tags;
  Highlights highlights;
};

class LocationShape : public testing::TestWithParam<ShapeRow> {
protected:
  static void expectHighlights(const std::string &file) {
    RecordingHost host;
    EXPECT_EQ(readFile(file), GetParam().highlights.empty() ? 0 : 1) << file;
    EXPECT_EQ(registered(), GetParam().highlights) << file;
    EXPECT_TRUE(host.blocks.empty());
  }
};

// Far from the end of the file, and directly before it.
TEST_P(LocationShape, Makes) {
  expectHighlights(fileOf(GetParam().tags) + times(40, " "));
  expectHighlights("<XML><highlights>\n" + GetParam().tags + " </Body>");
}

/// A tag as programs write it.
std::string tag(const std::string &page, const std::string &pos, const std::string &len) {
  return "<loc pg=\"" + page + "\" pos=\"" + pos + "\" len=\"" + len + "\"/>";
}

/// The same without a quotation mark.
std::string bare(const std::string &page, const std::string &pos, const std::string &len) {
  return "<loc pg=" + page + " pos=" + pos + " len=" + len + " >";
}

const std::string two = tag("3", "1", "1") + "\n" + tag("3", "2", "2") + "\n";
const std::string twoJoined = "<a>" + tag("3", "1", "1") + tag("3", "2", "2");

/// Two tags before the tested one and two after it, one per line.
std::string among(const std::string &middle) {
  return two + middle + "\n" + tag("3", "8", "8") + "\n" + tag("3", "9", "9");
}

/// Likewise, joined, the first one to another tag.
std::string joined(const std::string &middle) { return twoJoined + middle + tag("3", "8", "8") + tag("3", "9", "9"); }

/// The highlights of those tags, with `more` in the middle.
Highlights amongThem(const Highlights &more) {
  Highlights all = {{3, 1, 1}, {3, 2, 2}};
  all.insert(all.end(), more.begin(), more.end());
  all.insert(all.end(), {{3, 8, 8}, {3, 9, 9}});
  return all;
}

const ShapeRow alike[] = {
    {{"Lines"}, among(tag("3", "4", "5")), amongThem({{3, 4, 5}})},
    {{"Joined"}, joined(tag("3", "4", "5")), amongThem({{3, 4, 5}})},
    {{"Spaces"},
     bare("3", "1", "1") + " " + bare("3", "2", "2") + " " + bare("4", "5", "6"),
     {{3, 1, 1}, {3, 2, 2}, {4, 5, 6}}},
    {{"LinesWithReturns"},
     bare("3", "1", "1") + "\r\n" + bare("3", "2", "2") + "\r\n" + bare("4", "5", "6") + "\r\n",
     {{3, 1, 1}, {3, 2, 2}, {4, 5, 6}}},
    {{"WithClosingTags"},
     "<a><loc pg=3 pos=1 ></loc><loc pg=3 pos=2 ></loc><loc pg=3 pos=3 ></loc>",
     {{3, 1, 0}, {3, 2, 0}, {3, 3, 0}}},
    {{"LongNames"},
     "<location page=\"3\" position=\"1\" length=\"4\"/>\n<location page=\"3\" position=\"2\" "
     "length=\"5\"/>\n<location page=\"3\" position=\"3\" length=\"6\"/>\n",
     {{3, 1, 4}, {3, 2, 5}, {3, 3, 6}}},
    {{"LengthFirst"},
     "<a><loc len=1 pos=2 pg=3 ><loc len=4 pos=5 pg=3 ><loc len=6 pos=7 pg=3 >",
     {{3, 2, 1}, {3, 5, 4}, {3, 7, 6}}},
    {{"NoLength"}, "<a><loc pg=3 pos=1 ><loc pg=3 pos=2 ><loc pg=3 pos=4 >", {{3, 1, 0}, {3, 2, 0}, {3, 4, 0}}},
    {{"NoPosition"}, "<a><loc pg=3 len=1 ><loc pg=3 len=2 ><loc pg=3 len=4 ><loc pg=3 pos=1 >", {{3, 1, 0}}},
    {{"NoPage"}, "<a><loc pos=3 len=1 ><loc pos=4 len=2 ><loc pos=5 len=4 ><loc pg=3 pos=1 >", {{3, 1, 0}}},
    {{"NoAttributes"}, "<a><loc x><loc x><loc x><loc pg=3 pos=1 ><loc x>", {{3, 1, 0}}},
    {{"PageTwice"},
     "<a><loc pg=1 pg=3 pos=1 ><loc pg=1 pg=3 pos=2 ><loc pg=2 pg=4 pos=3 >",
     {{3, 1, 0}, {3, 2, 0}, {4, 3, 0}}},
    {{"FourNumbers"},
     "<a><loc pg=1 pg=3 pos=1 len=4 ><loc pg=1 pg=3 pos=2 len=5 ><loc pg=2 pg=4 pos=3 len=6 >",
     {{3, 1, 4}, {3, 2, 5}, {4, 3, 6}}},
    {{"NumberOfNoAttribute"},
     "<a><loc 7 pg=3 pos=1 ><loc 8 pg=3 pos=2 ><loc 9 pg=4 pos=3 >",
     {{3, 1, 0}, {3, 2, 0}, {4, 3, 0}}},
    {{"QuotedWordInThem"},
     "<a><loc 'a 1' pg=3 pos=1 ><loc 'a 1' pg=3 pos=2 ><loc 'a 2' pg=3 pos=4 >",
     {{3, 1, 0}, {3, 2, 0}, {3, 4, 0}}},
    {{"SamePosition"}, among(tag("3", "2", "7")), amongThem({})},
    {{"ValueThatIsNoNumber"},
     "<loc pg=3 pos=x >\n<loc pg=4 pos=x >\n<loc pg=5 pos=x >\n",
     {{3, 0, 0}, {4, 0, 0}, {5, 0, 0}}},
    {{"ValueOfTenDigits"},
     "<loc pg=3 pos=0000000012 >\n<loc pg=4 pos=0000000012 >\n<loc pg=5 pos=0000000012 >\n",
     {{3, 12, 0}, {4, 12, 0}, {5, 12, 0}}},
};
INSTANTIATE_TEST_SUITE_P(Alike, LocationShape, testing::ValuesIn(alike), rowName<ShapeRow>);

const ShapeRow numbers[] = {
    {{"WithANameAfter"}, "<loc pg=3 pos=5len 7 >\n" + bare("3", "6", "1"), {{3, 5, 0}, {3, 6, 1}}},
    {{"MoreDigits"}, among(tag("3", "4321", "12")), amongThem({{3, 4321, 12}})},
    {{"NineDigits"}, among(tag("3", "000000007", "000000012")), amongThem({{3, 7, 12}})},
    {{"TenDigits"}, among(tag("3", "0000000007", "0000000012")), amongThem({{3, 7, 12}})},
    {{"TwelveDigits"}, among(tag("3", "999999999999", "1")), amongThem({})},
    {{"ClampedLength"}, among(tag("3", "7", "999999999999")), amongThem({{3, 7, 65535}})},
    {{"SixteenBits"}, among(tag("3", "65546", "65537")), amongThem({{3, 10, 1}})},
    {{"NoPosition"}, among(tag("3", "65535", "1")), amongThem({})},
    {{"NegativePosition"}, among(tag("3", "-3", "1")), amongThem({{3, 65533, 1}})},
    {{"NegativePage"}, among(tag("-1", "7", "1")), amongThem({})},
    {{"PlusSign"}, among(tag("+3", "+7", "+1")), amongThem({{3, 7, 1}})},
    {{"LettersAfter"}, among(tag("3x", "7.5", "1-2")), amongThem({{3, 7, 1}})},
    {{"LettersBefore"}, among(tag("3", "x7", "1")), amongThem({{3, 0, 1}})},
    {{"SentenceEndAfter"}, among(tag("3!", "7! ", "1!")), amongThem({{3, 7, 1}})},
    {{"SentenceEndBefore"}, among(tag("!3", "! 7", "!.1")), amongThem({{3, 7, 1}})},
    {{"TagBeginsAfter"}, among(tag("3<", "7<b>", "1")), amongThem({{3, 7, 0}})},
    {{"NoDigits"}, among(tag("3", "", "")), amongThem({{3, 0, 0}})},
    {{"TenDigitsBeyond32Bits"}, among(tag("3", "4294967303", "1")), amongThem({})},
};
INSTANTIATE_TEST_SUITE_P(Numbers, LocationShape, testing::ValuesIn(numbers), rowName<ShapeRow>);

// One byte of the tag in the middle is another.
const ShapeRow oneByte[] = {
    {{"TagBegins"}, among(R"(xloc pg="3" pos="4" len="5"/>)"), amongThem({})},
    {{"TagName"}, among(R"(<lox pg="3" pos="4" len="5"/>)"), amongThem({})},
    {{"TagNameInCapitals"}, among(R"(<lOc pg="3" pos="4" len="5"/>)"), amongThem({{3, 4, 5}})},
    {{"TagNameEndsInDigit"}, among(R"(<loc1pg="3" pos="4" len="5"/>)"), amongThem({})},
    {{"TagNameEndsInOther"}, among(R"(<loc,pg="3" pos="4" len="5"/>)"), amongThem({{3, 4, 5}})},
    {{"TagNameEndsInBracket"}, among(R"(<loc>pg="3" pos="4" len="5"/>)"), amongThem({})},
    {{"Page"}, among(R"(<loc pq="3" pos="4" len="5"/>)"), amongThem({})},
    {{"PageInCapitals"}, among(R"(<loc pG="3" pos="4" len="5"/>)"), amongThem({{3, 4, 5}})},
    {{"PageHighBit"}, among("<loc p\xE7=\"3\" pos=\"4\" len=\"5\"/>"), amongThem({})},
    {{"EqualsSign"}, among(R"(<loc pg!"3" pos="4" len="5"/>)"), amongThem({{3, 4, 5}})},
    {{"EqualsSignIsAWordByte"}, among(R"(<loc pg."3" pos="4" len="5"/>)"), amongThem({})},
    {{"QuotationMarkBefore"},
     among(R"(<loc pg=-3" pos="4" len="5"/>)"),
     {{3, 1, 1}, {3, 2, 2}, {3, 8, 8}, {3, 9, 9}, {-3, 4, 5}}},
    {{"QuotationMarkAfter"}, among(R"(<loc pg="3' pos="4" len="5"/>)"), amongThem({{3, 4, 5}})},
    {{"Position"}, among(R"(<loc pg="3" pox="4" len="5"/>)"), amongThem({})},
    {{"Length"}, among(R"(<loc pg="3" pos="4" lex="5"/>)"), amongThem({{3, 4, 0}})},
    {{"Slash"}, among(R"(<loc pg="3" pos="4" len="5" >)"), amongThem({{3, 4, 5}})},
    {{"SlashIsADigit"}, among(R"(<loc pg="3" pos="4" len="5"7>)"), amongThem({{3, 4, 5}})},
    {{"BracketIsMissing"}, among(R"(<loc pg="3" pos="4" len="5"/ )"), amongThem({})},
    {{"WordContinuesAfterTheBracket"}, among(R"(<loc pg="3" pos="4" len="5"/>>)"), amongThem({{3, 4, 5}})},
    {{"LetterAfterTheBracket"}, among(R"(<loc pg="3" pos="4" len="5"/>x)"), amongThem({})},
    {{"JoinedTagName"}, joined(R"(<lox pg="3" pos="4" len="5"/>)"), amongThem({})},
    {{"JoinedTagBegins"}, joined(R"( loc pg="3" pos="4" len="5"/>)"), amongThem({})},
    {{"JoinedTagNameEndsInDigit"}, joined(R"(<loc1pg="3" pos="4" len="5"/>)"), amongThem({})},
    {{"JoinedLetterAfterTheBracket"}, joined(R"(<loc pg="3" pos="4" len="5"/>x)"), amongThem({})},
};
INSTANTIATE_TEST_SUITE_P(OneByte, LocationShape, testing::ValuesIn(oneByte), rowName<ShapeRow>);

const ShapeRow spellings[] = {
    {{"ByTurns"},
     tag("3", "1", "1") + "\n" + bare("3", "2", "2") + "\n" + tag("3", "3", "3") + "\n" + bare("3", "4", "4") + "\n" +
         tag("3", "5", "5"),
     {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}, {3, 5, 5}}},
    {{"OneAfterTheOther"},
     two + bare("3", "3", "3") + "\n" + bare("3", "4", "4") + "\n" + bare("3", "5", "5") + "\n" + tag("3", "6", "6") +
         "\n" + tag("3", "7", "7"),
     {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}, {3, 5, 5}, {3, 6, 6}, {3, 7, 7}}},
    {{"OtherOrder"},
     among(R"(<loc pos="3" len="4" pg="5"/>)"),
     {{3, 1, 1}, {3, 2, 2}, {3, 8, 8}, {3, 9, 9}, {5, 3, 4}}},
    {{"Shorter"}, among(R"(<loc pg="3" pos="4"/>)"), amongThem({{3, 4, 0}})},
    {{"Longer"}, among(R"(<loc pg="3" pos="4" len="5" len="6"/>)"), amongThem({{3, 4, 6}})},
    {{"JoinedAndThenNot"},
     twoJoined + "\n" + tag("3", "3", "3") + tag("3", "4", "4"),
     {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
    {{"TextBetween"},
     two + "some text, long enough: <b>hit</b> " + tag("3", "3", "3") + " text " + tag("3", "4", "4"),
     {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
    {{"TextInTheTagsLastWord"},
     two + tag("3", "3", "3") + "text" + tag("3", "4", "4"),
     {{3, 1, 1}, {3, 2, 2}, {3, 4, 4}}},
    {{"SentenceEndBetween"},
     twoJoined + "!" + tag("3", "3", "3") + "\n! " + tag("3", "4", "4"),
     {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
    {{"QuoteBetween"}, two + "'" + tag("3", "3", "3") + "' " + tag("3", "4", "4"), {{3, 1, 1}, {3, 2, 2}, {3, 4, 4}}},
    {{"OtherTagsBetween"},
     twoJoined + "<a x>" + tag("3", "3", "3") + "</a>" + tag("3", "4", "4"),
     {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
    {{"HeaderBetween"},
     two + "<Body mode=active>" + tag("3", "3", "3") + "\n" + tag("3", "4", "4"),
     {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
    {{"HeaderThatEatsATag"},
     two + "<Body " + tag("3", "3", "3") + "\n" + tag("3", "4", "4"),
     {{3, 1, 1}, {3, 2, 2}, {3, 4, 4}}},
};
INSTANTIATE_TEST_SUITE_P(Spellings, LocationShape, testing::ValuesIn(spellings), rowName<ShapeRow>);

/// Three tags with so many spaces after the name, before a position and at the end.
std::string spaced(int name, int position, int end) {
  std::string tags;
  for (const char *number : {"1", "2", "4"})
    tags += "<loc" + times(name, " ") + "pg=3" + times(position, " ") + "pos=" + number + times(end, " ") + ">\n";
  return tags;
}

const Highlights three = {{3, 1, 0}, {3, 2, 0}, {3, 4, 0}};

const ShapeRow lengths[] = {
    {{"FirstPartOf31"}, spaced(23, 1, 1), three}, // a line feed, the name, the spaces, "pg="
    {{"FirstPartOf32"}, spaced(24, 1, 1), three},
    {{"FirstPartOf33"}, spaced(25, 1, 1), three},
    {{"MiddlePartOf15"}, spaced(1, 11, 1), three},
    {{"MiddlePartOf16"}, spaced(1, 12, 1), three},
    {{"MiddlePartOf17"}, spaced(1, 13, 1), three},
    {{"MiddlePartOf31"}, spaced(1, 27, 1), three},
    {{"MiddlePartOf32"}, spaced(1, 28, 1), three},
    {{"MiddlePartOf33"}, spaced(1, 29, 1), three},
    {{"LastPartOf31"}, spaced(1, 1, 30), three},
    {{"LastPartOf32"}, spaced(1, 1, 31), three},
    {{"LastPartOf33"}, spaced(1, 1, 32), three},
    {{"OneSpaceLess"},
     spaced(1, 28, 1) + "<loc pg=3" + times(27, " ") + "pos=5 >\n",
     {{3, 1, 0}, {3, 2, 0}, {3, 4, 0}, {3, 5, 0}}},
    {{"LastByteOfALongPart"},
     spaced(1, 28, 1) + "<loc pg=3" + times(28, " ") + "pos.5 >\n<loc pg=3" + times(28, " ") + "pos=6 >\n",
     {{3, 1, 0}, {3, 2, 0}, {3, 4, 0}, {3, 6, 0}}},
    {{"LastByteOfAPartOf17"}, spaced(1, 13, 1) + "<loc pg=3" + times(13, " ") + "pos.5 >\n", three},
    {{"LastByteOfAPartOf33"}, spaced(1, 29, 1) + "<loc pg=3" + times(29, " ") + "pos.5 >\n", three},
};
INSTANTIATE_TEST_SUITE_P(Lengths, LocationShape, testing::ValuesIn(lengths), rowName<ShapeRow>);

const std::string t1 = "<a>" + bare("3", "1", "1"), t2 = bare("3", "2", "2"), t3 = bare("3", "3", "3"),
                  t4 = bare("3", "4", "4");

const ShapeRow sections[] = {
    {{"ClosedBetween"}, t1 + t2 + "</highlights>" + t3 + "<highlights>" + t4, {{3, 1, 1}, {3, 2, 2}, {3, 4, 4}}},
    {{"ClosedBetweenLines"},
     t1 + "\n" + t2 + "\n</highlights>\n" + t3 + "\n<highlights>\n" + t4,
     {{3, 1, 1}, {3, 2, 2}, {3, 4, 4}}},
    {{"ClosedForGood"}, t1 + t2 + "</highlight>" + t3 + t4, {{3, 1, 1}, {3, 2, 2}}},
    {{"OpenedTwice"}, t1 + t2 + "<highlight>" + t3 + "<highlight>" + t4, {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
    {{"OpenedAfterTheTags"}, "</highlights>" + t1 + t2 + t3 + "<highlights>" + t4, {{3, 4, 4}}},
    {{"NameOnlyLooksLikeClosing"}, t1 + t2 + "</highlightz>" + t3 + t4, {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
};
INSTANTIATE_TEST_SUITE_P(Sections, LocationShape, testing::ValuesIn(sections), rowName<ShapeRow>);

const ShapeRow pending[] = {
    {{"PageIsNamedAgain"}, t1 + t2 + "<loc pos=5 pg>" + t3 + t4, {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
    {{"LengthIsNamedAgain"},
     t1 + t2 + "<loc pg=3 pos=5 len>" + t3 + t4,
     {{3, 1, 1}, {3, 2, 2}, {3, 5, 0}, {3, 3, 3}, {3, 4, 4}}},
    {{"LengthTakesANumberOfNoAttribute"},
     "<loc 7 pg=3 pos=1 >\n<loc 7 pg=3 pos=2 >\n<loc pg=3 pos=5 len>\n<loc 9 pg=3 pos=3 >\n<loc 9 pg=3 pos=4 >\n",
     {{3, 1, 0}, {3, 2, 0}, {3, 5, 0}, {3, 3, 9}, {3, 4, 0}}},
    {{"PositionTakesANumberOfNoAttribute"},
     "<a><loc 7 pg=3 ><loc 7 pg=3 ><loc pg=3 pos><loc 9 pg=4 ><loc 9 pg=5 >",
     {{4, 9, 0}}},
    {{"PageTakesTheNextName"},
     "<a><loc pos=1 pg=3 ><loc pos=2 pg=3 ><loc pg><loc pos=4 pg=3 ><loc pos=5 pg=3 >",
     {{3, 1, 0}, {3, 2, 0}, {3, 5, 0}}},
    {{"PageTakesTheNextNameAfterTheFirstShape"},
     "<a><loc pos=1 pg=3 ><loc pg><loc pos=4 pg=3 ><loc pos=5 pg=3 >",
     {{3, 1, 0}, {3, 5, 0}}},
    {{"PageTakesTheFirstNumberOfTheFirstShape"}, "<loc pos=5 pg>\n<loc 9 pos=3 >\n<loc 8 pos=4 >\n", {{9, 3, 0}}},
    {{"EmptyValue"},
     two + "<loc pg=\"3\" pos=\"5\" len=\"\"/>\n" + tag("3", "8", "8"),
     {{3, 1, 1}, {3, 2, 2}, {3, 5, 0}, {3, 8, 8}}},
    {{"SlashIsTheValueEachTime"},
     "<a><loc pg=3 pos=1 len=/><loc pg=3 pos=2 len=/><loc pg=3 pos=4 len=/>",
     {{3, 1, 0}, {3, 2, 0}, {3, 4, 0}}},
    {{"LengthTakesTheFirstNumberOfTheFirstShape"},
     "<loc pg=3 pos=5 len>\n<loc 9 pg=3 pos=3 >\n<loc 9 pg=3 pos=4 >\n<loc 9 pg=3 pos=6 >\n",
     {{3, 5, 0}, {3, 3, 9}, {3, 4, 0}, {3, 6, 0}}},
    {{"LengthIsLeftByTheFirstShape"},
     "<loc pg=3 pos=1 len>\n<loc 9 pg=3 pos=2 >\n<loc pg=3 pos=3 len>\n<loc 8 pg=3 pos=4 >\n",
     {{3, 1, 0}, {3, 2, 9}, {3, 3, 0}, {3, 4, 8}}},
};
INSTANTIATE_TEST_SUITE_P(Pending, LocationShape, testing::ValuesIn(pending), rowName<ShapeRow>);

/// A tag that leaves so many of a word's 250 bytes to the tag joined to it, when it begins as the second byte.
std::string leaving(int bytes) { return "<" + times(247 - bytes, "a") + ">"; }

// The word that a tag's end begins, "><aaa...><loc", may be split within the next tag's name.
const ShapeRow capacity[] = {
    {{"For32Bytes"}, t1 + t2 + leaving(32) + t3 + t4, {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
    {{"For31Bytes"}, t1 + t2 + leaving(31) + t3 + t4, {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
    {{"ForTheName"}, t1 + t2 + leaving(4) + t3 + t4, {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
    {{"ForLessThanTheName"}, t1 + t2 + leaving(3) + t3 + t4, {{3, 1, 1}, {3, 2, 2}, {3, 4, 4}}},
    {{"ForOneByte"}, t1 + t2 + leaving(1) + t3 + t4, {{3, 1, 1}, {3, 2, 2}, {3, 4, 4}}},
    {{"ForNoByte"}, t1 + t2 + leaving(0) + t3 + t4, {{3, 1, 1}, {3, 2, 2}, {3, 3, 3}, {3, 4, 4}}},
};
INSTANTIATE_TEST_SUITE_P(Capacity, LocationShape, testing::ValuesIn(capacity), rowName<ShapeRow>);

/// A tag of the first word that leaves so many of its 250 bytes.
std::string leavingOfItsOwn(int bytes) { return "<" + times(248 - bytes, "a") + ">"; }

// A name that ends only because the word is split is no name where the same bytes are not split.
const ShapeRow splitNames[] = {
    {{"DigitsAfterTheName"},
     leavingOfItsOwn(4) + "<loc7 pg=3 pos=1 ><loc8 pg=3 pos=2 ><loc pg=3 pos=4 >",
     {{3, 1, 0}, {3, 4, 0}}},
    {{"LettersAfterTheName"},
     leavingOfItsOwn(4) + "<locpg=3 pos=1 ><locpg=3 pos=2 ><loc pg=3 pos=4 >",
     {{3, 1, 0}, {3, 4, 0}}},
    {{"BracketAfterTheName"},
     leavingOfItsOwn(4) + "<loc> 7 pg=3 pos=1 ><loc> 8 pg=3 pos=2 ><loc pg=3 pos=4 >",
     {{3, 4, 0}}},
    {{"LongName"},
     leavingOfItsOwn(9) + "<location7 pg=3 pos=1 ><location8 pg=3 pos=2 ><location pg=3 pos=4 >",
     {{3, 1, 0}, {3, 4, 0}}},
    {{"NameOfTheLongOne"},
     leavingOfItsOwn(4) + "<location pg=3 pos=1 ><location pg=3 pos=2 ><locati pg=3 pos=4 >",
     {{3, 1, 0}, {3, 2, 0}}},
    {{"QuoteAfterTheName"},
     leavingOfItsOwn(4) + "<loc'a b' pg=3 pos=1 ><loc'a b' pg=3 pos=2 ><loc pg=3 pos=4 >",
     {{3, 1, 0}, {3, 4, 0}}},
};
INSTANTIATE_TEST_SUITE_P(SplitNames, LocationShape, testing::ValuesIn(splitNames), rowName<ShapeRow>);

struct EndRow : Row {
  std::string rest; ///< three tags, in an open section
  Highlights highlights;
};

class LocationShapeEnd : public testing::TestWithParam<EndRow> {};

TEST_P(LocationShapeEnd, Makes) {
  RecordingHost host;
  EXPECT_EQ(readFile("<XML><highlights>" + two + tag("3", "4", "4") + GetParam().rest),
            GetParam().highlights.empty() ? 0 : 1);
  EXPECT_EQ(registered(), GetParam().highlights);
}

const Highlights all = {{3, 1, 1}, {3, 2, 2}, {3, 4, 4}};

const EndRow ends[] = {
    {{"Joined"}, "</Body>", all},
    {{"OnALine"}, "\n</Body>", all},
    {{"OneByteAfterTheBody"}, "</Body> ", all},
    {{"FarAfterTheBody"}, "</Body>" + times(40, " "), all},
    {{"NoByte"}, "", {}},
    {{"NoBodyEnd"}, times(40, " "), {}},
    {{"FileEnd"}, "</XML></Body>", {}},
    {{"NulAfterTheBody"}, "</Body>" + std::string(40, '\0'), all},
    {{"NulBeforeTheBody"}, std::string(1, '\0') + "</Body>" + times(40, " "), {}},
    {{"TagIsNotEnded"}, "<loc pg=\"3\" pos=\"5\" len=\"5\"</Body>", {}},
    {{"NulInATag"}, "\n<loc pg=\"3\" pos=\"5" + std::string(1, '\0') + "\" len=\"5\"/></Body>" + times(40, " "), {}},
    {{"AnotherTag"}, "\n<loc pg=\"3\" pos=\"5\" len=\"5\"/></Body>", {{3, 1, 1}, {3, 2, 2}, {3, 4, 4}, {3, 5, 5}}},
};
INSTANTIATE_TEST_SUITE_P(Ends, LocationShapeEnd, testing::ValuesIn(ends), rowName<EndRow>);

} // namespace
