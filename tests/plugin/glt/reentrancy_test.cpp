// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Re-entrancy: the registrants' procedures, and host calls that end in another plug-in or in a draw, may register,
// unregister and jump for the document that is being worked on. Nothing may be freed twice or used after it is freed
// (which the sanitizers detect), no registrant may be notified twice that its list is destroyed, and the last action
// must hold.
//
// It has over 500 lines because all of its tests share the registrants and the table of actions at its beginning.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <span>
#include <utility>

#include "plugin/glt/glt.h"
#include "plugin/glt/miAssoc.h"
#include "plugin/pi/miPI.h"
#include "tests/host/Faults.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"
#include "tests/plugin/glt/positions.h"
#include "tests/support/FailingMemory.h"

using namespace tavrel;

namespace {

/// What the procedures do, once, and their notifications.
std::function<void()> s_inNewProc, s_inJumpProc;
std::map<const void *, int> s_retired; ///< by user data, which is a registration's identity
int s_jumpsNotified;
int s_identities[64];
size_t s_nextIdentity;

void newProc(Doc document, HLL *list, void *userData) {
  ++s_retired[userData];
  EXPECT_EQ(GLT_GetHLL(document), list) << "it is still the registered one";
  if (const auto action = std::exchange(s_inNewProc, nullptr)) action();
}

void jumpProc(Doc /*document*/, HLL * /*list*/, uint32_t /*code*/, void * /*userData*/) {
  ++s_jumpsNotified;
  if (const auto action = std::exchange(s_inJumpProc, nullptr)) action();
}

void forget() {
  s_inNewProc = s_inJumpProc = nullptr;
  s_retired.clear();
  s_jumpsNotified = 0;
  s_nextIdentity = 0;
}

/// Registers a new list, with a new identity.
void registerNew(RecordingHost &host, std::initializer_list<Highlight> highlights, Bool16 scroll) {
  const ListOwner list(highlights, &s_identities[s_nextIdentity++ % std::size(s_identities)]);
  GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, jumpProc, newProc, scroll, nullptr);
}

void prepare(RecordingHost &host) {
  forget();
  registerNew(host, {{2, 1, 1}, {5, 1, 1}, {5, 2, 1}, {9, 1, 1}}, 0);
  GLT_SetPos(host.doc, 1, 0, 1);
  host.reliable = {"AtomFromString"}; // only looks a name up
  host.clear();
}

/// An action on the document; alone, or during another.
struct Action {
  const char *name;
  void (*run)(RecordingHost &host);
};

/// These call newProc.
constexpr Action retiring[] = {
    {"Register",
     [](RecordingHost &host) {
       registerNew(host, {{7, 1, 1}, {8, 1, 1}}, 1);
     }},
    {"RegisterWithoutScrolling",
     [](RecordingHost &host) {
       registerNew(host, {{3, 1, 1}}, 0);
     }},
    {"RegisterTheRegisteredList",
     [](RecordingHost &host) {
       if (HLL *list = GLT_GetHLL(host.doc))
         GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, jumpProc, nullptr, 1, nullptr);
     }},
    {"RegisterAnEmptyList", [](RecordingHost &host) { registerNew(host, {}, 1); }},
    {"Unregister", [](RecordingHost &host) { GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc)); }},
    {"CloseTheDocument", [](RecordingHost &host) { miPIDocDidClose(host.doc, nullptr); }},
};

/// These call jumpProc.
constexpr Action jumping[] = {
    {"JumpNext", [](RecordingHost &host) { GLT_Jump(host.doc, GLT_JUMP_NEXT); }},
    {"JumpPrev", [](RecordingHost &host) { GLT_Jump(host.doc, GLT_JUMP_PREV); }},
    {"JumpLast", [](RecordingHost &host) { GLT_Jump(host.doc, GLT_JUMP_LAST); }},
    {"JumpPrevFromTheStart",
     [](RecordingHost &host) {
       GLT_SetPos(host.doc, 0, 0, 1);
       host.shownPage = 6;
       GLT_Jump(host.doc, GLT_JUMP_PREV);
     }},
    {"JumpNextFromTheEnd",
     [](RecordingHost &host) {
       GLT_Jump(host.doc, GLT_JUMP_LAST);
       host.shownPage = 1;
       GLT_Jump(host.doc, GLT_JUMP_NEXT);
     }},
    {"PressNext", [](RecordingHost &) { GLTNextExecProc(nullptr, nullptr); }},
};

constexpr Action others[] = {
    {"MoveAndScroll", [](RecordingHost &host) { GLT_SetPos(host.doc, 2, 0, 1); }},
    {"MoveAndPaint", [](RecordingHost &host) { GLT_SetPos(host.doc, 0, 0, 0); }},
    {"DrawAPage", [](RecordingHost &host) { miPIPageViewDraw(host.view, nullptr); }},
    {"AskWhetherEnabled",
     [](RecordingHost &) {
       GLTPrevEnabledProc(nullptr, nullptr);
       GLTNextEnabledProc(nullptr, nullptr);
     }},
};

std::vector<Action> allActions() {
  std::vector<Action> actions;
  for (const auto group :
       {std::span<const Action>(retiring), std::span<const Action>(jumping), std::span<const Action>(others)})
    actions.insert(actions.end(), group.begin(), group.end());
  return actions;
}

/// At most one record, which can be read and unregistered; at most one notification that each list is destroyed.
void expectSound(RecordingHost &host, const std::string & /*call*/) {
  EXPECT_TRUE(s_AssocList == nullptr || s_AssocList->next == nullptr) << "two records for one document";
  if (HLL *list = GLT_GetHLL(host.doc)) {
    highlightsOf(list);
    GLT_UnregisterHLL(host.doc, list);
  }
  EXPECT_EQ(s_AssocList, nullptr);
  for (const auto &[userData, times] : s_retired)
    EXPECT_EQ(times, 1) << "list " << static_cast<const int *>(userData) - s_identities;
}

void PrintTo(const Action &action, std::ostream *out) { *out << action.name; }

std::string actionName(const testing::TestParamInfo<Action> &info) { return info.param.name; }

/// An action during which every other is done.
class During : public testing::TestWithParam<Action> {};

TEST_P(During, AnyHostCallAnyActionIsSafe) {
  for (const Action &inner : allActions()) {
    SCOPED_TRACE(inner.name);
    EXPECT_GT(interruptEveryCall({prepare, GetParam().run, expectSound}, inner.run), 0U);
  }
}

/// Does the outer action, and the inner one in a registrant's procedure.
void nest(const Action &outer, const Action &inner, std::function<void()> &procedure) {
  SCOPED_TRACE(inner.name);
  RecordingHost host;
  prepare(host);
  procedure = [&] { inner.run(host); };
  outer.run(host);
  EXPECT_FALSE(procedure) << "it was called";
  procedure = nullptr;
  EXPECT_EQ(host.frames(), 0U);
  EXPECT_EQ(host.brackets, 0);
  EXPECT_EQ(host.openPages.size(), 0U);
  expectSound(host, "");
}

class DuringNewProc : public testing::TestWithParam<Action> {};
class DuringJumpProc : public testing::TestWithParam<Action> {};

TEST_P(DuringNewProc, AnyActionIsSafe) {
  for (const Action &inner : allActions())
    nest(GetParam(), inner, s_inNewProc);
}

TEST_P(DuringJumpProc, AnyActionIsSafe) {
  for (const Action &inner : allActions())
    nest(GetParam(), inner, s_inJumpProc);
}

INSTANTIATE_TEST_SUITE_P(Reentrancy, During, testing::ValuesIn(allActions()), actionName);
INSTANTIATE_TEST_SUITE_P(Reentrancy, DuringNewProc, testing::ValuesIn(retiring), actionName);
INSTANTIATE_TEST_SUITE_P(Reentrancy, DuringJumpProc, testing::ValuesIn(jumping), actionName);

// What holds afterwards

class Afterwards : public testing::Test {
protected:
  Afterwards() { prepare(host); }
  Highlights registered() { return highlightsOf(GLT_GetHLL(host.doc)); }
  RecordingHost host;
};

TEST_F(Afterwards, ListRegisteredAgainIsTheSameButForItsIdentity) {
  const Highlights before = registered();
  HLL *list = GLT_GetHLL(host.doc);
  GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  EXPECT_EQ(registered(), before);
  EXPECT_EQ(s_retired, (std::map<const void *, int>{{&s_identities[0], 1}}));
}

TEST_F(Afterwards, JumpWhoseRegistrantUnregistersShowsNothing) {
  s_inJumpProc = [this] { GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc)); };
  GLT_Jump(host.doc, GLT_JUMP_NEXT);
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
  EXPECT_EQ(host.count("PageViewBeginBatch"), 1U) << "for the unregistering alone";
  EXPECT_EQ(host.count("DocOpenPage"), 0U);
}

TEST_F(Afterwards, JumpWhoseRegistrantRegistersLeavesTheNewPosition) {
  s_inJumpProc = [this] { registerNew(host, {{7, 1, 1}, {8, 1, 1}}, 0); };
  GLT_Jump(host.doc, GLT_JUMP_NEXT);
  EXPECT_EQ(registered(), (Highlights{{7, 1, 1}, {8, 1, 1}}));
  EXPECT_EQ(positionOf(host.doc), (Position{0, 0}));
  EXPECT_EQ(host.count("PageViewBeginBatch"), 0U) << "nothing is shown for the destroyed list";
}

TEST_F(Afterwards, JumpWhoseRegistrantJumpsShowsThatPosition) {
  s_inJumpProc = [this] { GLT_Jump(host.doc, GLT_JUMP_FIRST); };
  GLT_Jump(host.doc, GLT_JUMP_NEXT);
  EXPECT_EQ(positionOf(host.doc), (Position{0, 0}));
  EXPECT_EQ(host.shownPage, 2);
  EXPECT_EQ(s_jumpsNotified, 2);
}

TEST_F(Afterwards, ScanStopsAtTheMatchWhoseRegistrantUnregisters) {
  GLT_SetPos(host.doc, 0, 0, 1);
  host.shownPage = 9;
  s_inJumpProc = [this] { GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc)); };
  GLT_Jump(host.doc, GLT_JUMP_PREV);
  EXPECT_EQ(s_jumpsNotified, 1) << "pages 2 and 5 match";
}

TEST_F(Afterwards, UnregisteringWhoseRegistrantRegistersLeavesTheNewList) {
  s_inNewProc = [this] { registerNew(host, {{7, 1, 1}}, 0); };
  GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc));
  EXPECT_EQ(registered(), (Highlights{{7, 1, 1}}));
}

// A registration stops when another one is made for its document meanwhile, which is later. It continues when the one
// before it is only unregistered meanwhile.

TEST_F(Afterwards, RegistrationWhosePredecessorRegistersLeavesThatList) {
  s_inNewProc = [this] { registerNew(host, {{7, 1, 1}}, 0); };
  registerNew(host, {{3, 1, 1}}, 0);
  EXPECT_EQ(registered(), (Highlights{{7, 1, 1}}));
  EXPECT_EQ(s_retired.at(&s_identities[0]), 1) << "notified once";
}

TEST_F(Afterwards, RegistrationWhosePredecessorUnregistersAndRegistersLeavesThatList) {
  s_inNewProc = [this] {
    GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc));
    registerNew(host, {{7, 1, 1}}, 0);
  };
  registerNew(host, {{3, 1, 1}}, 0);
  EXPECT_EQ(registered(), (Highlights{{7, 1, 1}}));
}

TEST_F(Afterwards, RegistrationThatAnotherReplacesReturnsOneAndCallsTheHostNoMore) {
  const ListOwner list({{3, 1, 1}});
  s_inNewProc = [this] {
    registerNew(host, {{7, 1, 1}}, 0);
    host.clear();
  };
  EXPECT_EQ(GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr), 1);
  EXPECT_EQ(host.story(), "\n");
}

TEST_F(Afterwards, RegistrationWhosePredecessorUnregistersContinues) {
  const ListOwner list({{3, 1, 1}});
  s_inNewProc = [this] {
    GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc));
    host.clear();
  };
  EXPECT_EQ(GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 1, nullptr), 1);
  EXPECT_EQ(host.story(), R"(
Kernel.AtomFromString("GLT")
Kernel.AtomFromString("GLT")
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.DocGetPageView(doc)
TavrelView.PageViewShowPage(view, 3)
TavrelView.DocGetModelDoc(doc)
DocModel.DocOpenPage(modelDoc, 3)
DocModel.SelectionFromCharRanges(page3, *, 1)
Kernel.PopExceptionFrame()
DocModel.PageClose(page3)
TavrelView.PageViewHighlightText(view, selection)
TavrelView.PageViewBeginBatch(view)
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
DocModel.SelectionPageNumber(selection)
TavrelView.PageViewShowPage(view, 3)
TavrelView.PageViewGetVisibleRect(view, *)
DocModel.SelectionBounds(selection, *)
TavrelView.PageViewGetPageTransform(view, *)
TavrelSupport.TransformFixedRect(*, *, *)
TavrelView.PageViewScrollToPoint(view, -150, 310)
Kernel.PopExceptionFrame()
TavrelView.PageViewEndBatch(view)
)");
  EXPECT_EQ(registered(), (Highlights{{3, 1, 1}}));
  EXPECT_EQ(s_retired.at(&s_identities[0]), 1) << "notified once";
}

TEST_F(Afterwards, RegistrationWhosePredecessorTheHostUnregistersContinues) {
  // From the look-up of the one before to the key of the new one; without frames, and without the look-up by newProc.
  for (const size_t call : {2, 4, 5, 6, 7, 8, 10, 11, 14, 15, 16, 17}) {
    SCOPED_TRACE(call);
    miPIDocDidClose(host.doc, nullptr);
    prepare(host);
    host.reliable.clear();
    host.during(call, [this] { miPIDocDidClose(host.doc, nullptr); });
    registerNew(host, {{3, 1, 1}}, 0);
    EXPECT_EQ(registered(), (Highlights{{3, 1, 1}}));
    EXPECT_EQ(s_retired.at(&s_identities[0]), 1) << "notified once";
  }
}

TEST_F(Afterwards, RegisteredListThatItsRegistrantUnregistersIsNotRegisteredAgain) {
  HLL *list = GLT_GetHLL(host.doc);
  s_inNewProc = [this] { GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc)); };
  EXPECT_EQ(GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr), 1);
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr) << "it was destroyed before it could be copied";
}

/// The host calls of a registration that make the keys: that of the filing, and over another registration that of the
/// removal, too.
struct Filing {
  bool overAnother;
  size_t call;
};
constexpr Filing filings[] = {{false, 3}, {false, 4}, {true, 14}, {true, 15}, {true, 16}, {true, 17}};

TEST_F(Afterwards, RegistrationMadeWhileAnotherIsFiledIsKept) {
  miPIDocDidClose(host.doc, nullptr);
  for (const auto &[overAnother, call] : filings) {
    SCOPED_TRACE(call);
    forget();
    const size_t blocks = liveBlocks();
    if (overAnother) registerNew(host, {{2, 1, 1}}, 0);
    host.reliable.clear();
    host.clear();
    host.during(call, [this] { registerNew(host, {{7, 1, 1}}, 0); });
    const ListOwner list({{3, 1, 1}});
    EXPECT_EQ(GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, newProc, 0, nullptr), 1);
    EXPECT_EQ(registered(), (Highlights{{7, 1, 1}}));
    EXPECT_EQ(s_retired.size(), overAnother ? 1U : 0U) << "neither of the two";
    GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc));
    EXPECT_EQ(s_retired.size(), overAnother ? 2U : 1U) << "the one that was kept";
    EXPECT_EQ(liveBlocks(), blocks + 3) << "only this test's list";
  }
}

TEST_F(Afterwards, RegistrationContinuesWhereTheOneMadeWhileItIsFiledIsUnregistered) {
  miPIDocDidClose(host.doc, nullptr);
  for (const auto &[overAnother, call] : filings) {
    SCOPED_TRACE(call);
    forget();
    if (overAnother) registerNew(host, {{2, 1, 1}}, 0);
    host.reliable.clear();
    host.clear();
    host.during(call, [this] {
      registerNew(host, {{7, 1, 1}}, 0);
      GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc));
    });
    registerNew(host, {{3, 1, 1}}, 0);
    EXPECT_EQ(registered(), (Highlights{{3, 1, 1}}));
    miPIDocDidClose(host.doc, nullptr);
  }
}

TEST_F(Afterwards, GivenListIsStillTheCallersWhereAnotherRegistrationIsKept) {
  HLL *const list = GLT_NewHLL(nullptr);
  HLL_AddHL(list, 3, 1, 1);
  HLL *given = list;
  s_inNewProc = [this] { registerNew(host, {{7, 1, 1}}, 0); };
  EXPECT_EQ(GLTRegisterGivenHLL(host.doc, given, {GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr, 2}), 1);
  EXPECT_EQ(given, list);
  GLT_DeleteHLL(list);
  EXPECT_EQ(registered(), (Highlights{{7, 1, 1}}));
}

TEST_F(Afterwards, RegistrationNestedInThatOfAGivenListCopiesItsList) {
  HLL *given = GLT_NewHLL(nullptr);
  HLL_AddHL(given, 3, 1, 1);
  const ListOwner list({{7, 1, 1}});
  host.reliable.clear();
  host.clear();
  host.during(0, [&] { GLT_RegisterHLL(host.otherDoc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr); });
  GLTRegisterGivenHLL(host.doc, given, {GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr, 2});
  EXPECT_EQ(given, nullptr);
  EXPECT_NE(GLT_GetHLL(host.otherDoc), list.list());
  EXPECT_EQ(highlightsOf(GLT_GetHLL(host.otherDoc)), (Highlights{{7, 1, 1}}));
  EXPECT_EQ(registered(), (Highlights{{3, 1, 1}}));
}

// A registrant's procedure that raises.

void raisingNewProc(Doc /*document*/, HLL * /*list*/, void *userData) {
  ++s_retired[userData];
  Kernel::RaiseError(errGeneric);
}

TEST_F(Afterwards, RegistrantThatRaisesIsNotifiedOnce) {
  const ListOwner list({{3, 1, 1}}, &s_identities[1]);
  GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, raisingNewProc, 0, nullptr);
  EXPECT_FALSE(host.run([this] { GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc)); }));
  EXPECT_EQ(registered(), (Highlights{{3, 1, 1}})) << "the raise ended the unregistering";
  EXPECT_TRUE(host.run([this] { registerNew(host, {{7, 1, 1}}, 0); }));
  EXPECT_EQ(registered(), (Highlights{{7, 1, 1}}));
  EXPECT_EQ(s_retired.at(&s_identities[1]), 1);
}

TEST_F(Afterwards, RegistrationWhosePredecessorJumpsContinues) {
  s_inNewProc = [this] { GLT_Jump(host.doc, GLT_JUMP_LAST); };
  registerNew(host, {{3, 1, 1}}, 0);
  EXPECT_EQ(registered(), (Highlights{{3, 1, 1}}));
  EXPECT_EQ(positionOf(host.doc), (Position{0, 0}));
}

TEST_F(Afterwards, ListDestroyedWhileItsRemovalAsksForTheKeyIsDestroyedOnce) {
  HLL *list = GLT_GetHLL(host.doc);
  host.clear();
  host.reliable.clear();
  host.during(4, [&] { GLT_UnregisterHLL(host.doc, list); });
  GLT_UnregisterHLL(host.doc, list);
  EXPECT_EQ(s_retired.at(&s_identities[0]), 1);
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
}

TEST_F(Afterwards, RegistrationHoldsItsListThoughAnotherFailedMeanwhile) {
  s_inNewProc = [this, list = GLT_GetHLL(host.doc)] {
    host.reliable.clear();
    host.clear();
    host.raiseAt(12); // when the list that is registered again is about to be removed
    EXPECT_FALSE(
        host.run([&] { GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr); }));
    host.noFaults();
  };
  registerNew(host, {{3, 1, 1}}, 0);
  EXPECT_EQ(highlightsOf(GLT_GetHLL(host.doc)), (Highlights{{3, 1, 1}}));
}

// A registered list that is registered for another document, too, and whose first registration is removed meanwhile.

TEST_F(Afterwards, ListThatTheHostUnregistersIsNotRegisteredElsewhere) {
  const HLL *list = GLT_GetHLL(host.doc);
  host.clear();
  host.during(0, [this] { miPIDocDidClose(host.doc, nullptr); });
  EXPECT_EQ(GLT_RegisterHLL(host.otherDoc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr), 1);
  EXPECT_EQ(s_retired.at(&s_identities[0]), 1) << "it is destroyed";
  EXPECT_EQ(GLT_GetHLL(host.otherDoc), nullptr);
}

TEST_F(Afterwards, ListThatTheHostUnregistersReplacesNoOther) {
  const HLL *list = GLT_GetHLL(host.doc);
  const ListOwner other({{3, 1, 1}});
  GLT_RegisterHLL(host.otherDoc, other, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  host.clear();
  host.during(0, [this] { miPIDocDidClose(host.doc, nullptr); });
  EXPECT_EQ(GLT_RegisterHLL(host.otherDoc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr), 1);
  EXPECT_EQ(highlightsOf(GLT_GetHLL(host.otherDoc)), (Highlights{{3, 1, 1}}));
}

TEST_F(Afterwards, ListThatTheOtherRegistrantUnregistersIsNotRegisteredThere) {
  const ListOwner other({{3, 1, 1}}, &s_identities[1]);
  GLT_RegisterHLL(host.otherDoc, other, GLT_CHARACTER_OFFSETS, nullptr, newProc, 0, nullptr);
  s_inNewProc = [this] { miPIDocDidClose(host.doc, nullptr); };
  EXPECT_EQ(GLT_RegisterHLL(host.otherDoc, GLT_GetHLL(host.doc), GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr),
            1);
  EXPECT_EQ(s_retired.at(&s_identities[0]), 1) << "it is destroyed";
  EXPECT_EQ(GLT_GetHLL(host.otherDoc), nullptr);
}

TEST_F(Afterwards, RegistrationThatTheHostUnregistersIsNotScrolledTo) {
  miPIDocDidClose(host.doc, nullptr);
  host.answer(TavrelView::PageViewHighlightText, std::function([this](PageView, TextSelection) {
                if (HLL *list = GLT_GetHLL(host.doc)) GLT_UnregisterHLL(host.doc, list);
              }));
  registerNew(host, {{3, 1, 1}}, 1);
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
  EXPECT_EQ(host.count("PageViewScrollToPoint"), 0U);
}

TEST_F(Afterwards, MoveThatTheHostUnregistersWhenAskedForItsColourPaintsNothing) {
  host.answer(TavrelView::PageViewFetchDrawColor,
              std::function([this](PageView, ColorValue *) { GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc)); }));
  GLT_SetPos(host.doc, 2, 0, 0);
  EXPECT_EQ(host.count("PageViewFetchDrawColor"), 1U);
  EXPECT_EQ(host.count("PageViewPaintSelection"), 0U);
}

TEST_F(Afterwards, MoveThatTheHostUnregistersWhileItIsMappedShowsNothing) {
  host.answer(DocModel::PageClose, std::function([this](Page page) {
                host.openPages.erase(page);
                GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc));
              }));
  GLT_SetPos(host.doc, 2, 0, 1);
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
  EXPECT_EQ(host.count("PageViewScrollToPoint"), 0U);
}

/// A host that draws immediately what it is asked to show.
void drawAtOnce(RecordingHost &host) {
  host.answer(TavrelView::PageViewShowPage, std::function([&host](PageView view, int32_t page) {
                if (std::exchange(host.shownPage, page) != page) miPIPageViewDraw(view, nullptr);
              }));
}

TEST_F(Afterwards, PageDrawnWhileItIsTurnedToIsPaintedAndScrolledTo) {
  drawAtOnce(host);
  GLT_Jump(host.doc, GLT_JUMP_NEXT);
  EXPECT_EQ(positionOf(host.doc), (Position{2, 0}));
  EXPECT_EQ(host.count("PageViewPaintSelection"), 1U);
  EXPECT_EQ(host.count("PageViewScrollToPoint"), 1U);
}

TEST_F(Afterwards, PageDrawnWhileItIsTurnedBackToSetsItsFirstWord) {
  drawAtOnce(host);
  GLT_SetPos(host.doc, 2, 0, 0);
  GLT_Jump(host.doc, GLT_JUMP_PREV);
  EXPECT_EQ(positionOf(host.doc), (Position{1, 0})) << "and not the last word, which the jump had set";
}

} // namespace
