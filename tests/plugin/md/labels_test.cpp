// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The labels of alert buttons, and strings without their menu mnemonics.
#include <gtest/gtest.h>

#include <memory>

#include "plugin/md/mdUtils.h"
#include "tests/plugin/md/setting.h"
#include "tests/support/Rows.h"

namespace {

using Calls = std::vector<std::string>;

struct LabelRow : Row {
  uint16_t id;
  const char *key, *label;
};

class ButtonLabel : public testing::TestWithParam<LabelRow> {};

TEST_P(ButtonLabel, BuiltInWithoutAShell) {
  RecordingHost host;
  EXPECT_STREQ(GetButtonString(GetParam().id), GetParam().label);
  EXPECT_STREQ(buttonStringData[GetParam().id].key, GetParam().key);
  EXPECT_STREQ(buttonStringData[GetParam().id].value, GetParam().label);
  EXPECT_EQ(host.trace, Calls{});
}

TEST_P(ButtonLabel, LookedUpOnceWithAShell) {
  RecordingHost host;
  pretendShell(host);
  EXPECT_STREQ(GetButtonString(GetParam().id), GetParam().label);
  EXPECT_STREQ(GetButtonString(GetParam().id), GetParam().label);
  EXPECT_EQ(host.trace, (Calls{std::string("Desktop.GetResourceString(shell, \"") + GetParam().key + "\", \"" +
                               GetParam().label + "\")"}));
}

TEST_P(ButtonLabel, UserOverrides) {
  RecordingHost host;
  pretendShell(host);
  host.resources = {{GetParam().key, "other"}};
  EXPECT_STREQ(GetButtonString(GetParam().id), "other");
}

const LabelRow labels[] = {
    {{"OK"}, 0, "tvOKButton", "OK"},
    {{"Cancel"}, 1, "tvCancelButton", "Cancel"},
    {{"Yes"}, 2, "tvYesButton", "Yes"},
    {{"No"}, 3, "tvNoButton", "No"},
};
INSTANTIATE_TEST_SUITE_P(Labels, ButtonLabel, testing::ValuesIn(labels), rowName<LabelRow>);

TEST(ButtonLabels, ReadBeforeTheShellStayBuiltIn) {
  RecordingHost host;
  GetButtonString(0);
  pretendShell(host);
  host.resources = {{"tvOKButton", "other"}};
  EXPECT_STREQ(GetButtonString(0), "OK");
}

TEST(ButtonLabels, NullFromTheHostIsAskedAgain) {
  RecordingHost host;
  pretendShell(host);
  host.failAt(0);
  EXPECT_EQ(GetButtonString(2), nullptr);
  EXPECT_STREQ(GetButtonString(2), "Yes");
}

// Mnemonics. An ampersand after the first byte is treated differently in single-byte and multi-byte locales.

struct MnemonicRow : Row {
  const char *locale, *text, *expected;
};

class Mnemonic : public testing::TestWithParam<MnemonicRow> {};

TEST_P(Mnemonic, LeavesOf) {
  const ScopedLocale locale(GetParam().locale);
  ASSERT_TRUE(locale.set());
  RecordingHost host;
  pretendShell(host);
  host.resources = {{"fullName", GetParam().text}};
  char buffer[32] = {};
  EXPECT_EQ(mdGetButtonString(15, buffer, sizeof buffer), buffer);
  EXPECT_STREQ(buffer, GetParam().expected);
}

const MnemonicRow singleByteLabels[] = {
    {{"Plain"}, singleByte, "OK", "OK"},
    {{"Empty"}, singleByte, "", ""},
    {{"LeadingIsRemoved"}, singleByte, "&File", "File"},
    {{"Alone"}, singleByte, "&", ""},
    {{"DoubledBecomesOne"}, singleByte, "a&&b", "a&b"},
    {{"SingleAfterTheFirstByteRemovesTheLast"}, singleByte, "a&b", "a&"},
    {{"SingleRemovesTheCharacterAfterIt"}, singleByte, "a&bc", "a&c"},
    {{"SingleBeforeTheLast"}, singleByte, "ab&c", "ab&"},
    {{"LeadingAndLaterMixTheRest"}, singleByte, "&ab&cdefgh", "abc&f&"},
    {{"OneCharacter"}, singleByte, "x", "x"},
};
INSTANTIATE_TEST_SUITE_P(SingleByte, Mnemonic, testing::ValuesIn(singleByteLabels), rowName<MnemonicRow>);

const MnemonicRow multiByteLabels[] = {
    {{"Plain"}, multiByte, "OK", "OK"},
    {{"Empty"}, multiByte, "", ""},
    {{"LeadingIsRemoved"}, multiByte, "&File", "File"},
    {{"Alone"}, multiByte, "&", ""},
    {{"InTheMiddleIsRemoved"}, multiByte, "a&b", "ab"},
    {{"AtTheEndIsRemoved"}, multiByte, "a&", "a"},
    {{"DoubledStaysDoubled"}, multiByte, "a&&b", "a&&b"},
    {{"DoubledAlone"}, multiByte, "&&", "&&"},
    {{"Tripled"}, multiByte, "&&&x", "&&x"},
    {{"Quadrupled"}, multiByte, "&&&&", "&&&&"},
    {{"Several"}, multiByte, "&a&b&c", "abc"},
    {{"BeforeAMultiByteCharacter"}, multiByte, "&\xC3\xA9&\xC3\xBC", "\xC3\xA9\xC3\xBC"},
    {{"AfterAMultiByteCharacter"}, multiByte, "\xE2\x82\xAC&&\xE2\x82\xAC&", "\xE2\x82\xAC&&\xE2\x82\xAC"},
    {{"EndsAtAnInvalidSequence"}, multiByte, "&a\xFF&b", "a"},
};
INSTANTIATE_TEST_SUITE_P(MultiByte, Mnemonic, testing::ValuesIn(multiByteLabels), rowName<MnemonicRow>);

TEST(Mnemonics, TextIsTruncatedFirst) {
  RecordingHost host;
  pretendShell(host);
  host.resources = {{"fullName", "&Filename"}};
  char buffer[6];
  EXPECT_STREQ(mdGetButtonString(15, buffer, sizeof buffer), "File");
}

TEST(Mnemonics, SizeZeroIsAsLargeAsTheText) {
  RecordingHost host;
  pretendShell(host);
  host.resources = {{"fullName", "&File"}};
  char buffer[6];
  EXPECT_STREQ(mdGetButtonString(15, buffer, 0), "File");
}

TEST(Mnemonics, UnknownIdentifier) {
  RecordingHost host;
  char buffer[32];
  EXPECT_STREQ(mdGetButtonString(99, buffer, sizeof buffer), "Bad String ID");
}

// In a single-byte locale some texts with several ampersands are written beyond their end, but not beyond the buffer.
TEST(Mnemonics, StayWithinTheBuffer) {
  for (const char *text : {"&&File", "&a&b", "a&", "ab&", "&&", "a&b&c&d", "&&&&&&"}) {
    RecordingHost host;
    pretendShell(host);
    host.resources = {{"fullName", text}};
    const size_t size = strlen(text) + 1;
    const std::unique_ptr<char[]> buffer(new char[size]);
    mdGetButtonString(15, buffer.get(), static_cast<uint16_t>(size));
    EXPECT_NE(memchr(buffer.get(), 0, size), nullptr) << text;
  }
}

} // namespace
