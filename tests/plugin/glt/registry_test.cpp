// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The registry of documents: registering, unregistering, and what is kept of a registration.
// registry_failures_test.cpp has what remains of one that fails.
#include <gtest/gtest.h>

#include <algorithm>

#include "plugin/glt/glt.h"
#include "plugin/glt/miAssoc.h"
#include "tests/host/Faults.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"
#include "tests/plugin/glt/positions.h"
#include "tests/support/FailingMemory.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

constexpr ColorValue red = {1, {fixedOne, 0, 0, 0}}, blue = {1, {0, 0, fixedOne, 0x1234}}, unset = {9, {1, 2, 3, 4}};

std::vector<int32_t> parts(const ColorValue &c) {
  return {c.space, c.component[0], c.component[1], c.component[2], c.component[3]};
}

/// The document's colour; `unset` if it has none.
std::vector<int32_t> colorOf(Doc document) {
  ColorValue color = unset;
  GLT_GetColor(document, &color);
  return parts(color);
}

void noteJump(Doc /*document*/, HLL * /*list*/, uint32_t /*code*/, void * /*userData*/) {}

class Registry : public testing::Test {
protected:
  void add(const HLL *list, Bool16 scroll = 0, GLTNewProc newProc = nullptr, const ColorValue *color = nullptr) {
    GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, newProc, scroll, color);
  }
  void give(HLL *&list) {
    EXPECT_EQ(GLTRegisterGivenHLL(host.doc, list, {GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr, 2}), 1);
  }
  RecordingHost host;
};

// What a registration keeps

TEST_F(Registry, StartsAtTheFirstHighlightOfTheFirstPage) {
  const ListOwner list({{4, 1, 1}, {2, 1, 1}});
  EXPECT_EQ(GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr), 1);
  uint32_t page = 9;
  uint16_t word = 9;
  EXPECT_EQ(GLT_GetPos(host.doc, &page, &word), 1);
  EXPECT_EQ((Position{page, word}), (Position{0, 0}));
  EXPECT_EQ(GLT_GetViewMode(host.doc), GLT_VIEW_ALL);
}

TEST_F(Registry, KeepsACopyOfTheList) {
  int data = 0;
  const ListOwner list({{4, 1, 1}, {2, 5, 6}}, &data);
  add(list);
  HLL *copy = GLT_GetHLL(host.doc);
  EXPECT_NE(copy, list.list());
  EXPECT_EQ(highlightsOf(copy), highlightsOf(list));
  EXPECT_EQ(HLL_GetData(copy), &data);
}

TEST_F(Registry, TakesAListThatIsGiven) {
  HLL *const list = GLT_NewHLL(nullptr);
  HLL_AddHL(list, 4, 1, 1);
  HLL *given = list;
  give(given);
  EXPECT_EQ(given, nullptr);
  EXPECT_EQ(GLT_GetHLL(host.doc), list);
}

TEST_F(Registry, CopiesAGivenListThatLacksWhatItAccepted) {
  const ListOwner list({{4, 1, 1}});
  list.list()->wordCount = 2;
  HLL *given = list;
  give(given);
  EXPECT_EQ(given, list.list());
  EXPECT_EQ(HLL_GetWordCount(GLT_GetHLL(host.doc)), 1U);
}

TEST_F(Registry, OutlivesTheCallersList) {
  add(ListOwner({{4, 1, 1}}));
  EXPECT_EQ(highlightsOf(GLT_GetHLL(host.doc)), (Highlights{{4, 1, 1}}));
}

TEST_F(Registry, MarksInRedByDefault) {
  add(ListOwner({{4, 1, 1}}));
  EXPECT_EQ(colorOf(host.doc), parts(red));
  add(ListOwner({{4, 1, 1}}), 0, nullptr, &blue);
  EXPECT_EQ(colorOf(host.doc), parts(blue));
}

TEST_F(Registry, KeepsWhatItIsGiven) {
  const ListOwner list({{4, 1, 1}});
  GLT_RegisterHLL(host.doc, list, -5, noteJump, noteNew, 0, nullptr);
  const GLTRecord *record = recordOf(host.doc);
  EXPECT_EQ(record->offsetUnits, -5);
  EXPECT_EQ(record->wordFinderVersion, 2);
  EXPECT_EQ(record->jumpProc, noteJump);
  EXPECT_EQ(record->newProc, noteNew);
}

TEST_F(Registry, ForWordOffsetsKeepsTheirVersion) {
  const ListOwner list({{4, 1, 1}});
  EXPECT_EQ(GLT_RegisterWordOffsetHLL(host.doc, list, noteJump, noteNew, 0, &blue, -3), 1);
  const GLTRecord *record = recordOf(host.doc);
  EXPECT_EQ(record->offsetUnits, 0);
  EXPECT_EQ(record->wordFinderVersion, -3);
  EXPECT_EQ(parts(record->color), parts(blue));
  EXPECT_EQ(record->jumpProc, noteJump);
  EXPECT_EQ(record->newProc, noteNew);
}

TEST_F(Registry, KeepsARecordForEachDocument) {
  const ListOwner one({{4, 1, 1}}), other({{6, 1, 1}, {7, 1, 1}});
  add(one);
  GLT_RegisterHLL(host.otherDoc, other, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, &blue);
  GLT_SetPos(host.otherDoc, 1, 0, 0);
  EXPECT_EQ(positionOf(host.doc), (Position{0, 0}));
  EXPECT_EQ(positionOf(host.otherDoc), (Position{1, 0}));
  EXPECT_EQ(colorOf(host.doc), parts(red));
}

TEST_F(Registry, FilesItsRecordUnderTheAtomForBothKeys) {
  add(ListOwner({{4, 1, 1}}));
  ASSERT_NE(s_AssocList, nullptr);
  EXPECT_EQ(s_AssocList->object, host.doc);
  EXPECT_EQ(s_AssocList->key1, host.atom("GLT"));
  EXPECT_EQ(s_AssocList->key2, host.atom("GLT"));
}

// Complete sequences

TEST_F(Registry, FirstRegistrationShowsThePageAndHighlightsTheText) {
  add(ListOwner({{4, 1, 1}, {4, 9, 2}}));
  EXPECT_EQ(host.story(), R"(
TavrelView.DocGetPageView(doc)
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewShowPage(view, 4)
TavrelView.DocGetModelDoc(doc)
DocModel.DocOpenPage(modelDoc, 4)
DocModel.SelectionFromCharRanges(page4, *, 2)
Kernel.PopExceptionFrame()
DocModel.PageClose(page4)
TavrelView.PageViewHighlightText(view, selection)
)");
}

TEST_F(Registry, ScrollsWhenAsked) {
  add(ListOwner({{4, 1, 1}}), 1);
  const std::string story = host.story();
  EXPECT_EQ(story.substr(story.find("TavrelView.PageViewHighlightText")),
            R"(TavrelView.PageViewHighlightText(view, selection)
TavrelView.PageViewBeginBatch(view)
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
DocModel.SelectionPageNumber(selection)
TavrelView.PageViewShowPage(view, 4)
TavrelView.PageViewGetVisibleRect(view, *)
DocModel.SelectionBounds(selection, *)
TavrelView.PageViewGetPageTransform(view, *)
TavrelSupport.TransformFixedRect(*, *, *)
TavrelView.PageViewScrollToPoint(view, -150, 310)
Kernel.PopExceptionFrame()
TavrelView.PageViewEndBatch(view)
)");
}

TEST_F(Registry, ScrollsForAnyFlagButZero) {
  add(ListOwner({{4, 1, 1}}), 0x0100);
  EXPECT_EQ(host.count("PageViewScrollToPoint"), 1U);
}

TEST_F(Registry, SecondRegistrationRetiresTheFirst) {
  int data = 0;
  host.named(&data, "userData");
  add(ListOwner({{4, 1, 1}}, &data), 0, noteNew);
  host.named(GLT_GetHLL(host.doc), "firstCopy");
  host.clear();
  add(ListOwner({{7, 1, 1}}));
  EXPECT_EQ(host.story(), R"(
TavrelView.DocGetPageView(doc)
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewShowPage(view, 4)
TavrelView.DocGetModelDoc(doc)
DocModel.DocOpenPage(modelDoc, 4)
DocModel.SelectionFromCharRanges(page4, *, 1)
Kernel.PopExceptionFrame()
DocModel.PageClose(page4)
TavrelView.PageViewHighlightText(view, selection)
newProc(doc, firstCopy, userData)
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewShowPage(view, 7)
TavrelView.DocGetModelDoc(doc)
DocModel.DocOpenPage(modelDoc, 7)
DocModel.SelectionFromCharRanges(page7, *, 1)
Kernel.PopExceptionFrame()
DocModel.PageClose(page7)
TavrelView.PageViewHighlightText(view, selection)
)");
  EXPECT_EQ(highlightsOf(GLT_GetHLL(host.doc)), (Highlights{{7, 1, 1}}));
}

TEST_F(Registry, SecondRegistrationStartsAfresh) {
  add(ListOwner({{4, 1, 1}, {5, 1, 1}}), 0, nullptr, &blue);
  GLT_SetPos(host.doc, 1, 0, 0);
  GLT_SetViewMode(host.doc, GLT_VIEW_NONE);
  add(ListOwner({{7, 1, 1}}));
  EXPECT_EQ(positionOf(host.doc), (Position{0, 0}));
  EXPECT_EQ(GLT_GetViewMode(host.doc), GLT_VIEW_ALL);
  EXPECT_EQ(colorOf(host.doc), parts(red));
}

TEST_F(Registry, OldListWithoutASelectionIsRetiredWithoutAHighlight) {
  add(ListOwner({{4, 1, 1}}), 0, noteNew);
  GLT_SetViewMode(host.doc, GLT_VIEW_NONE);
  host.clear();
  add(ListOwner({{7, 1, 1}}));
  EXPECT_EQ(host.count("PageViewHighlightText"), 1U) << "for the new list alone";
  EXPECT_NE(host.story().find("newProc("), std::string::npos);
}

TEST_F(Registry, EmptyListIsRegisteredAndMapsNothing) {
  add(ListOwner({}), 1);
  EXPECT_EQ(HLL_GetPageCount(GLT_GetHLL(host.doc)), 0U);
  EXPECT_EQ(host.count("PageViewHighlightText") + host.count("PageViewBeginBatch") + host.count("DocOpenPage"), 0U);
}

TEST_F(Registry, WithoutAPageViewHighlightsTheTextOfNull) {
  host.view = nullptr;
  add(ListOwner({{4, 1, 1}}));
  EXPECT_EQ(host.trace.back(), "TavrelView.PageViewHighlightText(null, selection)");
}

TEST_F(Registry, UnregisteringNotifiesTheRegistrantThenRedraws) {
  int data = 0;
  host.named(&data, "userData");
  add(ListOwner({{4, 1, 1}}, &data), 0, noteNew);
  HLL *copy = host.named(GLT_GetHLL(host.doc), "copy");
  host.clear();
  GLT_UnregisterHLL(host.doc, copy);
  EXPECT_EQ(host.story(), R"(
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
newProc(doc, copy, userData)
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewBeginBatch(view)
TavrelView.PageViewRefreshArea(view, null)
TavrelView.PageViewEndBatch(view)
Kernel.PopExceptionFrame()
)");
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
}

TEST_F(Registry, UnregisteringTheListPassedInLeavesTheRegistration) {
  const ListOwner list({{4, 1, 1}});
  add(list, 0, noteNew);
  host.clear();
  GLT_UnregisterHLL(host.doc, list);
  EXPECT_NE(GLT_GetHLL(host.doc), nullptr);
  EXPECT_EQ(host.without({"AtomFromString"}), std::vector<std::string>{});
}

TEST_F(Registry, UnregisteringFromAnotherDocumentDoesNothing) {
  add(ListOwner({{4, 1, 1}}));
  host.clear();
  GLT_UnregisterHLL(host.otherDoc, GLT_GetHLL(host.doc));
  EXPECT_NE(GLT_GetHLL(host.doc), nullptr);
  EXPECT_EQ(host.without({"AtomFromString"}), std::vector<std::string>{});
}

TEST_F(Registry, UnregisteringNullWithoutARecordDoesNothing) {
  GLT_UnregisterHLL(host.doc, nullptr);
  EXPECT_EQ(host.without({"AtomFromString"}), std::vector<std::string>{});
}

// Documents without a record

TEST_F(Registry, WithoutARecordReportsNothing) {
  uint32_t page = 7;
  uint16_t word = 8;
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
  EXPECT_EQ(GLT_GetViewMode(host.doc), 0);
  EXPECT_EQ(GLT_GetPos(host.doc, &page, &word), 0);
  EXPECT_EQ((Position{page, word}), (Position{7, 8})) << "untouched";
  EXPECT_EQ(GLT_SetPos(host.doc, 0, 0, 1), 0);
  EXPECT_EQ(colorOf(host.doc), parts(unset)) << "untouched";
}

TEST_F(Registry, WithoutARecordSetsNothing) {
  GLT_SetViewMode(host.doc, 1);
  GLT_SetColor(host.doc, &blue);
  EXPECT_EQ(s_AssocList, nullptr);
  EXPECT_EQ(host.without({"AtomFromString"}), std::vector<std::string>{});
}

TEST_F(Registry, FetchesTheAtomAnewForEachKeyOfEachCall) {
  GLT_GetViewMode(host.doc);
  GLT_GetHLL(host.doc);
  EXPECT_EQ(host.count("AtomFromString"), 4U);
}

// Colour, view mode and position

TEST_F(Registry, ViewModeAndColourChangeNothingOnTheScreen) {
  registerPages(host, {{4, 1, 1}});
  GLT_SetViewMode(host.doc, 0x12345678);
  GLT_SetColor(host.doc, &blue);
  EXPECT_EQ(host.without({"AtomFromString"}), std::vector<std::string>{});
  EXPECT_EQ(GLT_GetViewMode(host.doc), 0x12345678);
  EXPECT_EQ(colorOf(host.doc), parts(blue));
}

TEST_F(Registry, ColourIsUsedWithTheNextRedraw) {
  registerPages(host, {{4, 1, 1}});
  GLT_SetColor(host.doc, &blue);
  GLT_SetPos(host.doc, 0, 0, 0);
  EXPECT_EQ(std::count(host.trace.begin(), host.trace.end(),
                       "TavrelView.PageViewApplyDrawColor(view, color 1 0.000 0.000 1.000 0.071)"),
            1);
}

struct Move : Row {
  Position to;
  bool moved;
};
class SetPos : public testing::TestWithParam<Move> {};

TEST_P(SetPos, MovesToAHighlightThatIsThere) {
  RecordingHost host;
  registerPages(host, {{4, 1, 1}, {4, 2, 1}, {9, 1, 1}});
  setPosition(host.doc, {0, 1});
  const auto [to, moved] = std::pair(GetParam().to, GetParam().moved);
  EXPECT_EQ(GLT_SetPos(host.doc, to.page, to.word, 0), moved);
  EXPECT_EQ(positionOf(host.doc), moved ? to : (Position{0, 1}));
  EXPECT_EQ(host.count("PageViewPaintSelection"), moved ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Registry, SetPos,
                         testing::ValuesIn<Move>({
                             {{"First"}, {0, 0}, true},
                             {{"WhereItIs"}, {0, 1}, true},
                             {{"SecondPage"}, {1, 0}, true},
                             {{"WordIndexEqualToCount"}, {0, 2}, false},
                             {{"WordIndexBeyondOnSecondPage"}, {1, 1}, false},
                             {{"PageIndexEqualToCount"}, {2, 0}, false},
                             {{"PageIndexIsUnsigned"}, {UINT32_MAX, 0}, false},
                         }),
                         rowName<Move>);

TEST_F(Registry, RefusedMoveMakesNoHostCallButTheLookup) {
  registerPages(host, {{4, 1, 1}});
  EXPECT_EQ(GLT_SetPos(host.doc, 0, 1, 1), 0);
  EXPECT_EQ(host.story(), R"(
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
)");
}

TEST_F(Registry, MoveWithRedrawScrollsAndWithoutPaints) {
  registerPages(host, {{4, 1, 1}});
  GLT_SetPos(host.doc, 0, 0, 1);
  EXPECT_EQ(host.count("PageViewScrollToPoint"), 1U);
  EXPECT_EQ(host.count("PageViewPaintSelection"), 0U);
  host.clear();
  GLT_SetPos(host.doc, 0, 0, 0);
  EXPECT_EQ(host.count("PageViewScrollToPoint"), 0U);
  EXPECT_EQ(host.count("PageViewPaintSelection"), 1U);
}

// Failures

TEST_F(Registry, FailureWhileMappingShowsNothing) {
  host.raiseIn("DocOpenPage", errBadPage);
  const ListOwner list({{4, 1, 1}});
  EXPECT_EQ(GLT_RegisterHLL(host.doc, list, 1, nullptr, nullptr, 1, nullptr), 1);
  EXPECT_EQ(highlightsOf(GLT_GetHLL(host.doc)), (Highlights{{4, 1, 1}}));
  EXPECT_EQ(host.count("PageViewHighlightText"), 0U);
  EXPECT_EQ(host.frames(), 0U);
}

} // namespace
