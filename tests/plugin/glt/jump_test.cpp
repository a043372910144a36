// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Jumping: the position after each code from each position, the registrant's notifications, and whether the view
// follows.
#include <gtest/gtest.h>

#include "plugin/glt/glt.h"
#include "tests/host/Faults.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"
#include "tests/plugin/glt/positions.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

using Pages = std::vector<PageOf>;
using Codes = std::vector<uint32_t>;

enum : uint32_t { next = 0, nextBeyond = 1, prev = 2, prevBeyond = 3, first = 4, last = 5 };

Codes s_codes;
void recordCode(Doc /*document*/, HLL * /*list*/, uint32_t code, void * /*userData*/) { s_codes.push_back(code); }

struct Jump : Row {
  int32_t viewMode;
  Pages pages;
  Position from;
  int32_t viewerPage;
  uint32_t code;
  Position to;
  Codes notified;
  bool shown;
};

class Jumping : public testing::TestWithParam<Jump> {};

TEST_P(Jumping, MovesNotifiesAndShows) {
  const Jump &jump = GetParam();
  RecordingHost host;
  s_codes.clear();
  registerRecords(host, jump.pages, recordCode);
  GLT_SetViewMode(host.doc, jump.viewMode);
  setPosition(host.doc, jump.from);
  host.shownPage = jump.viewerPage;
  GLT_Jump(host.doc, jump.code);
  EXPECT_EQ(positionOf(host.doc), jump.to);
  EXPECT_EQ(s_codes, jump.notified);
  EXPECT_EQ(host.count("PageViewBeginBatch") != 0, jump.shown);
}

TEST_P(Jumping, MovesTheSameWayWithoutARegistrant) {
  const Jump &jump = GetParam();
  RecordingHost host;
  registerRecords(host, jump.pages, nullptr);
  GLT_SetViewMode(host.doc, jump.viewMode);
  setPosition(host.doc, jump.from);
  host.shownPage = jump.viewerPage;
  GLT_Jump(host.doc, jump.code);
  EXPECT_EQ(positionOf(host.doc), jump.to);
  EXPECT_EQ(host.count("PageViewBeginBatch") != 0, jump.shown);
}

const Pages threeTwo = {{4, 3}, {9, 2}}, spread = {{2, 1}, {5, 1}, {9, 1}}, unsorted = {{5, 1}, {9, 1}, {2, 1}};

INSTANTIATE_TEST_SUITE_P(AllOfThePage, Jumping,
                         testing::ValuesIn<Jump>({
                             {{"NextPage"}, 0, threeTwo, {0, 0}, 4, next, {1, 0}, {0}, true},
                             {{"NextPageWhateverTheWord"}, 0, threeTwo, {0, 1}, 4, next, {1, 0}, {0}, true},
                             {{"PrevPageMovesToItsLastWord"}, 0, threeTwo, {1, 0}, 9, prev, {0, 2}, {2}, true},
                             {{"PrevCountsTheWordDown"}, 0, threeTwo, {0, 2}, 4, prev, {0, 1}, {2}, true},
                             {{"PrevCountsTheWordDownToZero"}, 0, threeTwo, {0, 1}, 4, prev, {0, 0}, {2}, true},
                             {{"PrevCountsOnTheSecondPage"}, 0, threeTwo, {1, 1}, 9, prev, {1, 0}, {2}, true},
                         }),
                         rowName<Jump>);

// At an end of the list the page on screen decides.
INSTANTIATE_TEST_SUITE_P(AllAtTheEnd, Jumping,
                         testing::ValuesIn<Jump>({
                             {{"NextReturnsWhenScrolledBack"}, 0, threeTwo, {1, 1}, 6, next, {1, 0}, {0}, true},
                             {{"NextOnThatPageOnlyShows"}, 0, threeTwo, {1, 1}, 9, next, {1, 1}, {}, true},
                             {{"NextAfterThatPageOnlyShows"}, 0, threeTwo, {1, 1}, 30, next, {1, 1}, {}, true},
                             {{"NextLooksAtTheLastPageAlone"}, 0, unsorted, {2, 0}, 4, next, {2, 0}, {}, true},
                             {{"PrevLandsOnTheLastPageBefore"}, 0, spread, {0, 0}, 7, prev, {1, 0}, {0, 0}, true},
                             {{"PrevFromAfterAll"}, 0, spread, {0, 0}, 10, prev, {2, 0}, {0, 0, 0}, true},
                             {{"PrevOnThatPageOnlyShows"}, 0, spread, {0, 0}, 2, prev, {0, 0}, {}, true},
                             {{"PrevBeforeThatPageOnlyShows"}, 0, spread, {0, 0}, 0, prev, {0, 0}, {}, true},
                             {{"PrevJustAfterTheFirst"}, 0, spread, {0, 0}, 3, prev, {0, 0}, {0}, true},
                             {{"PrevOfUnsortedTakesTheLastMatch"}, 0, unsorted, {0, 0}, 7, prev, {2, 0}, {0, 0}, true},
                         }),
                         rowName<Jump>);

const Pages negative = {{-5, 1}, {-1, 1}};
INSTANTIATE_TEST_SUITE_P(PageNumbersAreSigned, Jumping,
                         testing::ValuesIn<Jump>({
                             {{"NextFromANegativePage"}, 0, {{3, 1}}, {0, 0}, -1, next, {0, 0}, {0}, true},
                             {{"NextToANegativePage"}, 0, negative, {1, 0}, 0, next, {1, 0}, {}, true},
                             {{"PrevFromANegativePage"}, 0, {{3, 1}}, {0, 0}, -1, prev, {0, 0}, {}, true},
                             {{"PrevToANegativePage"}, 0, negative, {0, 0}, 0, prev, {1, 0}, {0, 0}, true},
                             {{"PrevBetweenNegatives"}, 0, negative, {0, 0}, -3, prev, {0, 0}, {0}, true},
                         }),
                         rowName<Jump>);

const Pages twoTwo = {{4, 2}, {9, 2}};
INSTANTIATE_TEST_SUITE_P(OneHighlight, Jumping,
                         testing::ValuesIn<Jump>({
                             {{"NextWord"}, 1, twoTwo, {0, 0}, 4, next, {0, 1}, {0}, true},
                             {{"NextWordReachesTheCount"}, 1, twoTwo, {0, 1}, 4, next, {0, 2}, {0}, true},
                             {{"NextPageFromTheCount"}, 1, twoTwo, {0, 2}, 4, next, {1, 0}, {0}, true},
                             {{"NextAtTheEndNotifiesBeyond"}, 1, twoTwo, {1, 2}, 4, next, {1, 2}, {1}, false},
                             {{"NextWordOfTheLastPage"}, 1, twoTwo, {1, 1}, 9, next, {1, 2}, {0}, true},
                             {{"PrevMakesNoWordStep"}, 1, threeTwo, {1, 1}, 9, prev, {0, 2}, {2}, true},
                             {{"PrevPage"}, 1, threeTwo, {1, 0}, 9, prev, {0, 2}, {2}, true},
                             {{"PrevAtTheStartNotifiesBeyond"}, 1, twoTwo, {0, 0}, 30, prev, {0, 0}, {3}, false},
                             {{"PrevOnTheFirstPageNotifiesBeyond"}, 1, twoTwo, {0, 1}, 30, prev, {0, 1}, {3}, false},
                         }),
                         rowName<Jump>);

INSTANTIATE_TEST_SUITE_P(NoMarks, Jumping,
                         testing::ValuesIn<Jump>({
                             {{"NextPage"}, 2, twoTwo, {0, 0}, 4, next, {1, 0}, {0}, true},
                             {{"NextAtTheEndNotifiesBeyond"}, 2, twoTwo, {1, 0}, 0, next, {1, 0}, {1}, false},
                             {{"PrevWord"}, 2, twoTwo, {1, 1}, 9, prev, {1, 0}, {2}, true},
                             {{"PrevPage"}, 2, twoTwo, {1, 0}, 9, prev, {0, 1}, {2}, true},
                             {{"PrevAtTheStartNotifiesBeyond"}, 2, twoTwo, {0, 0}, 30, prev, {0, 0}, {3}, false},
                             {{"OtherModesBehaveLikeThis"}, 7, twoTwo, {1, 0}, 0, next, {1, 0}, {1}, false},
                         }),
                         rowName<Jump>);

INSTANTIATE_TEST_SUITE_P(OtherCodes, Jumping,
                         testing::ValuesIn<Jump>({
                             {{"NextBeyondOnlyNotifies"}, 0, threeTwo, {0, 1}, 4, nextBeyond, {0, 1}, {1}, false},
                             {{"PrevBeyondOnlyNotifies"}, 1, threeTwo, {1, 1}, 4, prevBeyond, {1, 1}, {3}, false},
                             {{"First"}, 0, threeTwo, {1, 1}, 9, first, {0, 0}, {4}, true},
                             {{"FirstInModeOne"}, 1, threeTwo, {1, 1}, 9, first, {0, 0}, {4}, true},
                             {{"FirstInModeTwo"}, 2, threeTwo, {1, 1}, 9, first, {0, 0}, {4}, true},
                             {{"Last"}, 0, threeTwo, {0, 2}, 4, last, {1, 0}, {5}, true},
                             {{"LastInModeOneIsTheLastWord"}, 1, threeTwo, {0, 2}, 4, last, {1, 1}, {5}, true},
                             {{"LastInModeTwo"}, 2, threeTwo, {0, 2}, 4, last, {1, 0}, {5}, true},
                             {{"SixOnlyShows"}, 0, threeTwo, {0, 2}, 9, 6, {0, 2}, {}, true},
                             {{"HighestOnlyShows"}, 2, threeTwo, {1, 1}, 4, UINT32_MAX, {1, 1}, {}, true},
                         }),
                         rowName<Jump>);

const Pages hollow = {{4, 0}, {9, 1}}, hollowAtTheEnd = {{4, 1}, {9, 0}};
INSTANTIATE_TEST_SUITE_P(PagesWithoutHighlights, Jumping,
                         testing::ValuesIn<Jump>({
                             {{"PrevGives65535"}, 0, hollow, {1, 0}, 9, prev, {0, 65535}, {2}, true},
                             {{"PrevGives65535InModeOne"}, 1, hollow, {1, 0}, 9, prev, {0, 65535}, {2}, true},
                             {{"LastGives65535InModeOne"}, 1, hollowAtTheEnd, {0, 0}, 4, last, {1, 65535}, {5}, true},
                             {{"NextLeavesItAtOnce"}, 1, hollow, {0, 0}, 4, next, {1, 0}, {0}, true},
                         }),
                         rowName<Jump>);

constexpr uint32_t beforeTheFirst = UINT32_MAX; // the number of no pages minus one
INSTANTIATE_TEST_SUITE_P(
    ListWithoutPages, Jumping,
    testing::ValuesIn<Jump>({
        {{"Next"}, 0, {}, {0, 0}, 4, next, {0, 0}, {}, true},
        {{"NextInModeOne"}, 1, {}, {0, 0}, 4, next, {0, 0}, {1}, false},
        {{"Prev"}, 0, {}, {0, 0}, 4, prev, {0, 0}, {}, true},
        {{"First"}, 0, {}, {0, 0}, 4, first, {0, 0}, {4}, true},
        {{"Last"}, 0, {}, {0, 0}, 4, last, {beforeTheFirst, 0}, {5}, true},
        {{"LastInModeOne"}, 1, {}, {0, 0}, 4, last, {beforeTheFirst, 65535}, {5}, true},
        {{"NextAfterLast"}, 0, {}, {beforeTheFirst, 0}, 4, next, {beforeTheFirst, 0}, {}, true},
        {{"PrevAfterLast"}, 0, {}, {beforeTheFirst, 0}, 4, prev, {beforeTheFirst - 1, 65535}, {2}, true},
    }),
    rowName<Jump>);

// Sequences

TEST(Jump, WithoutARecordDoesNothing) {
  const RecordingHost host;
  for (const uint32_t code : {0U, 5U, 6U})
    GLT_Jump(host.doc, code);
  EXPECT_EQ(host.without({"AtomFromString"}), std::vector<std::string>{});
  EXPECT_EQ(host.count("AtomFromString"), 6U);
}

TEST(Jump, RoundTripInTheDefaultMode) {
  RecordingHost host;
  s_codes.clear();
  registerRecords(host, threeTwo, recordCode);
  std::vector<Position> positions;
  for (const uint32_t code : Codes{next, prev, prev, prev}) {
    GLT_Jump(host.doc, code);
    positions.push_back(positionOf(host.doc));
  }
  EXPECT_EQ(positions, (std::vector<Position>{{1, 0}, {0, 2}, {0, 1}, {0, 0}}));
  EXPECT_EQ(s_codes, (Codes{0, 2, 2, 2}));
  host.clear();
  GLT_Jump(host.doc, prev);
  EXPECT_EQ(host.count("PageViewGetPageNum"), 1U) << "a further jump asks for the page on screen";
}

/// Records in the trace the position at which the registrant is notified.
void noteNotification(Doc document, HLL *list, uint32_t code, void *userData) {
  const Position at = positionOf(document);
  RecordingHost &host = RecordingHost::current();
  EXPECT_EQ(list, recordOf(document)->hll);
  EXPECT_EQ(userData, &host);
  host.trace.push_back("notified " + std::to_string(code) + " at " + std::to_string(at.page) + " " +
                       std::to_string(at.word));
}

TEST(Jump, NotifiesAfterTheMoveAndBeforeTheDisplay) {
  RecordingHost host;
  registerRecords(host, threeTwo, noteNotification);
  GLT_Jump(host.doc, next);
  ASSERT_GE(host.trace.size(), 4U);
  EXPECT_EQ(host.trace[2], "notified 0 at 1 0");
  EXPECT_EQ(host.trace[3], "Kernel.PushExceptionFrame(*, RestorePlugInFrame)");
}

TEST(Jump, NotifiesOfEachMatchWithItsPosition) {
  RecordingHost host;
  registerRecords(host, spread, noteNotification);
  host.shownPage = 7;
  GLT_Jump(host.doc, prev);
  const std::vector<std::string> start(host.trace.begin(), host.trace.begin() + 7);
  EXPECT_EQ(start, (std::vector<std::string>{R"(Kernel.AtomFromString("GLT"))", R"(Kernel.AtomFromString("GLT"))",
                                             "TavrelView.DocGetPageView(doc)", "TavrelView.PageViewGetPageNum(view)",
                                             "notified 0 at 0 0", "notified 0 at 1 0",
                                             "Kernel.PushExceptionFrame(*, RestorePlugInFrame)"}));
}

TEST(Jump, AsksForThePageOnScreenWithoutTestingTheView) {
  RecordingHost host;
  registerRecords(host, threeTwo, nullptr);
  setPosition(host.doc, {1, 0});
  host.view = nullptr;
  GLT_Jump(host.doc, next);
  EXPECT_EQ(host.trace[3], "TavrelView.PageViewGetPageNum(null)");
}

TEST(Jump, LooksAtThePageOnScreenOnlyAtAnEndOfTheList) {
  RecordingHost host;
  registerRecords(host, threeTwo, nullptr);
  GLT_Jump(host.doc, next);
  EXPECT_EQ(host.count("PageViewGetPageNum"), 0U);
}

TEST(Jump, OpensNoFrame) {
  RecordingHost host;
  registerRecords(host, threeTwo, nullptr);
  setPosition(host.doc, {1, 0});
  host.raiseIn("PageViewGetPageNum");
  EXPECT_FALSE(host.run([&] { GLT_Jump(host.doc, next); }));
  EXPECT_EQ(host.count("PushExceptionFrame"), 0U);
  EXPECT_EQ(positionOf(host.doc), (Position{1, 0}));
}

TEST(Jump, KeepsItsMoveWhenTheDisplayFails) {
  const auto prepare = [](RecordingHost &host) {
    registerRecords(host, threeTwo, nullptr);
    host.reliable = {"AtomFromString"};
  };
  const auto act = [](RecordingHost &host) { GLT_Jump(host.doc, next); };
  const auto check = [](RecordingHost &host, const std::string &) {
    EXPECT_EQ(positionOf(host.doc), (Position{1, 0}));
  };
  EXPECT_EQ(raiseAtEveryCall({prepare, act, check, true, false, true}), 18U);
}

} // namespace
