// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Every word that the reader of highlight files knows, in all cases of letters.
#include <gtest/gtest.h>

#include <cctype>

#include "tests/plugin/input/reading.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

std::string lower(std::string word) {
  for (char &c : word)
    c = static_cast<char>(tolower(c));
  return word;
}

std::string upper(std::string word) {
  for (char &c : word)
    c = static_cast<char>(toupper(c));
  return word;
}

std::string alternating(std::string word) {
  for (size_t i = 0; i < word.size(); ++i)
    word[i] = static_cast<char>(i % 2 == 0 ? toupper(word[i]) : tolower(word[i]));
  return word;
}

/// A file with `%` in place of the word, and its highlights when the word is known.
struct WordRow : Row {
  std::string word, file;
  Highlights highlights;
};

class KnownWord : public testing::TestWithParam<WordRow> {
protected:
  static Highlights read(const std::string &word) {
    RecordingHost host;
    std::string file = GetParam().file;
    readFile(file.replace(file.find('%'), 1, word));
    return registered();
  }
};

TEST_P(KnownWord, InAllCasesOfLetters) {
  const std::string &word = GetParam().word;
  for (const std::string &variant : {word, lower(word), upper(word), alternating(word)})
    EXPECT_EQ(read(variant), GetParam().highlights) << variant;
}

TEST_P(KnownWord, OnlyAsACompleteWord) {
  const std::string &word = GetParam().word;
  EXPECT_NE(read(word.substr(0, 1) + "x" + word.substr(1)), GetParam().highlights);
  EXPECT_NE(read("x" + word), GetParam().highlights);
}

const WordRow tags[] = {
    {{"Xml"}, "<XML>", "% <highlights> <loc pg=3 pos=1 len=2> </Body>", {{3, 1, 2}}},
    {{"XmlDeclaration"}, "<?XML", "% version=1.0> <highlights> <loc pg=3 pos=1 len=2> </Body>", {{3, 1, 2}}},
    {{"Highlights"}, "<highlights>", "<XML> % <loc pg=3 pos=1 len=2> </Body>", {{3, 1, 2}}},
    {{"Highlight"}, "<highlight>", "<XML> % <loc pg=3 pos=1 len=2> </Body>", {{3, 1, 2}}},
    {{"HighlightsEnd"}, "</highlights>", "<XML> <highlights> <loc pg=3 pos=1> % <loc pg=4 pos=1> </Body>", {{3, 1, 0}}},
    {{"HighlightEnd"}, "</highlight>", "<XML> <highlights> <loc pg=3 pos=1> % <loc pg=4 pos=1> </Body>", {{3, 1, 0}}},
    {{"LocationTag"}, "<location", "<XML> <highlights> % pg=3 pos=1 len=2> </Body>", {{3, 1, 2}}},
    {{"LocTag"}, "<loc", "<XML> <highlights> % pg=3 pos=1 len=2> </Body>", {{3, 1, 2}}},
    {{"BodyEnd"}, "</Body>", "<XML> <highlights> <loc pg=3 pos=1> % <loc pg=4 pos=1> </Body>", {{3, 1, 0}}},
    {{"XmlEnd"}, "</XML>", "<XML> <highlights> <loc pg=3 pos=1> % </Body>", {}},
};
INSTANTIATE_TEST_SUITE_P(Tags, KnownWord, testing::ValuesIn(tags), rowName<WordRow>);

const WordRow attributes[] = {
    {{"Page"}, "page", "<XML> <highlights> <loc %=3 pos=1 len=2> </Body>", {{3, 1, 2}}},
    {{"Pg"}, "pg", "<XML> <highlights> <loc %=3 pos=1 len=2> </Body>", {{3, 1, 2}}},
    {{"Position"}, "position", "<XML> <highlights> <loc pg=3 %=1 len=2> </Body>", {{3, 1, 2}}},
    {{"Pos"}, "pos", "<XML> <highlights> <loc pg=3 %=1 len=2> </Body>", {{3, 1, 2}}},
    {{"Length"}, "length", "<XML> <highlights> <loc pg=3 pos=1 %=2> </Body>", {{3, 1, 2}}},
    {{"Len"}, "len", "<XML> <highlights> <loc pg=3 pos=1 %=2> </Body>", {{3, 1, 2}}},
};
INSTANTIATE_TEST_SUITE_P(LocationAttributes, KnownWord, testing::ValuesIn(attributes), rowName<WordRow>);

// The body tag and its attributes say how highlights are shown, not which.
struct SettingRow : Row {
  std::string word, file;
};

class KnownSetting : public testing::TestWithParam<SettingRow> {
protected:
  /// Whether the file was registered in blue character offsets of version 2, scrolled to.
  static bool read(const std::string &word) {
    RecordingHost host;
    host.wordFinderVersions = {2, 7};
    std::string file = GetParam().file;
    readFile(file.replace(file.find('%'), 1, word));
    const bool scrolled = host.count("PageViewScrollToPoint") == 1;
    const GLTRecord *record = GLTFindRecord(host.doc);
    const int32_t blue = 255 * fixedOne;
    return record != nullptr && scrolled && record->offsetUnits == GLT_CHARACTER_OFFSETS &&
           record->color.component[2] == blue;
  }
};

TEST_P(KnownSetting, InAllCasesOfLetters) {
  const std::string &word = GetParam().word;
  for (const std::string &variant : {word, lower(word), upper(word), alternating(word)})
    EXPECT_TRUE(read(variant)) << variant;
}

TEST_P(KnownSetting, OnlyAsACompleteWord) {
  EXPECT_FALSE(read("x" + GetParam().word));
  EXPECT_FALSE(read(GetParam().word.substr(0, 1) + "x" + GetParam().word.substr(1)));
}

const SettingRow settings[] = {
    {{"BodyTag"}, "<Body", "<XML> % Units=characters color=#0000FF mode=active> <highlights> <loc pg=3 pos=1> </Body>"},
    {{"Units"}, "Units", "<XML> <Body %=characters color=#0000FF mode=active> <highlights> <loc pg=3 pos=1> </Body>"},
    {{"Characters"},
     "characters",
     "<XML> <Body Units=% color=#0000FF mode=active> <highlights> <loc pg=3 pos=1> </Body>"},
    {{"Color"}, "color", "<XML> <Body Units=characters %=#0000FF mode=active> <highlights> <loc pg=3 pos=1> </Body>"},
    {{"Mode"}, "mode", "<XML> <Body Units=characters color=#0000FF %=active> <highlights> <loc pg=3 pos=1> </Body>"},
    {{"Active"}, "active", "<XML> <Body Units=characters color=#0000FF mode=%> <highlights> <loc pg=3 pos=1> </Body>"},
};
INSTANTIATE_TEST_SUITE_P(Body, KnownSetting, testing::ValuesIn(settings), rowName<SettingRow>);

TEST(KnownVersion, InAllCasesOfLetters) {
  for (const char *word : {"version", "VERSION", "Version"}) {
    RecordingHost host;
    readFile(fileWith(std::string(word) + "=1"));
    EXPECT_EQ(GLTFindRecord(host.doc)->wordFinderVersion, 1) << word;
  }
}

// Complete tags have no attributes; they are known, and add no highlight.
TEST(KnownCompleteTags, AddNothingInAnyCaseOfLetters) {
  for (const char *tag : {"<location>", "<LOCATION>", "<loc>", "<LOC>", "<Body>", "<BODY>", "<body>"}) {
    RecordingHost host;
    readFile(std::string("<XML> <highlights> ") + tag + " pg=3 pos=1 > <loc pg=4 pos=1> </Body>");
    EXPECT_EQ(registered(), (Highlights{{4, 1, 0}})) << tag;
  }
}

} // namespace
