// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Text as searches compare it: folding, white space, UTF-8.
#include "host/document/fold.h"

#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>

namespace host {
namespace {

struct Folding {
  const char *name;
  std::u32string_view text, folded;
};

void PrintTo(const Folding &folding, std::ostream *out) { *out << folding.name; }

constexpr auto nameOf = [](const testing::TestParamInfo<Folding> &instance) { return instance.param.name; };

class Folded : public testing::TestWithParam<Folding> {};

TEST_P(Folded, IsComparedAs) { EXPECT_EQ(folded(GetParam().text), GetParam().folded); }

INSTANTIATE_TEST_SUITE_P(
    Text, Folded,
    testing::Values(Folding{"Ascii", U"TeX-2e", U"tex-2e"},
                    Folding{"Accents", U"Éclair naïve Ångström", U"eclair naive angstrom"},
                    Folding{"CombiningAccent", U"e\u0301", U"e"}, Folding{"LoneAccent", U"\u00B4e", U"e"},
                    Folding{"SharpS", U"Straße", U"strasse"},
                    Folding{"Ligatures", U"\uFB01le o\uFB03ce", U"file office"}, Folding{"Greek", U"ΛΌΓΟΣ", U"λογοσ"},
                    Folding{"FinalSigma", U"λόγος", U"λογοσ"}, Folding{"DottedI", U"İstanbul", U"istanbul"},
                    Folding{"FullWidth", U"ＡＢ１", U"ab1"}, Folding{"SoftHyphen", U"high\u00ADlight", U"highlight"},
                    Folding{"Apostrophe", U"don’t", U"don't"}, Folding{"Hyphen", U"read\u2010only", U"read-only"},
                    Folding{"WideSpace", U"a\u2003b", U"a b"},
                    Folding{"BeyondTheBasicPlane", U"\U0001D400\U0001F600", U"a\U0001F600"},
                    Folding{"NoCodePoint", U"a\xD800", U"a\xD800"}),
    nameOf);

class CaseKept : public testing::TestWithParam<Folding> {};

TEST_P(CaseKept, IsComparedAs) { EXPECT_EQ(folded(GetParam().text, Case::kept), GetParam().folded); }

INSTANTIATE_TEST_SUITE_P(Text, CaseKept,
                         testing::Values(Folding{"Ascii", U"TeX-2e", U"TeX-2e"},
                                         Folding{"Accents", U"Éclair naïve Ångström", U"Eclair naive Angstrom"},
                                         Folding{"Ligature", U"\uFB01le", U"file"},
                                         Folding{"FullWidth", U"ＡＢ１", U"AB1"},
                                         Folding{"SoftHyphen", U"High\u00ADLight", U"HighLight"},
                                         Folding{"Apostrophe", U"Don’t", U"Don't"}),
                         nameOf);

TEST(Folding, ChangesOfAsciiOnlyTheCapitals) {
  for (char32_t c = 1; c < 0x80; ++c) {
    const bool capital = c >= U'A' && c <= U'Z';
    EXPECT_EQ(folded(std::u32string(1, c)), std::u32string(1, capital ? c + 32 : c)) << static_cast<uint32_t>(c);
    EXPECT_EQ(folded(std::u32string(1, c), Case::kept), std::u32string(1, c)) << static_cast<uint32_t>(c);
  }
}

TEST(Folding, TypesEveryHyphenAndQuotationMark) {
  EXPECT_EQ(folded(U"\u2010\u2011\u2212"), U"---");
  EXPECT_EQ(folded(U"\u2018\u2019\u02BC"), U"'''");
  EXPECT_EQ(folded(U"\u201C\u201D"), U"\"\"");
}

TEST(Folding, KeepsSpacesThatAreNoAccents) {
  EXPECT_EQ(folded(U"\u00A0\u2003\u3000"), U"   ");
  EXPECT_EQ(folded(U"\u00A8"), U"") << "an accent alone decomposes to a space and the accent";
}

TEST(Folding, KeepsWhatIsBeyondTheLastCodePoint) { EXPECT_EQ(folded(U"a\x110000"), U"a\x110000"); }

TEST(Folding, KeepsControlCharactersAfterAscii) {
  for (char32_t c = 0x80; c < 0xA0; ++c)
    EXPECT_EQ(folded(std::u32string(1, c)), std::u32string(1, c)) << static_cast<uint32_t>(c);
}

TEST(AppendFolded, AppendsToTheText) {
  std::u32string text = U"o";
  appendFolded(U'\uFB03', Case::folded, text);
  EXPECT_EQ(text, U"offi");
}

TEST(IsWhiteSpace, SpacesAndControlCharactersOnly) {
  for (const char32_t c : {U' ', U'\t', U'\n', U'\u00A0', U'\u2003', U'\u3000'})
    EXPECT_TRUE(isWhiteSpace(c)) << static_cast<uint32_t>(c);
  for (const char32_t c : {U'a', U'-', U'\u00AD', U'\u00B4', U'\u0301'})
    EXPECT_FALSE(isWhiteSpace(c)) << static_cast<uint32_t>(c);
}

TEST(Decoded, OneToFourBytes) { EXPECT_EQ(decoded("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), U"aä€\U0001F600"); }

TEST(Decoded, BadUtf8IsRefusedWithOneLine) {
  for (const char *text : {"a\xFFz", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\x80"})
    try {
      decoded(text);
      ADD_FAILURE() << text;
    } catch (const std::invalid_argument &error) {
      EXPECT_STREQ(error.what(), "a text to search for is not UTF-8");
    }
}

} // namespace
} // namespace host
