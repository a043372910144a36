// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The word splitter: texts and their tokens.
#include "plugin/input/gltLex.h"

#include <gtest/gtest.h>

#include "tests/plugin/input/tokens.h"
#include "tests/support/Rows.h"

namespace {

constexpr int32_t para = 301, punct = 302, word = 303, other = 304, newline = 305, space = 306;

struct TextRow : Row {
  std::string text;
  Tokens tokens;
};

class LexerText : public testing::TestWithParam<TextRow> {};

TEST_P(LexerText, SplitsInto) { EXPECT_EQ(tokensOf(GetParam().text), GetParam().tokens); }

const TextRow words[] = {
    {{"Tag"}, "<Body", {{word, "<Body"}}},
    {{"ClosingTag"}, "</highlights>", {{word, "</highlights>"}}},
    {{"TagWithQuotedAttribute"},
     R"(<Body Units="characters">)",
     {{word, "<Body"},
      {space, " "},
      {word, "Units"},
      {other, "=\""},
      {word, "characters"},
      {other, "\""},
      {word, ">"}}},
    {{"TagWithBareAttribute"}, "<loc pg=3>", {{word, "<loc"}, {space, " "}, {word, "pg"}, {other, "="}, {word, "3>"}}},
    {{"TagsSideBySideAreOneWord"},
     R"("1.0"?><XML><Body)",
     {{other, "\""}, {word, "1.0"}, {other, "\""}, {word, "?><XML><Body"}}},
    {{"Number"}, "3.14", {{word, "3.14"}}},
    {{"Abbreviation"}, "e.g. x", {{word, "e.g."}, {space, " "}, {word, "x"}}},
    {{"Colour"}, "#FF8000;", {{word, "#FF8000"}, {other, ";"}}},
    {{"QuestionMarkBelongsToWord"}, "So? Yes", {{word, "So?"}, {space, " "}, {word, "Yes"}}},
    {{"OneCharacter"}, "a", {{word, "a"}}},
    {{"LastCharacterWaitsInTheLookAhead"}, "a b", {{word, "a"}, {space, " "}, {word, "b"}}},
};
INSTANTIATE_TEST_SUITE_P(Words, LexerText, testing::ValuesIn(words), rowName<TextRow>);

const TextRow quoted[] = {
    {{"HoldsSpaces"}, "'it is' so", {{word, "'it is'"}, {space, " "}, {word, "so"}}},
    {{"HoldsOtherCharacters"}, "'a=\"b\"!' c", {{word, "'a=\"b\"!'"}, {space, " "}, {word, "c"}}},
    {{"HoldsLineBreaks"}, "'a\n\nb' c", {{word, "'a\n\nb'"}, {space, " "}, {word, "c"}}},
    {{"HoldsControlCharacters"}, "'a\x01 b' c", {{word, "'a\x01 b'"}, {space, " "}, {word, "c"}}},
    {{"Parentheses"}, "(a b) c", {{word, "(a b)"}, {space, " "}, {word, "c"}}},
    {{"EndsOnlyBeforeANonWordCharacter"}, "'a'b c' d", {{word, "'a'b c'"}, {space, " "}, {word, "d"}}},
    {{"TagEndAfterTheQuoteKeepsItOpen"}, "'3'> x' y", {{word, "'3'> x'"}, {space, " "}, {word, "y"}}},
    {{"EndsBeforeOther"}, "'a b'=c", {{word, "'a b'"}, {other, "="}, {word, "c"}}},
    {{"EndsWithTheText"}, "'a b'", {{word, "'a b'"}}},
    {{"NeverClosedRunsToTheEnd"}, "'a b = c", {{word, "'a b = c"}}},
    {{"Empty"}, "'' a", {{word, "''"}, {space, " "}, {word, "a"}}},
    {{"EmptyAtTheEnd"}, "''", {{word, "''"}}},
    {{"Alone"}, "'", {{word, "'"}}},
    {{"OtherClosingCharacterDoesNotEndIt"}, "'a) b' c", {{word, "'a) b'"}, {space, " "}, {word, "c"}}},
    {{"QuoteInsideAWordOpensNothing"}, "it's so", {{word, "it's"}, {space, " "}, {word, "so"}}},
    {{"ClosingParenthesisOpensNothing"}, ")a b", {{word, ")a"}, {space, " "}, {word, "b"}}},
    {{"DoubleQuotesQuoteNothing"}, "\"a b\"", {{other, "\""}, {word, "a"}, {space, " "}, {word, "b"}, {other, "\""}}},
    {{"AfterALookAhead"}, "='a b' c", {{other, "="}, {word, "'a b'"}, {space, " "}, {word, "c"}}},
};
INSTANTIATE_TEST_SUITE_P(QuotedWords, LexerText, testing::ValuesIn(quoted), rowName<TextRow>);

const TextRow lineBreaks[] = {
    {{"SpacesBeforeStayAndSpacesAfterAreSplitOff"},
     "a  \n  b",
     {{word, "a"}, {newline, "  \n"}, {space, "  "}, {word, "b"}}},
    {{"One"}, "a\nb", {{word, "a"}, {newline, "\n"}, {word, "b"}}},
    {{"Two"}, "a\n\nb", {{word, "a"}, {para, "\n\n"}, {word, "b"}}},
    {{"TwoWithSpacesBetween"}, "a\n \t\nb", {{word, "a"}, {para, "\n \t\n"}, {word, "b"}}},
    {{"ThreeWithSpacesBetween"}, "a\n\n \t\nb", {{word, "a"}, {para, "\n\n \t\n"}, {word, "b"}}},
    {{"SpacesEverywhere"}, "a \n \n b", {{word, "a"}, {para, " \n \n"}, {space, " "}, {word, "b"}}},
    {{"CarriageReturnBefore"}, "a\r\nb", {{word, "a"}, {newline, "\r\n"}, {word, "b"}}},
    {{"CarriageReturnAfter"}, "a\n\rb", {{word, "a"}, {newline, "\n"}, {space, "\r"}, {word, "b"}}},
    {{"AtTheStart"}, "\n a", {{newline, "\n"}, {space, " "}, {word, "a"}}},
    {{"AtTheEnd"}, "a\n", {{word, "a"}, {newline, "\n"}}},
    {{"SpacesAfterAtTheEnd"}, "a\n \t", {{word, "a"}, {newline, "\n"}, {space, " \t"}}},
    {{"OtherAfterTheSpaces"}, "\n =a", {{newline, "\n"}, {space, " "}, {other, "="}, {word, "a"}}},
    {{"SentenceEndAfterTheSpaces"}, "\n !a", {{newline, "\n"}, {space, " "}, {punct, "!"}, {word, "a"}}},
    {{"QuotedWordAfterTheSpaces"},
     "\n 'a b' c",
     {{newline, "\n"}, {space, " "}, {word, "'a b'"}, {space, " "}, {word, "c"}}},
    {{"Single"}, "\n", {{newline, "\n"}}},
};
INSTANTIATE_TEST_SUITE_P(LineBreaks, LexerText, testing::ValuesIn(lineBreaks), rowName<TextRow>);

const TextRow rest[] = {
    {{"Empty"}, "", {}},
    {{"Spaces"}, "a \t\v\f\rb", {{word, "a"}, {space, " \t\v\f\r"}, {word, "b"}}},
    {{"SpacesAtTheEnd"}, "a  ", {{word, "a"}, {space, "  "}}},
    {{"SentenceEnd"}, "Hi!", {{word, "Hi"}, {punct, "!"}}},
    {{"SentenceEndTakesSpaces"}, "Hi! you", {{word, "Hi"}, {punct, "! "}, {word, "you"}}},
    {{"SentenceEndTakesWordCharactersOfItsOwn"}, "!?.x", {{punct, "!?."}, {word, "x"}}},
    {{"SentenceEndTakesTabs"}, "! \t? .\tx", {{punct, "! \t? .\t"}, {word, "x"}}},
    {{"SentenceEndStopsAtLineBreak"}, "! \nx", {{punct, "! "}, {newline, "\n"}, {word, "x"}}},
    {{"SentenceEndStopsAtOther"}, "!=x", {{punct, "!"}, {other, "="}, {word, "x"}}},
    {{"SentenceEndAfterALookAhead"}, "a!!b", {{word, "a"}, {punct, "!!"}, {word, "b"}}},
    {{"OtherStopsAtSentenceEnd"}, "=!", {{other, "="}, {punct, "!"}}},
    {{"OtherStopsAtSpace"}, "=+ ~", {{other, "=+"}, {space, " "}, {other, "~"}}},
    {{"OtherStopsAtLineBreak"}, "=\n~", {{other, "="}, {newline, "\n"}, {other, "~"}}},
    {{"OtherAtTheEnd"}, "a,", {{word, "a"}, {other, ","}}},
    {{"ByteOrderMarkIsOther"}, "\xEF\xBB\xBF<XML>", {{other, "\xEF\xBB\xBF"}, {word, "<XML>"}}},
};
INSTANTIATE_TEST_SUITE_P(Rest, LexerText, testing::ValuesIn(rest), rowName<TextRow>);

// A run longer than 250 characters continues in the next token.
const TextRow longRuns[] = {
    {{"WordOf250"}, times(250, "a"), {{word, times(250, "a")}}},
    {{"WordOf251"}, times(251, "a"), {{word, times(250, "a")}, {word, "a"}}},
    {{"WordOf300"}, times(300, "a"), {{word, times(250, "a")}, {word, times(50, "a")}}},
    {{"WordOf600"}, times(600, "a"), {{word, times(250, "a")}, {word, times(250, "a")}, {word, times(100, "a")}}},
    {{"QuotedWordIsNotQuotedAfterTheSplit"},
     "'" + times(260, "=") + "a b",
     {{word, "'" + times(249, "=")}, {other, times(11, "=")}, {word, "a"}, {space, " "}, {word, "b"}}},
    {{"QuoteThatClosesAsCharacter250"},
     "'" + times(248, " ") + "' a",
     {{word, "'" + times(248, " ") + "'"}, {space, " "}, {word, "a"}}},
    {{"SpacesOf250"}, times(250, " ") + "a", {{space, times(250, " ")}, {word, "a"}}},
    {{"SpacesOf300"}, times(300, " ") + "a", {{space, times(250, " ")}, {space, times(50, " ")}, {word, "a"}}},
    {{"SpacesWithLineBreakAsCharacter250"}, times(249, " ") + "\na", {{newline, times(249, " ") + "\n"}, {word, "a"}}},
    {{"SpacesWithLineBreakAsCharacter251"},
     times(250, " ") + "\na",
     {{space, times(250, " ")}, {newline, "\n"}, {word, "a"}}},
    {{"LineBreaksOf300"}, times(300, "\n"), {{para, times(250, "\n")}, {para, times(50, "\n")}}},
    {{"LineBreaksOf251"}, times(251, "\n") + "a", {{para, times(250, "\n")}, {newline, "\n"}, {word, "a"}}},
    {{"LineBreakBefore300Spaces"},
     "\n" + times(300, " ") + "a",
     {{newline, "\n"}, {space, times(249, " ")}, {space, times(51, " ")}, {word, "a"}}},
    {{"SentenceEndOf300"}, times(300, "!") + "a", {{punct, times(250, "!")}, {punct, times(50, "!")}, {word, "a"}}},
    {{"SentenceEndSplitBeforeSpaces"}, times(250, "!") + "  a", {{punct, times(250, "!")}, {space, "  "}, {word, "a"}}},
    {{"OtherOf300"}, times(300, "=") + "a", {{other, times(250, "=")}, {other, times(50, "=")}, {word, "a"}}},
    {{"OtherOf250"}, times(250, "="), {{other, times(250, "=")}}},
};
INSTANTIATE_TEST_SUITE_P(LongRuns, LexerText, testing::ValuesIn(longRuns), rowName<TextRow>);

} // namespace
