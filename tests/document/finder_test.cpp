// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Finding a text on a page: any part of it, folded, across line ends and in hyphenated words; and what a hit marks.
#include "document/finder.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "document/here.h"
#include "host/document/fold.h"
#include "support/pdf.h"

namespace document {
namespace {

using host::Box;
using host::decoded;
using host::FindOptions;
using host::Found;
using host::PageText;
using host::WordText;

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

constexpr FindOptions matchCase{.matchCase = true}, wholeWords{.wholeWords = true};

// Characters are ten wide and ten high, with a character's width between words.
WordText word(const std::string &utf8, uint32_t offset, double left, double bottom) {
  WordText result{.text = decoded(utf8), .offset = offset};
  double at = left;
  for (size_t i = 0; i < result.text.size(); ++i, at += 10)
    result.characters.push_back({at, bottom + 10, at + 10, bottom});
  result.bounds = {left, bottom + 10, at, bottom};
  return result;
}

// Lines of words, the first line at 500, the others 20 below each other.
PageText pageOf(const std::vector<std::vector<std::string>> &lines) {
  PageText page;
  uint32_t offset = 0;
  double bottom = 500;
  for (const std::vector<std::string> &line : lines) {
    double left = 0;
    for (const std::string &text : line) {
      page.words.push_back(word(text, offset, left, bottom));
      offset += static_cast<uint32_t>(page.words.back().text.size()) + 1;
      left = page.words.back().bounds.right + 10;
    }
    bottom -= 20;
  }
  return page;
}

bool isWithin(const Box &inner, const Box &outer) {
  return inner.left >= outer.left && inner.right <= outer.right && inner.bottom >= outer.bottom &&
         inner.top <= outer.top;
}

// The numbers of the page's characters that a hit marks; nothing but whole characters lies in its boxes.
std::vector<uint32_t> marked(const PageText &page, const Found &found) {
  std::vector<uint32_t> result;
  for (const Box &box : found.boxes)
    for (const WordText &each : page.words)
      for (uint32_t i = 0; i < each.characters.size(); ++i)
        if (isWithin(each.characters[i], box)) result.push_back(each.offset + i);
  return result;
}

// What a hit on a page of ASCII marks, its boxes separated by bars.
std::string read(const PageText &page, const Found &found) {
  const std::u32string text = page.text();
  std::string result;
  for (const Box &box : found.boxes) {
    if (!result.empty()) result += '|';
    for (const uint32_t offset : marked(page, Found{{box}}))
      result += static_cast<char>(text.at(offset));
  }
  return result;
}

std::vector<std::string> find(const std::string &text, const PageText &page, FindOptions options = {}) {
  std::vector<std::string> result;
  for (const Found &found : Finder(text, options).find(page))
    result.push_back(read(page, found));
  return result;
}

std::vector<std::vector<uint32_t>> occurrences(const std::string &text, const PageText &page,
                                               FindOptions options = {}) {
  std::vector<std::vector<uint32_t>> result;
  for (const Found &found : Finder(text, options).find(page))
    result.push_back(marked(page, found));
  return result;
}

// ---- parts of a page's text ----

TEST(Find, FindsAPartOfAWord) { EXPECT_THAT(find("light", pageOf({{"the", "highlights"}})), ElementsAre("light")); }

TEST(Find, MarksTheCharactersThatItFinds) {
  EXPECT_THAT(occurrences("light", pageOf({{"the", "highlights"}})), ElementsAre(ElementsAre(8, 9, 10, 11, 12)));
}

TEST(Find, FindsAllOccurrencesInReadingOrder) {
  EXPECT_THAT(occurrences("at", pageOf({{"cat", "dog"}, {"at", "bat"}})),
              ElementsAre(ElementsAre(1, 2), ElementsAre(8, 9), ElementsAre(12, 13)));
}

TEST(Find, OccurrencesDoNotOverlap) {
  EXPECT_THAT(occurrences("aa", pageOf({{"aaaaa"}})), ElementsAre(ElementsAre(0, 1), ElementsAre(2, 3)));
}

TEST(Find, OccurrenceMayStartInsideAFailedMatch) {
  EXPECT_THAT(occurrences("aab", pageOf({{"aaab"}})), ElementsAre(ElementsAre(1, 2, 3)));
}

TEST(Find, HasABoxForEachWordThatItTouches) {
  EXPECT_THAT(find("n source c", pageOf({{"open", "source", "code"}})), ElementsAre("n|source|c"));
}

TEST(Find, LineEndIsASpace) {
  EXPECT_THAT(find("open source", pageOf({{"is", "open"}, {"source"}})), ElementsAre("open|source"));
  EXPECT_THAT(find("opensource", pageOf({{"is", "open"}, {"source"}})), IsEmpty());
}

TEST(Find, RunOfSpacesIsOneAndSpacesAtTheEndsAreIgnored) {
  EXPECT_THAT(find(" \topen \n\u00A0 source ", pageOf({{"open", "source."}})), ElementsAre("open|source"));
}

TEST(Find, SpaceIsNotOptional) { EXPECT_THAT(find("o pen", pageOf({{"open"}})), IsEmpty()); }

TEST(Find, SpaceInsideAWordOfThePageIsLikeOthers) {
  EXPECT_THAT(occurrences("big house", pageOf({{"the\u00A0big", "house"}})), ElementsAre(SizeIs(8)));
  EXPECT_THAT(occurrences("the big", pageOf({{"the\u00A0 big"}})), ElementsAre(ElementsAre(0, 1, 2, 3, 4, 5, 6, 7)));
}

TEST(Find, BeginningAtThePagesEndIsNoHit) { EXPECT_THAT(find("source code", pageOf({{"source"}})), IsEmpty()); }

TEST(Find, PunctuationCounts) {
  EXPECT_THAT(find("end.", pageOf({{"end,", "end."}})), ElementsAre("end."));
  EXPECT_THAT(find("...", pageOf({{"wait", "..."}})), ElementsAre("..."));
}

TEST(Find, EmptyPageHasNoHits) { EXPECT_THAT(find("a", PageText{}), IsEmpty()); }

// ---- what there is to find ----

TEST(Find, NothingButSpacesFindsNothing) {
  for (const char *text : {"", " ", " \t\n", "\u00A0", "\u00AD"}) {
    const Finder finder(text, {});
    EXPECT_TRUE(finder.empty());
    EXPECT_THAT(finder.find(pageOf({{"a", "b"}})), IsEmpty());
  }
  EXPECT_FALSE(Finder(" . ", {}).empty());
}

TEST(Find, BadUtf8IsRefused) { EXPECT_THROW(Finder("a\xFFz", {}), std::invalid_argument); }

// ---- folding ----

TEST(Find, CaseCountsOnlyWhereItIsToMatch) {
  const PageText page = pageOf({{"Open", "open", "OPEN"}});
  EXPECT_THAT(find("oPen", page), ElementsAre("Open", "open", "OPEN"));
  EXPECT_THAT(find("Open", page, matchCase), ElementsAre("Open"));
}

TEST(Find, AccentsDoNotCount) {
  const PageText page = pageOf({{"résumé", "Resume"}});
  for (const char *text : {"resume", "RÉSUMÉ", "re\u0301sume"})
    EXPECT_THAT(find(text, page), SizeIs(2));
  EXPECT_THAT(occurrences("resumé", page, matchCase), ElementsAre(ElementsAre(0, 1, 2, 3, 4, 5)));
}

TEST(Find, DecomposedAccentIsPartOfTheHit) {
  EXPECT_THAT(occurrences("cafe", pageOf({{"cafe\u0301s"}})), ElementsAre(ElementsAre(0, 1, 2, 3, 4)));
}

TEST(Find, TypographicFormsAreFoundAsTyped) {
  EXPECT_THAT(occurrences("\"don't\"", pageOf({{"“don’t”"}})), ElementsAre(SizeIs(7)));
}

TEST(Find, HitInsideALigatureMarksAllOfIt) {
  const PageText page = pageOf({{"o\uFB03ce"}}); // o, ffi, c, e
  EXPECT_THAT(occurrences("of", page), ElementsAre(ElementsAre(0, 1)));
  EXPECT_THAT(occurrences("ic", page), ElementsAre(ElementsAre(1, 2)));
  EXPECT_THAT(occurrences("office", page), ElementsAre(ElementsAre(0, 1, 2, 3)));
}

TEST(Find, LigatureIsMarkedOnce) {
  EXPECT_THAT(occurrences("f", pageOf({{"o\uFB00", "f"}})), ElementsAre(ElementsAre(1), ElementsAre(3)));
}

TEST(Find, SyllableOfHangulIsNotTakenApart) {
  EXPECT_THAT(occurrences("가", pageOf({{"각가", "강"}})), ElementsAre(ElementsAre(1)));
}

TEST(Find, VowelsAndFinalConsonantsOfHangulBelongToTheSyllableBefore) {
  const std::pair<std::string, bool> following[] = {
      {"\u115E", false}, {"\u115F", false}, {"\u1160", false}, {"\uFFA0", false}, // the last three are invisible
      {"\u1161", true},  {"\u11FF", true},  {"\u1200", false},
  };
  for (const auto &[after, continues] : following)
    EXPECT_EQ(find("a", pageOf({{"a" + after}})).empty(), continues) << after;
}

// ---- hyphens at the ends of lines ----

struct Hyphenation {
  const char *name;
  const char *text;
  std::vector<std::string> found;
};

void PrintTo(const Hyphenation &hyphenation, std::ostream *out) { *out << hyphenation.name; }

class FindHyphenated : public testing::TestWithParam<Hyphenation> {};

TEST_P(FindHyphenated, WordIsFound) {
  const PageText page = pageOf({{"a", "para-"}, {"meter", "b"}});
  EXPECT_EQ(find(GetParam().text, page), GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(By, FindHyphenated,
                         testing::Values(Hyphenation{"TheCompleteWord", "parameter", {"para-|meter"}},
                                         Hyphenation{"ThePositionWhereItIsDivided", "ram", {"ra-|m"}},
                                         Hyphenation{"TheWordWithItsHyphen", "para-meter", {"para-|meter"}},
                                         Hyphenation{"TheWordWithHyphenAndSpace", "para- meter", {"para-|meter"}},
                                         Hyphenation{"ItsFirstPart", "para", {"para"}},
                                         Hyphenation{"ItsFirstPartWithTheHyphen", "para-", {"para-"}},
                                         Hyphenation{"ItsSecondPart", "meter", {"meter"}},
                                         Hyphenation{"ItsSecondPartWithTheHyphen", "-meter", {"-|meter"}},
                                         Hyphenation{"TheWordsAround", "a parameter b", {"a|para-|meter|b"}},
                                         Hyphenation{"NoSpaceAlone", "para meter", {}},
                                         Hyphenation{"NoOtherHyphen", "para--meter", {}}),
                         [](const testing::TestParamInfo<Hyphenation> &instance) { return instance.param.name; });

TEST(FindHyphenated, AnyHyphenDividesAWord) {
  for (const char *part : {"para-", "para\u2010", "para\u00AD"})
    for (const char *text : {"parameter", "para-meter"})
      EXPECT_THAT(occurrences(text, pageOf({{part}, {"meter"}})), ElementsAre(SizeIs(10))) << part << text;
}

TEST(FindHyphenated, EachHyphenOfAHitIsTakenAsItFits) {
  EXPECT_THAT(find("well-known parameter", pageOf({{"well-"}, {"known", "para-"}, {"meter"}})),
              ElementsAre("well-|known|para-|meter"));
}

TEST(FindHyphenated, DividedAgainOnTheNextLine) {
  EXPECT_THAT(find("parameter", pageOf({{"pa-"}, {"ra-"}, {"meter"}})), ElementsAre("pa-|ra-|meter"));
}

TEST(FindHyphenated, HyphenInsideALineDividesNothing) {
  EXPECT_THAT(find("prefix", pageOf({{"pre-", "fix"}})), IsEmpty());
  EXPECT_THAT(find("pre- fix", pageOf({{"pre-", "fix"}})), ElementsAre("pre-|fix"));
}

TEST(FindHyphenated, HyphenInsideAWordIsNotOptional) {
  EXPECT_THAT(find("wellknown", pageOf({{"well-known"}, {"x"}})), IsEmpty());
}

TEST(FindHyphenated, LoneDashDividesNothing) {
  EXPECT_THAT(find("a b", pageOf({{"a", "-"}, {"b"}})), IsEmpty());
  EXPECT_THAT(find("a - b", pageOf({{"a", "-"}, {"b"}})), ElementsAre("a|-|b"));
}

TEST(FindHyphenated, HyphenAtThePagesEndIsAHyphen) {
  EXPECT_THAT(find("para-", pageOf({{"para-"}})), ElementsAre("para-"));
}

TEST(FindHyphenated, HyphenBeforeAnInvisibleWordMayEndTheHit) {
  EXPECT_THAT(find("para-", pageOf({{"para-"}, {"\u00AD"}})), ElementsAre("para-"));
}

TEST(FindHyphenated, TextUpsideDownContinuesOnTheNextLine) {
  PageText page = pageOf({{"para-"}, {"meter"}});
  for (WordText &each : page.words)
    each.quarterTurns = 2;
  EXPECT_THAT(find("parameter", page), ElementsAre("para-|meter"));
}

TEST(FindHyphenated, WordContinuesAtTheTopOfTheNextColumn) {
  PageText page = pageOf({{"para-"}});
  page.words.push_back(word("meter", 6, 300, 700));
  EXPECT_THAT(find("parameter", page), ElementsAre("para-|meter"));
}

// Two lines that run down the page, the second to the left of the first: "a para-" and "meter".
PageText linesDownThePage() {
  const auto downwards = [](std::u32string text, uint32_t offset, double left, double top) {
    WordText result{.text = std::move(text), .offset = offset, .quarterTurns = 1};
    double at = top;
    for (size_t i = 0; i < result.text.size(); ++i, at -= 10)
      result.characters.push_back({left, at, left + 10, at - 10});
    result.bounds = {left, top, left + 10, at};
    return result;
  };
  return {.words = {downwards(U"a-", 0, 100, 500), downwards(U"para-", 3, 100, 470), downwards(U"meter", 9, 80, 500)}};
}

TEST(FindHyphenated, LinesRunDownThePage) {
  EXPECT_THAT(find("parameter", linesDownThePage()), ElementsAre("para-|meter"));
}

TEST(FindHyphenated, LowerOnALineThatRunsDownIsTheSameLine) {
  EXPECT_THAT(find("apara", linesDownThePage()), IsEmpty());
  EXPECT_THAT(find("a- para", linesDownThePage()), ElementsAre("a-|para"));
}

TEST(FindHyphenated, LineThatRunsUpThePageContinuesBesideIt) {
  PageText page = linesDownThePage();
  for (WordText &each : page.words)
    each.quarterTurns = 3;
  page.words[2].bounds.top = page.words[1].bounds.top; // beside it all along
  page.words[2].bounds.bottom = page.words[1].bounds.bottom;
  EXPECT_THAT(find("parameter", page), ElementsAre("para-|meter"));
}

// Across the line's direction: the second word's middle against the first word's edges.
TEST(FindHyphenated, WordWhoseMiddleIsOnTheEdgeIsOnTheSameLine) {
  for (const double bottom : {495.0, 505.0}) {
    PageText page = pageOf({{"para-", "meter"}});
    page.words[1].bounds.bottom = bottom;
    page.words[1].bounds.top = bottom + 10;
    EXPECT_THAT(find("parameter", page), IsEmpty()) << bottom;
    page.words[1].bounds.top += bottom < 500 ? -1 : 1;
    EXPECT_THAT(find("parameter", page), SizeIs(1)) << bottom;
  }
  for (const double left : {95.0, 105.0}) {
    PageText page = linesDownThePage();
    page.words[2].bounds.left = left;
    page.words[2].bounds.right = left + 10;
    EXPECT_THAT(find("parameter", page), IsEmpty()) << left;
    page.words[2].bounds.right += left < 100 ? -1 : 1;
    EXPECT_THAT(find("parameter", page), SizeIs(1)) << left;
  }
}

TEST(FindHyphenated, LineOfAnotherDirectionDoesNotContinue) {
  PageText page = pageOf({{"para-"}, {"meter"}});
  page.words[1].quarterTurns = 1;
  EXPECT_THAT(find("parameter", page), IsEmpty());
}

// ---- whole words ----

TEST(FindWholeWords, NoLetterOrDigitIsBesideThem) {
  const PageText page = pageOf({{"set", "reset", "sets", "set2", "(set)", "sét"}});
  EXPECT_THAT(occurrences("set", page, wholeWords),
              ElementsAre(ElementsAre(0, 1, 2), ElementsAre(21, 22, 23), ElementsAre(26, 27, 28)));
}

TEST(FindWholeWords, LettersAndDigitsAreOfEveryScript) {
  const std::pair<std::string, bool> besides[] = {
      {"a", true},      {"Z", true},      {"0", true},       {"9", true},       {"\u691C", true}, // an ideograph
      {"\u0661", true}, {"\u0BF0", true}, {"\u02D0", true},  {"\u16EE", true},  {"_", false},
      {"/", false},     {":", false},     {"\u00A7", false}, {"\u20AC", false},
  };
  for (const auto &[beside, isPart] : besides) {
    EXPECT_EQ(find("set", pageOf({{"set" + beside}}), {.matchCase = true, .wholeWords = true}).empty(), isPart)
        << beside;
    EXPECT_EQ(find("set", pageOf({{beside + "set"}}), {.matchCase = true, .wholeWords = true}).empty(), isPart)
        << beside;
  }
}

TEST(FindWholeWords, SeveralAreWholeAtBothEnds) {
  EXPECT_THAT(find("open source", pageOf({{"reopen", "source", "open", "source", "open", "sources"}}), wholeWords),
              ElementsAre("open|source"));
}

TEST(FindWholeWords, LetterOfTheSameLigatureIsBesideThem) {
  EXPECT_THAT(occurrences("f", pageOf({{"\uFB01", "f"}}), wholeWords), ElementsAre(ElementsAre(2)));
}

TEST(FindWholeWords, HyphenSeparatesThemInsideALine) {
  EXPECT_THAT(find("known", pageOf({{"well-known"}}), wholeWords), ElementsAre("known"));
}

TEST(FindWholeWords, AtALinesEndTheJoinedWordCounts) {
  const PageText page = pageOf({{"para-"}, {"meter"}});
  for (const char *part : {"para", "para-", "-meter", "meter", "ram"})
    EXPECT_THAT(find(part, page, wholeWords), IsEmpty()) << part;
  for (const char *joined : {"parameter", "para-meter", "para- meter"})
    EXPECT_THAT(find(joined, page, wholeWords), ElementsAre("para-|meter")) << joined;
}

TEST(FindWholeWords, AtALinesEndPunctuationEndsTheJoinedWord) {
  EXPECT_THAT(find("meter", pageOf({{"(-"}, {"meter"}}), wholeWords), ElementsAre("meter"));
  EXPECT_THAT(find("para", pageOf({{"para-"}, {"(meter)"}}), wholeWords), ElementsAre("para"));
  EXPECT_THAT(find("meter", pageOf({{"(a-"}, {"meter"}}), wholeWords), IsEmpty()) << "only before the whole word";
}

// ---- boxes ----

TEST(FindBoxes, AreAroundThePartOfEachWord) {
  const std::vector<Found> found = Finder("b c", {}).find(pageOf({{"ab", "cd"}}));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_THAT(found[0].boxes, ElementsAre(AllOf(Field(&Box::left, 10), Field(&Box::right, 20), Field(&Box::top, 510),
                                                Field(&Box::bottom, 500)),
                                          AllOf(Field(&Box::left, 30), Field(&Box::right, 40))));
}

TEST(FindBoxes, CharacterWithoutAreaAddsNothing) {
  PageText page = pageOf({{"abc"}});
  page.words[0].characters[2] = Box{};
  const std::vector<Found> found = Finder("bc", {}).find(page);
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_THAT(found[0].boxes,
              ElementsAre(AllOf(Field(&Box::left, 10), Field(&Box::right, 20), Field(&Box::bottom, 500))));
}

// ---- large pages, documents ----

TEST(Find, EveryOccurrenceOnALargePage) {
  const std::vector<std::vector<std::string>> lines(20'000, {"first", "second", "third-"});
  EXPECT_THAT(Finder("thirdfirst second", {}).find(pageOf(lines)), SizeIs(19'999));
}

TEST(FindInDocument, HyphenatedWordIsFound) {
  const test::ScratchFolder folder;
  const auto document = document::openedHere(
      folder.pdf({{.texts = {{.x = 50, .y = 500, .text = "is a para-"}, {.x = 50, .y = 488, .text = "meter of it"}}}}),
      "");
  EXPECT_THAT(find("A Parameter of", document->pageText(0)), ElementsAre("a|para-|meter|of"));
}

} // namespace
} // namespace document
