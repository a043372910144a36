// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The built-in strings: their table, their lookup, copies that fit.
#include <gtest/gtest.h>

#include <memory>

#include "plugin/md/mdUtils.h"
#include "tests/plugin/md/setting.h"
#include "tests/support/Rows.h"

namespace {

using Calls = std::vector<std::string>;

struct BuiltIn {
  const char *key, *value;
};

// The help keys are exchanged, and a key is misprinted: users' overrides use these keys.
const BuiltIn builtIn[] = {
    {"realVersion", "B10"},
    {"language", "ENU"},
    {"version", "Tavrel Glint Plug-In Version 5.0.5"},
    {"helpPrev", "Jumps to the next highlight"},
    {"helpNext", "Jumps to the previous highlight"},
    {"yes", "Yes"},
    {"no", "No"},
    {"wrongVersion", "The highlights for this document may be incorrect because of incompatible version of Tavrel. "
                     "Display highlights anyway?"},
    {"The Tavrel Glint plu g-in allows users to see search highlights from web searches in PDF files in their web "
     "browser.",
     "The Tavrel Glint plug-in allows users to see search highlights from web searches in PDF files in their web "
     "browser."},
    {"", ""},
    {"", ""},
    {"", ""},
    {"Plug-ins required for loading: BRZ", "Plug-ins required for loading: BRZ"},
    {"", ""},
    {"", ""},
    {"fullName", "Glint"},
    {"", ""},
    {"", ""},
    {"", ""},
    {"", ""},
    {"All Files", "All Files"},
};

TEST(StringTable, HasTheseEntries) {
  ASSERT_EQ(std::size(stringData), std::size(builtIn));
  for (size_t id = 0; id < stringCount; ++id) {
    EXPECT_STREQ(stringData[id].key, builtIn[id].key) << id;
    EXPECT_STREQ(stringData[id].value, builtIn[id].value) << id;
  }
}

TEST(StringTable, HelpKeysAreExchanged) {
  EXPECT_STREQ(stringData[stringHelpNext].key, "helpPrev");
  EXPECT_STREQ(stringData[stringHelpNext].value, "Jumps to the next highlight");
  EXPECT_STREQ(stringData[stringHelpPrev].key, "helpNext");
  EXPECT_STREQ(stringData[stringHelpPrev].value, "Jumps to the previous highlight");
}

TEST(StringTable, MisprintIsInTheKeyOnly) {
  EXPECT_NE(std::string(stringData[8].key).find("plu g-in"), std::string::npos);
  EXPECT_NE(std::string(stringData[8].value).find("plug-in"), std::string::npos);
}

TEST(Strings, BuiltInWithoutAShell) {
  RecordingHost host;
  for (uint16_t id = 0; id < stringCount; ++id)
    EXPECT_STREQ(mdGetStringPtr(id), builtIn[id].value) << id;
  EXPECT_EQ(host.trace, Calls{});
}

TEST(Strings, LookedUpByKeyWithAShell) {
  for (uint16_t id = 0; id < stringCount; ++id) {
    RecordingHost host;
    pretendShell(host);
    EXPECT_STREQ(mdGetStringPtr(id), builtIn[id].value);
    EXPECT_EQ(host.trace, (Calls{std::string("Desktop.GetResourceString(shell, \"") + builtIn[id].key + "\", \"" +
                                 builtIn[id].value + "\")"}));
  }
}

TEST(Strings, UserOverrides) {
  RecordingHost host;
  pretendShell(host);
  host.resources = {{"fullName", "Glimmer"}};
  EXPECT_STREQ(mdGetStringPtr(15), "Glimmer");
}

TEST(Strings, LookedUpOnce) {
  RecordingHost host;
  pretendShell(host);
  const char *first = mdGetStringPtr(5);
  EXPECT_EQ(mdGetStringPtr(5), first);
  EXPECT_EQ(host.count("GetResourceString"), 1U);
  EXPECT_EQ(stringCache[5], first);
}

TEST(Strings, ReadBeforeTheShellStayBuiltIn) {
  RecordingHost host;
  host.resources = {{"fullName", "Glimmer"}};
  mdGetStringPtr(15);
  pretendShell(host);
  EXPECT_STREQ(mdGetStringPtr(15), "Glint");
  EXPECT_EQ(host.count("GetResourceString"), 0U);
}

TEST(Strings, NullFromTheHostIsAskedAgain) {
  RecordingHost host;
  pretendShell(host);
  host.failAt(0);
  EXPECT_EQ(mdGetStringPtr(15), nullptr);
  EXPECT_STREQ(mdGetStringPtr(15), "Glint");
  EXPECT_EQ(host.count("GetResourceString"), 2U);
}

TEST(Strings, UnknownIdentifiersAreNotLookedUp) {
  RecordingHost host;
  pretendShell(host);
  for (const uint16_t id : {21, 22, 0x8000, 0xFFFF})
    EXPECT_STREQ(mdGetStringPtr(id), "Bad String ID") << id;
  EXPECT_EQ(host.trace, Calls{});
}

// Copies. The buffer has exactly the size that is passed.

struct CopyRow : Row {
  const char *locale;
  std::string text;
  uint16_t size;
  std::string copy;
};

class StringCopy : public testing::TestWithParam<CopyRow> {};

TEST_P(StringCopy, Gives) {
  const ScopedLocale locale(GetParam().locale);
  ASSERT_TRUE(locale.set());
  RecordingHost host;
  pretendShell(host);
  host.resources = {{"fullName", GetParam().text}};
  const std::unique_ptr<char[]> buffer(new char[GetParam().size]);
  EXPECT_EQ(mdGetString(15, buffer.get(), GetParam().size), buffer.get());
  EXPECT_EQ(std::string(buffer.get()), GetParam().copy);
}

const CopyRow singleByteCopies[] = {
    {{"FitsExactly"}, singleByte, "Glint", 6, "Glint"},
    {{"OneByteTooShort"}, singleByte, "Glint", 5, "Glin"},
    {{"MoreSpaceThanNeeded"}, singleByte, "Glint", 100, "Glint"},
    {{"OnlyTheNul"}, singleByte, "Glint", 1, ""},
    {{"Empty"}, singleByte, "", 1, ""},
    {{"LargestSize"}, singleByte, "Glint", 0xFFFF, "Glint"},
    {{"BytesAreTruncatedAnywhere"}, singleByte, "ab\xC3\xA9", 4, "ab\xC3"},
};
INSTANTIATE_TEST_SUITE_P(SingleByte, StringCopy, testing::ValuesIn(singleByteCopies), rowName<CopyRow>);

const CopyRow multiByteCopies[] = {
    {{"FitsExactly"}, multiByte, "ab\xC3\xA9", 5, "ab\xC3\xA9"},
    {{"CharacterThatWouldEndAtTheLastByteIsLeftOut"}, multiByte, "ab\xC3\xA9", 4, "ab"},
    {{"CharacterIsNotTruncated"},
     multiByte,
     "ab\xC3\xA9"
     "c",
     4,
     "ab"},
    {{"CharacterJustFits"},
     multiByte,
     "ab\xC3\xA9"
     "cd",
     5,
     "ab\xC3\xA9"},
    {{"OneByteCharacters"}, multiByte, "Glint", 5, "Glin"},
    {{"OnlyTheNul"}, multiByte, "Glint", 1, ""},
    {{"ThreeByteCharacter"}, multiByte, "\xE2\x82\xAC\xE2\x82\xAC", 6, "\xE2\x82\xAC"},
    {{"FourByteCharacter"}, multiByte, "\xF0\x9F\x94\x8D\xF0\x9F\x94\x8D", 8, "\xF0\x9F\x94\x8D"},
    {{"NothingFits"}, multiByte, "\xE2\x82\xAC\xE2\x82\xAC", 3, ""},
    {{"StopsAtAnInvalidSequence"},
     multiByte,
     "ab\xFF"
     "cdef",
     6,
     "ab"},
    {{"InvalidSequenceIsCopiedWhereAllOfItFits"},
     multiByte,
     "ab\xFF"
     "cd",
     6,
     "ab\xFF"
     "cd"},
    {{"StopsAtAnIncompleteCharacter"}, multiByte, "abcd\xC3", 5, "abcd"},
};
INSTANTIATE_TEST_SUITE_P(MultiByte, StringCopy, testing::ValuesIn(multiByteCopies), rowName<CopyRow>);

TEST(StringCopies, AboutTextTruncated) {
  RecordingHost host;
  char buffer[11] = "xxxxxxxxxx";
  EXPECT_STREQ(mdGetString(2, buffer, 10), "Tavrel Gl");
}

TEST(StringCopies, UnknownIdentifierIsCopiedToo) {
  RecordingHost host;
  char buffer[130];
  EXPECT_STREQ(mdGetString(21, buffer, 130), "Bad String ID");
  EXPECT_STREQ(mdGetString(21, buffer, 4), "Bad");
}

TEST(StringCopies, SizeZeroCopiesAllOfIt) {
  for (const char *name : {singleByte, multiByte}) {
    const ScopedLocale locale(name);
    RecordingHost host;
    char buffer[10] = "xxxxxxxxx";
    EXPECT_EQ(mdGetString(15, buffer, 0), buffer);
    EXPECT_STREQ(buffer, "Glint");
  }
}

TEST(StringCopies, NothingAfterTheNulIsWritten) {
  RecordingHost host;
  char buffer[8] = "xxxxxxx";
  mdGetString(15, buffer, 7);
  EXPECT_EQ(std::string(buffer, 8), std::string("Glint\0x\0", 8));
}

TEST(StringCopyOfNothing, IsEmptyAndAskedForAgain) {
  RecordingHost host;
  pretendShell(host);
  host.answer(Desktop::GetResourceString,
              std::function([](tavrel::Widget, const char *, const char *) -> const char * { return nullptr; }));
  char buffer[8] = "x";
  for (int i = 0; i < 2; ++i)
    EXPECT_STREQ(mdGetString(stringYes, buffer, sizeof buffer), "");
  EXPECT_EQ(host.count("GetResourceString"), 2U);
}

} // namespace
