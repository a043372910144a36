// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// When the tool bar buttons are enabled. The answers come from the view mode, the current position, the list's pages
// and the page on the screen. They differ from what a jump does in a few rows, which say so.
#include <gtest/gtest.h>

#include <optional>

#include "plugin/glt/glt.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/positions.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

using Pages = std::vector<PageOf>;

struct Enabled : Row {
  int32_t viewMode;
  Pages pages;
  Position position;
  int32_t viewerPage;
  bool prev, next;
  std::optional<bool> prevMoves = {}, nextMoves = {}; ///< whether a jump moves, where the answer differs
};

class EnabledTest : public testing::TestWithParam<Enabled> {
protected:
  void prepare(GLTJumpProc jumpProc) {
    registerRecords(host, GetParam().pages, jumpProc);
    GLT_SetViewMode(host.doc, GetParam().viewMode);
    setPosition(host.doc, GetParam().position);
    host.shownPage = GetParam().viewerPage;
  }
  /// Whether the registrant is notified of a move, and not of an end of the list.
  bool moves(uint32_t code) {
    static bool s_moved;
    s_moved = false;
    prepare([](Doc, HLL *, uint32_t notified, void *) {
      s_moved |= notified != GLT_JUMP_PREV_BEYOND && notified != GLT_JUMP_NEXT_BEYOND;
    });
    GLT_Jump(host.doc, code);
    return s_moved;
  }

  RecordingHost host;
};

TEST_P(EnabledTest, DependsOnModePositionAndThePageOnTheScreen) {
  prepare(nullptr);
  EXPECT_EQ(GLTPrevEnabledProc(nullptr, nullptr), GetParam().prev);
  EXPECT_EQ(GLTNextEnabledProc(nullptr, nullptr), GetParam().next);
}

TEST_P(EnabledTest, DiffersFromTheJumpOnlyWhereTheRowSaysSo) {
  EXPECT_EQ(moves(GLT_JUMP_PREV), GetParam().prevMoves.value_or(GetParam().prev));
  EXPECT_EQ(moves(GLT_JUMP_NEXT), GetParam().nextMoves.value_or(GetParam().next));
}

const Pages two = {{3, 2}, {8, 2}}, one = {{3, 2}}, unsorted = {{8, 1}, {3, 1}};

INSTANTIATE_TEST_SUITE_P(All, EnabledTest,
                         testing::ValuesIn<Enabled>({
                             {{"FirstPage"}, 0, two, {0, 0}, 3, false, true},
                             {{"FirstPageScrolledOn"}, 0, two, {0, 0}, 4, true, true},
                             {{"FirstPageScrolledBack"}, 0, two, {0, 0}, 2, false, true},
                             {{"FirstPageOtherWord"}, 0, two, {0, 1}, 3, false, true, true},
                             {{"LastPage"}, 0, two, {1, 0}, 8, true, false},
                             {{"LastPageScrolledBack"}, 0, two, {1, 0}, 5, true, true},
                             {{"LastPageScrolledOn"}, 0, two, {1, 0}, 20, true, false},
                             {{"OnlyPage"}, 0, one, {0, 0}, 3, false, false},
                             {{"OnlyPageScrolledOn"}, 0, one, {0, 0}, 4, true, false},
                             {{"OnlyPageScrolledBack"}, 0, one, {0, 0}, 2, false, true},
                             {{"AnyPageBefore"}, 0, unsorted, {0, 0}, 5, true, true},
                             {{"OnlyPagesFromTheCurrentOnAreAfter"}, 0, unsorted, {1, 0}, 5, true, false},
                             {{"NegativePages"}, 0, {{-4, 1}}, {0, 0}, -2, true, false},
                             {{"NegativeViewerPage"}, 0, one, {0, 0}, -1, false, true},
                         }),
                         rowName<Enabled>);

INSTANTIATE_TEST_SUITE_P(One, EnabledTest,
                         testing::ValuesIn<Enabled>({
                             {{"LastPageFirstWord"}, 1, two, {1, 0}, 8, true, true},
                             {{"LastPageLastWord"}, 1, two, {1, 1}, 8, true, false, true, true},
                             {{"LastPageAfterTheLastWord"}, 1, two, {1, 2}, 0, true, false},
                             {{"OnlyPageFirstWord"}, 1, one, {0, 0}, 20, false, true},
                             {{"OnlyPageSecondWord"}, 1, one, {0, 1}, 20, true, false, false, true},
                             {{"FirstOfTwoPagesPastItsWords"}, 1, two, {0, 2}, 3, true, true, false},
                             {{"PageWithoutHighlightsComparesSigned"}, 1, {{3, 0}}, {0, 0}, 3, false, false},
                         }),
                         rowName<Enabled>);

INSTANTIATE_TEST_SUITE_P(None, EnabledTest,
                         testing::ValuesIn<Enabled>({
                             {{"FirstPage"}, 2, two, {0, 0}, 20, false, true},
                             {{"FirstPageOtherWord"}, 2, two, {0, 1}, 20, false, true, true},
                             {{"LastPageWithAPageBeforeOnScreen"}, 2, two, {1, 0}, 0, true, false},
                             {{"LastPageOnScreen"}, 2, two, {1, 0}, 8, true, false},
                             {{"LastPageWithAPageAfterOnScreen"}, 2, two, {1, 0}, 9, true, false},
                             {{"OtherMode"}, 3, one, {0, 0}, 0, false, false},
                         }),
                         rowName<Enabled>);

INSTANTIATE_TEST_SUITE_P(WithoutPages, EnabledTest,
                         testing::ValuesIn<Enabled>({
                             {{"NextIsEnabled"}, 0, {}, {0, 0}, 3, false, true, false, false},
                             {{"NextIsEnabledInModeTwo"}, 2, {}, {0, 0}, 3, false, true, false, false},
                             {{"AfterAJumpToTheLast"}, 0, {}, {UINT32_MAX, 0}, 3, true, false},
                             {{"AfterAJumpToTheLastInModeOne"}, 1, {}, {UINT32_MAX, 0}, 3, true, false},
                         }),
                         rowName<Enabled>);

/// Both tests, one after the other.
void expectDisabled() {
  EXPECT_EQ(GLTPrevEnabledProc(nullptr, nullptr), 0);
  EXPECT_EQ(GLTNextEnabledProc(nullptr, nullptr), 0);
}

TEST(EnabledAnswer, IsNoWithoutARecord) {
  RecordingHost host;
  host.shownPage = 5;
  expectDisabled();
}

TEST(EnabledAnswer, IsNoWithoutADocumentInFront) {
  RecordingHost host;
  registerRecords(host, {{3, 1}, {8, 1}}, nullptr);
  host.frontDoc = nullptr;
  expectDisabled();
}

TEST(EnabledAnswer, CountsAMissingPageViewAsPageZero) {
  RecordingHost host;
  registerRecords(host, {{1, 1}}, nullptr);
  host.shownPage = 5;
  host.view = nullptr;
  EXPECT_EQ(GLTPrevEnabledProc(nullptr, nullptr), 0);
  EXPECT_EQ(GLTNextEnabledProc(nullptr, nullptr), 1);
  EXPECT_EQ(host.count("PageViewGetPageNum"), 0U);
}

TEST(EnabledAnswer, LooksTheRecordUpThenThePage) {
  RecordingHost host;
  registerRecords(host, {{3, 1}}, nullptr);
  GLTNextEnabledProc(nullptr, nullptr);
  EXPECT_EQ(host.story(), R"(
TavrelView.GetFrontDoc()
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
TavrelView.DocGetPageView(doc)
TavrelView.PageViewGetPageNum(view)
)");
}

TEST(EnabledAnswer, OpensNoFrame) {
  RecordingHost host;
  registerRecords(host, {{3, 1}}, nullptr);
  host.raiseIn("DocGetPageView");
  EXPECT_FALSE(host.run([] { GLTPrevEnabledProc(nullptr, nullptr); }));
  EXPECT_EQ(host.count("PushExceptionFrame"), 0U);
}

TEST(EnabledWithoutFrontDocument, NoViewIsAskedFor) {
  RecordingHost host;
  const ListOwner list({{3, 1, 1}, {8, 1, 1}});
  GLT_RegisterHLL(nullptr, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  host.frontDoc = nullptr;
  host.clear();
  EXPECT_EQ(GLTNextEnabledProc(nullptr, nullptr), 1) << "what is registered for no document";
  EXPECT_EQ(host.count("DocGetPageView") + host.count("PageViewGetPageNum"), 0U);
}

} // namespace
