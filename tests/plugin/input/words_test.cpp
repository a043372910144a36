// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The reader's words compared with the lexer's: the same ones, split between joined tags.
#include "plugin/input/gltWords.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/plugin/input/words.h"
#include "tests/support/Rows.h"

namespace {

Words wordsOf(const std::string &text) {
  Words words;
  LexWord word;
  for (ReaderText rest(text); rest.next(word);) {
    EXPECT_EQ(rest.at(), word.begin + word.length);
    words.emplace_back(word.begin, word.length);
  }
  return words;
}

/// The tags that are found when text between them is skipped.
Words tagsOf(const std::string &text) {
  Words words;
  LexWord word;
  ReaderText rest(text);
  for (rest.skip(); rest.next(word); rest.skip())
    words.emplace_back(word.begin, word.length);
  return onlyTags(words);
}

void expectLexerWords(const std::string &text) {
  const Words words = lexerWords(text);
  ASSERT_EQ(wordsOf(text), words) << testing::PrintToString(text);
  ASSERT_EQ(tagsOf(text), onlyTags(words)) << testing::PrintToString(text);
}

struct WordsRow : Row {
  std::string text;
  Words words;
};

class ReaderWords : public testing::TestWithParam<WordsRow> {};

TEST_P(ReaderWords, Are) {
  EXPECT_EQ(wordsOf(GetParam().text), GetParam().words);
  EXPECT_EQ(lexerWords(GetParam().text), GetParam().words);
}

TEST_P(ReaderWords, NoTagIsSkipped) { EXPECT_EQ(tagsOf(GetParam().text), onlyTags(GetParam().words)); }

std::string a(int count) { return times(count, "a"); }

const WordsRow splits[] = {
    {{"At250"}, a(250) + " b c", {a(250), "b"}},
    {{"At251"}, a(251) + " b c", {a(250), "a", "b"}},
    {{"Twice"}, a(500) + "b c", {a(250), a(250), "b"}},
    {{"TagBegunByASplit"}, a(250) + "<b> c", {a(250), "<b>"}},
    {{"TagBegunByTheSecondSplit"}, a(500) + "<b> c", {a(250), a(250), "<b>"}},
    {{"TagOneByteBeforeTheSplit"}, a(249) + "<b> c", {a(249) + "<", "b>"}},
    {{"TagOneByteAfterTheSplit"}, a(251) + "<b> c", {a(250), "a<b>"}},
};
INSTANTIATE_TEST_SUITE_P(Splits, ReaderWords, testing::ValuesIn(splits), rowName<WordsRow>);

const WordsRow joints[] = {
    {{"BetweenTags"}, "<a><b> c d", {"<a>", "<b>", "c"}},
    {{"BetweenManyTags"}, "<a><b><c></c> d", {"<a>", "<b>", "<c>", "</c>"}},
    {{"AfterText"}, "aa><b> c", {"aa>", "<b>"}},
    {{"OnlyWhereOneEndsAndOneBegins"}, ">><<a b c", {">>", "<<a", "b"}},
    {{"NotBeforeATagInsideAWord"}, "a<b c d", {"a<b", "c"}},
    {{"NotWithASpaceBetween"}, "<a> <b> c", {"<a>", "<b>"}},
    {{"AtTheSplit"}, a(249) + "><b> c d", {a(249) + ">", "<b>", "c"}},
    {{"OneByteBeforeTheSplit"}, a(248) + "><b> c d", {a(248) + ">", "<", "b>", "c"}},
    {{"OneByteAfterTheSplit"}, a(250) + "><b> c d", {a(250), ">", "<b>", "c"}},
    {{"PieceEndsAtTheLimitOfTheToken"}, "<" + a(240) + "><location e", {"<" + a(240) + ">", "<locatio", "n"}},
    {{"PieceReachesTheLimitOfTheToken"}, "<" + a(244) + "><loc e", {"<" + a(244) + ">", "<loc"}},
    {{"WordAfterTheSplitHas250Again"},
     "<" + a(244) + "><loc" + a(251) + " e",
     {"<" + a(244) + ">", "<loc", a(250), "a"}},
    {{"AfterAQuoteInsideTheWord"}, "a'><b c d", {"a'>", "<b", "c"}},
    {{"NotInAQuotedWord"}, "'a><b' c d", {"'a><b'", "c"}},
    {{"NotInParentheses"}, "(a><b) c d", {"(a><b)", "c"}},
    {{"AfterTheSplitOfAQuotedWord"}, "'" + times(249, "=") + "><b> c", {"'" + times(249, "="), ">", "<b>"}},
};
INSTANTIATE_TEST_SUITE_P(Joints, ReaderWords, testing::ValuesIn(joints), rowName<WordsRow>);

const WordsRow ends[] = {
    {{"NoByte"}, "", {}},
    {{"OneByteAlone"}, "a", {"a"}},
    {{"OneQuoteAlone"}, "'", {"'"}},
    {{"SentenceEndAlone"}, "!", {}},
    {{"LastByteBegins"}, "b a", {"b"}},
    {{"LastByteIsATag"}, "b <", {"b"}},
    {{"LastByteIsAQuote"}, "b '", {"b"}},
    {{"LastTwoBytesBegin"}, "b aa", {"b", "aa"}},
    {{"LastByteAfterASpace"}, " a", {}},
    {{"LastByteAfterOther"}, "=a", {}},
    {{"LastByteAfterASentenceEnd"}, "!a", {}},
    {{"LastByteAfterALineBreak"}, "\n a", {}},
    {{"LastByteAfterAQuotedWord"}, "'a b'=c", {"'a b'"}},
    {{"LastByteIsAPiece"}, "<a><", {"<a>", "<"}},
    {{"LastByteIsAPieceUpToTheSplit"}, a(248) + "><", {a(248) + ">", "<"}},
    {{"LastByteAfterAJointAtTheSplit"}, a(249) + "><", {a(249) + ">"}},
    {{"LastByteAfterASplit"}, a(250) + "b", {a(250)}},
    {{"LastTwoBytesAfterASplit"}, a(250) + "bc", {a(250), "bc"}},
    {{"NulEndsAWord"}, std::string("ab\0cd", 5), {"ab"}},
    {{"NulAfterTheFirstByte"}, std::string("a\0b", 3), {"a"}},
    {{"NulAfterOneByte"}, std::string("b a\0c", 5), {"b"}},
    {{"NulEndsAQuotedWord"}, std::string("'a b\0 c'", 8), {"'a b"}},
    {{"NulAfterAJoint"}, std::string("<a><\0<b> c", 10), {"<a>", "<"}},
};
INSTANTIATE_TEST_SUITE_P(Ends, ReaderWords, testing::ValuesIn(ends), rowName<WordsRow>);

const WordsRow quotes[] = {
    {{"AtTheStart"}, "'a b' c d", {"'a b'", "c"}},
    {{"AfterASentenceEnd"}, "!'a b' c d", {"'a b'", "c"}},
    {{"AfterALineBreak"}, "\n (a b) c d", {"(a b)", "c"}},
    {{"InsideAWord"}, "a'b c' d", {"a'b", "c'"}},
    {{"AfterATag"}, "<a>'b c' d", {"<a>'b", "c'"}},
    {{"OpensAtASplit"}, a(250) + "'b c' d e", {a(250), "'b c'", "d"}},
    {{"ParenthesisOpensAtASplit"}, a(250) + "(b <c) d e", {a(250), "(b <c)", "d"}},
    {{"OpensOneByteBeforeASplit"}, a(249) + "'b c' d", {a(249) + "'", "b", "c'"}},
    {{"OpensOneByteAfterASplit"}, a(251) + "'b c' d", {a(250), "a'b", "c'"}},
    {{"ClosesAsByte250"}, "'" + times(248, " ") + "' b c", {"'" + times(248, " ") + "'", "b"}},
    {{"ClosesAsByte251"}, "'" + times(249, " ") + "' b c", {"'" + times(249, " "), "' b c"}},
    {{"ClosesAtTheEnd"}, "a 'b c'", {"a", "'b c'"}},
    {{"NeverCloses"}, "'a <b> c", {"'a <b> c"}},
    {{"HoldsASentenceEnd"}, "'a! b' c d", {"'a! b'", "c"}},
    {{"HoldsATag"}, "'a <b' <c> d", {"'a <b'", "<c>"}},
    {{"ClosesOnlyBeforeNonWordBytes"}, "(a)b <c) <d> e", {"(a)b <c)", "<d>"}},
};
INSTANTIATE_TEST_SUITE_P(Quotes, ReaderWords, testing::ValuesIn(quotes), rowName<WordsRow>);

const WordsRow sentenceEnds[] = {
    {{"TakeTheirDotsAndSpaces"}, "!. ? .a b", {"a"}},
    {{"InsideARun"}, "a.!.b c", {"a.", "b"}},
    {{"BeforeATag"}, "a!<b> c", {"a", "<b>"}},
    {{"DotAsByte250"}, times(249, "!") + ".b c", {"b"}},
    {{"DotAsByte251"}, times(250, "!") + ".b c", {".b"}},
    {{"QuestionMarkAsByte251"}, times(250, "!") + "?<b> c", {"?<b>"}},
    {{"DotAfterTheSecond"}, times(251, "!") + ".b c", {"b"}},
    {{"SpaceAsByte251"}, times(250, "!") + " .b c", {".b"}},
    {{"FirstOf250Dots"}, "!" + times(249, ".") + ".b c", {".b"}},
    {{"FirstOfManySpaces"}, "!" + times(300, " ") + ".b c", {".b"}},
    {{"QuoteAfterTheSplit"}, times(250, "!") + "'a b' c d", {"'a b'", "c"}},
};
INSTANTIATE_TEST_SUITE_P(SentenceEnds, ReaderWords, testing::ValuesIn(sentenceEnds), rowName<WordsRow>);

TEST(ReaderWords, EveryByteBetweenTwoTags) {
  for (int byte = 0; byte <= 0xFF; ++byte) {
    const std::string c(1, static_cast<char>(byte));
    expectLexerWords("<a>" + c + "<b> c");
    expectLexerWords("a" + c + "<b " + c + "> c");
  }
}

TEST(ReaderWords, TagsAfterTextOfEveryLength) {
  for (int length = 0; length <= 70; ++length)
    for (const char *after : {"<b> c", " <b> c", "><b> c", "'<b> c' <d>", "'x><b> c' <d>", "(x <b> <c)", "!<b> c", "<"})
      for (const char *before : {"", "<a>", "!", "("})
        expectLexerWords(before + a(length) + after);
}

TEST(ReaderWords, JointsAtEveryPositionAroundASplit) {
  for (int length = 240; length <= 255; ++length)
    for (const char *after : {"><b> c", "<b> c", ">><<b> c", "'><b>' c", "!><b> c", "<"})
      for (const char *before : {"", "<a>", "'", "!"})
        expectLexerWords(before + a(length) + after);
}

std::string generatedText(std::mt19937 &random) {
  static const std::string bytes = "abc<<>>'()!.? =\n\t\"1/\x14\xE9";
  static const std::string pieces[] = {"><", "/><loc ", "<b>", "'a b' ", "(c <d) ", "! . ", "\n\n ", "a.b!"};
  std::string text;
  for (const size_t target = random() % 400; text.size() < target;)
    switch (random() % 4) {
    case 0:
      text += pieces[random() % std::size(pieces)];
      break;
    case 1:
      text.append(random() % 16 == 0 ? 235 + random() % 20 : random() % 40, bytes[random() % bytes.size()]);
      break;
    default:
      for (auto count = random() % 12; count > 0; --count)
        text += bytes[random() % bytes.size()];
    }
  return text;
}

TEST(ReaderWords, OfGeneratedTexts) {
  std::mt19937 random(20240611);
  for (int i = 0; i < 1500 && !testing::Test::HasFailure(); ++i)
    expectLexerWords(generatedText(random));
}

} // namespace
