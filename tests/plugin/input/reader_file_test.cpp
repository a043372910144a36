// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The order of a highlight file's tags: which files are registered, and with which highlights.
#include <gtest/gtest.h>

#include "tests/plugin/input/reading.h"
#include "tests/plugin/input/tokens.h"
#include "tests/support/Rows.h"

namespace {

struct FileRow : Row {
  std::string file;
  Highlights highlights; ///< none: the file registers nothing
};

class File : public testing::TestWithParam<FileRow> {};

TEST_P(File, Registers) {
  RecordingHost host;
  EXPECT_EQ(readFile(GetParam().file), GetParam().highlights.empty() ? 0 : 1);
  EXPECT_EQ(registered(), GetParam().highlights);
  EXPECT_EQ(host.count("Alert"), 0U);
}

const std::string loc = " <loc pg=3 pos=10 len=2> ";
const Highlights one = {{3, 10, 2}};

const FileRow examples[] = {
    {{"OnOneLine"},
     R"(<?xml version="1.0"?><XML><Body Units="characters" color="#FF0000" mode="active" version="2"><highlights>)"
     R"(<loc pg="3" pos="120" len="6"/><location page="3" position="131" length="4"/></highlights></Body></XML>)",
     {{3, 120, 6}, {3, 131, 4}}},
    {{"OverLines"},
     "<?xml version=\"1.0\"?>\r\n<XML>\r\n<Body Units=\"characters\">\r\n<highlights>\r\n"
     "<loc pg=\"3\" pos=\"120\" len=\"6\"/>\r\n</highlights>\r\n</Body>\r\n</XML>\r\n",
     {{3, 120, 6}}},
    {{"TheLeast"}, "<XML> <highlight> <loc pg=3 pos=10 len=2> </Body>", one},
    {{"TheLeastSideBySide"}, "<XML><highlight><loc pg=3 pos=10 len=2></Body>", one},
    {{"LastWordHoldsTheRestOfTheFile"},
     "<XML><Body Units=characters><highlights><loc pg=3 pos=10 len=2></highlights></Body></XML>",
     one},
};
INSTANTIATE_TEST_SUITE_P(Examples, File, testing::ValuesIn(examples), rowName<FileRow>);

const FileRow headers[] = {
    {{"Declaration"}, "<?xml version=\"1.0\"?> <highlights>" + loc + "</Body>", one},
    {{"DeclarationAndLaterTag"}, "<?xml version=\"1.0\"?> <highlights> <XML>" + loc + "<XML> </Body>", one},
    {{"OtherTag"}, "<html> <XML> <highlights>" + loc + "</Body>", {}},
    {{"Word"}, "text <XML> <highlights>" + loc + "</Body>", {}},
    {{"OpenTag"}, "<XML <highlights>" + loc + "</Body>", {}},
    {{"CompleteDeclaration"}, "<?xml?><XML> <highlights>" + loc + "</Body>", {}},
    {{"SpacesBefore"}, "\r\n\n \t<XML> <highlights>" + loc + "</Body>", one},
    {{"OtherCharactersBefore"}, "\"=!, <XML> <highlights>" + loc + "</Body>", one},
    {{"ByteOrderMarkBefore"}, "\xEF\xBB\xBF<XML> <highlights>" + loc + "</Body>", one},
    {{"QuotedTag"}, "'<XML>' <highlights>" + loc + "</Body>", {}},
    {{"Nothing"}, " \n\t", {}},
    {{"OnlyTheHeader"}, "<XML>", {}},
};
INSTANTIATE_TEST_SUITE_P(Header, File, testing::ValuesIn(headers), rowName<FileRow>);

const FileRow sections[] = {
    {{"LocationsOutsideAreSkipped"}, "<XML>" + loc + "<highlights> </highlights>" + loc + "</Body>", {}},
    {{"LocationsAfterTheClosingTagAreSkipped"},
     "<XML> <highlights>" + loc + "</highlights> <loc pg=4 pos=1> </Body>",
     one},
    {{"SectionsAddUp"},
     "<XML> <highlights>" + loc + "</highlights> <highlight> <loc pg=4 pos=1> </highlight> </Body>",
     {{3, 10, 2}, {4, 1, 0}}},
    {{"SectionOpenedTwice"},
     "<XML> <highlights>" + loc + "<highlights> <loc pg=4 pos=1> </Body>",
     {{3, 10, 2}, {4, 1, 0}}},
    {{"EitherClosingTagCloses"}, "<XML> <highlights>" + loc + "</highlight> <loc pg=4 pos=1> </Body>", one},
    {{"ClosingTagBeforeAnyList"}, "<XML> </highlights> <highlights>" + loc + "</Body>", one},
    {{"TagWithAttributesOpensNothing"}, "<XML> <highlights version=\"2\">" + loc + "</Body>", {}},
    {{"SingularWithAttributesOpensNothing"}, "<XML> <highlight version=\"2\">" + loc + "</Body>", {}},
    {{"NoBodyTagNeeded"}, "<XML> <highlights>" + loc + "</highlights> </Body>", one},
    {{"BodyTagInsideTheSection"}, "<XML> <highlights> <Body Units=characters>" + loc + "</Body>", one},
    {{"ClosingTagInTheHeaderListIsOneOfItsWords"},
     "<XML> <highlights> <Body Units=characters </highlights>" + loc + "</Body>",
     one},
};
INSTANTIATE_TEST_SUITE_P(Sections, File, testing::ValuesIn(sections), rowName<FileRow>);

const FileRow ends[] = {
    {{"NoBodyEnd"}, "<XML> <highlights>" + loc + "</highlights>", {}},
    {{"XmlEndBeforeBodyEnd"}, "<XML> <highlights>" + loc + "</highlights> </XML> </Body>", {}},
    {{"XmlEndBeforeAnything"}, "<XML> </XML> <highlights>" + loc + "</Body>", {}},
    {{"NothingAfterBodyEndIsRead"}, "<XML> <highlights>" + loc + "</Body> <highlights> <loc pg=4 pos=1> </Body>", one},
    {{"BodyEndBeforeAnyListIsSkipped"}, "<XML> </Body> <highlights>" + loc + "</Body>", one},
    {{"BodyEndBeforeAnyHighlightIsSkipped"}, "<XML> <highlights> </Body>" + loc + "</Body>", one},
    {{"NulEndsTheText"}, "<XML> <highlights>" + loc + std::string(1, '\0') + "</Body>", {}},
    {{"NothingAfterNulIsRead"},
     "<XML> <highlights>" + loc + "</Body>" + std::string(1, '\0') + "<loc pg=4 pos=1> </Body>",
     one},
    {{"NulFirst"}, std::string(1, '\0') + "<XML> <highlights>" + loc + "</Body>", {}},
    {{"EndsInsideBodyTag"}, "<XML> <highlights>" + loc + "<Body Units=characters", {}},
    {{"EndsAfterABodyTagThatTheNextTagCloses"}, "<XML> <highlights>" + loc + "<Body Units=characters </Body>", {}},
    {{"EndsInsideLocationTag"}, "<XML> <highlights>" + loc + "<loc pg=4 pos=1 len=2 ", {}},
    {{"EndsAfterTheNameOfTheBodyTag"}, "<XML> <highlights>" + loc + "<Body", {}},
    {{"EndsAfterTheNameOfALocationTag"}, "<XML> <highlights>" + loc + "<loc", {}},
    {{"TruncatedInTheBodyEnd"}, "<XML> <highlights>" + loc + "</Bod", {}},
};
INSTANTIATE_TEST_SUITE_P(Ends, File, testing::ValuesIn(ends), rowName<FileRow>);

const FileRow longWords[] = {
    {{"WordOf300IsTwoWords"}, "<XML> <highlights> " + times(250, "x") + "<loc pg=3 pos=10 len=2> </Body>", one},
    {{"TagAfterAFullWordIsSplit"}, "<XML> <highlights> " + times(248, "x") + "<loc pg=3 pos=10 len=2> </Body>", {}},
    {{"TagsSideBySideBeyond250AreSplitAtTheLimit"},
     "<XML> <highlights> " + times(41, "<p></p>") + "<loc pg=3 pos=10 len=2> </Body>",
     one},
    {{"ValueOf300"}, "<XML> <highlights> <loc pg=3 pos=10 len=" + times(299, "0") + "2> </Body>", {{3, 10, 0}}},
};
INSTANTIATE_TEST_SUITE_P(LongWords, File, testing::ValuesIn(longWords), rowName<FileRow>);

TEST(FileBytes, AnyBytesAreReadSafely) {
  RecordingHost host;
  uint32_t state = 1;
  for (int round = 0; round < 300; ++round) {
    std::string file = "<XML> <Body Units=characters> <highlights> <loc pg=1 pos=1>";
    for (int i = 0; i < 700; ++i)
      file += static_cast<char>((state = state * 1664525U + 1013904223U) >> 24);
    readFile(file + "</Body>");
  }
  EXPECT_TRUE(host.blocks.empty()) << "the first word is right and memory is there: nothing is kept";
}

TEST(FileBytes, EveryPrefixOfAFileIsReadSafely) {
  const std::string file = examples[0].file;
  for (size_t length = 1; length <= file.size(); ++length) {
    RecordingHost host;
    const bool complete = length >= file.find("</Body>") + 7;
    EXPECT_EQ(readFile(file.substr(0, length)), complete ? 1 : 0) << file.substr(0, length);
  }
}

// The reader keeps no state: each file is read independently.
TEST(FileBytes, NothingIsKeptFromFileToFile) {
  RecordingHost host;
  EXPECT_EQ(
      readFile("<XML> <Body Units=characters color=#0000FF mode=active version> <highlights> <loc pg=3 pos=1 len> "
               "</Body>"),
      1);
  EXPECT_EQ(readFile("<XML> <Body 1> <highlights> <loc pg=4 pos=2 9> </Body>"), 1);
  EXPECT_EQ(registered(), (Highlights{{4, 2, 0}}));
  const GLTRecord *record = GLTFindRecord(host.doc);
  EXPECT_EQ(record->offsetUnits, 0);
  EXPECT_EQ(record->wordFinderVersion, 2);
  EXPECT_EQ(record->color.component[0], tavrel::fixedOne);
  EXPECT_EQ(record->color.component[2], 0);
}

} // namespace
