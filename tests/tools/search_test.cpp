// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Finding phrases: whole words, folded, across line ends; and the range of a hit.
#include "tools/search.h"

#include <gmock/gmock.h>

#include "document/pdf.h"
#include "support/pdf.h"

namespace tools {

bool operator==(const Hit &a, const Hit &b) {
  return a.offset == b.offset && a.length == b.length && a.word == b.word && a.words == b.words;
}
void PrintTo(const Hit &hit, std::ostream *out) {
  *out << "{" << hit.offset << ", " << hit.length << ", " << hit.word << ", " << hit.words << "}";
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<Hit> find(const std::vector<std::string> &phrase, const std::vector<std::u32string> &words) {
  return Phrase(phrase).find(words);
}

// ---- words ----

TEST(Search, FindsAWordWithItsPosition) { EXPECT_THAT(find({"two"}, {U"one", U"two"}), ElementsAre(Hit{4, 3, 1, 1})); }

TEST(Search, FindsWholeWordsOnly) { EXPECT_THAT(find({"high"}, {U"highlight", U"thigh"}), IsEmpty()); }

TEST(Search, CaseAndAccentsDoNotCount) {
  EXPECT_THAT(find({"RESUME"}, {U"résumé", U"Resume"}), ElementsAre(Hit{0, 6, 0, 1}, Hit{7, 6, 1, 1}));
  EXPECT_THAT(find({"résumé"}, {U"RESUME"}), ElementsAre(Hit{0, 6, 0, 1}));
}

TEST(Search, PunctuationAroundAWordIsNotPartOfTheHit) {
  EXPECT_THAT(find({"word"}, {U"(“word”),"}), ElementsAre(Hit{2, 4, 0, 1}));
}

TEST(Search, PunctuationAroundASearchedWordDoesNotCount) {
  EXPECT_THAT(find({"\"word!\""}, {U"word"}), ElementsAre(Hit{0, 4, 0, 1}));
}

TEST(Search, PunctuationInsideAWordCounts) {
  EXPECT_THAT(find({"dont"}, {U"don’t"}), IsEmpty());
  EXPECT_THAT(find({"don't"}, {U"don’t"}), ElementsAre(Hit{0, 5, 0, 1}));
}

TEST(Search, SymbolsCountOnlyIfTheyAreSearched) {
  EXPECT_THAT(find({"home"}, {U"$HOME"}), ElementsAre(Hit{1, 4, 0, 1}));
  EXPECT_THAT(find({"$home"}, {U"$HOME", U"home"}), ElementsAre(Hit{0, 5, 0, 1}));
  EXPECT_THAT(find({"C++"}, {U"C", U"(C++)"}), ElementsAre(Hit{3, 3, 1, 1}));
}

TEST(Search, LigatureIsCountedAsOneCharacter) {
  EXPECT_THAT(find({"file"}, {U"a", U"\uFB01le"}), ElementsAre(Hit{2, 3, 1, 1}));
}

TEST(Search, DecomposedAccentIsPartOfTheHit) {
  EXPECT_THAT(find({"cafe"}, {U"cafe\u0301."}), ElementsAre(Hit{0, 5, 0, 1}));
}

// ---- phrases ----

TEST(Search, PhraseIsConsecutiveWords) {
  EXPECT_THAT(find({"open", "source"}, {U"open", U"the", U"source", U"(open", U"source)"}),
              ElementsAre(Hit{17, 11, 3, 2}));
}

TEST(Search, ArgumentWithSpacesIsSeveralWords) {
  EXPECT_THAT(find({" open  source ", "code"}, {U"Open", U"source", U"code."}), ElementsAre(Hit{0, 16, 0, 3}));
}

TEST(Search, HyphenatedWordIsTwoWords) {
  EXPECT_THAT(find({"highlight"}, {U"high-", U"light"}), IsEmpty());
  EXPECT_THAT(find({"high light"}, {U"high-", U"light"}), ElementsAre(Hit{0, 11, 0, 2}));
}

TEST(Search, HitsDoNotOverlap) {
  EXPECT_THAT(find({"la la"}, {U"la", U"la", U"la", U"la", U"la"}), ElementsAre(Hit{0, 5, 0, 2}, Hit{6, 5, 2, 2}));
}

TEST(Search, BeginningOfAPhraseAtThePagesEndIsNoHit) { EXPECT_THAT(find({"open source"}, {U"open"}), IsEmpty()); }

TEST(Search, PhraseMayStartInsideAPartialMatch) {
  EXPECT_THAT(find({"a a b"}, {U"a", U"a", U"a", U"b"}), ElementsAre(Hit{2, 5, 1, 3}));
}

TEST(Search, LoneDashInsideAPhraseMatchesOne) {
  EXPECT_THAT(find({"a - b"}, {U"a", U"—", U"b", U"a", U"b"}), ElementsAre(Hit{0, 5, 0, 3}));
}

TEST(Search, LoneDashAtAPhrasesEndDoesNotCount) { EXPECT_THAT(find({"- a -"}, {U"a"}), ElementsAre(Hit{0, 1, 0, 1})); }

TEST(Search, BoxWithSpacesIsSearchedWordByWord) {
  EXPECT_THAT(find({"big", "house"}, {U"the big", U"house"}), ElementsAre(Hit{4, 9, 0, 2}));
}

TEST(Search, EmptyPageHasNoHits) { EXPECT_THAT(find({"a"}, {}), IsEmpty()); }

TEST(Search, NothingButPunctuationIsRefused) {
  EXPECT_THROW(Phrase(std::vector<std::string>{"...", " "}), std::invalid_argument);
  EXPECT_THROW(Phrase(std::vector<std::string>{}), std::invalid_argument);
}

TEST(Search, BadUtf8IsRefused) { EXPECT_THROW(Phrase(std::vector<std::string>{"a\xFFz"}), std::invalid_argument); }

// ---- in a document ----

TEST(SearchInDocument, PhraseMayCrossALineEnd) {
  const test::ScratchFolder folder;
  const auto document = document::PdfFile::open(folder.pdf({{.texts = {{.x = 50, .y = 500, .text = "This is open"},
                                                                       {.x = 50, .y = 488, .text = "source, free."}}}}),
                                                "");
  EXPECT_THAT(Phrase(std::vector<std::string>{"open source"}).find(document->plainWords(0)),
              ElementsAre(Hit{8, 11, 2, 2}));
}

} // namespace
} // namespace tools
