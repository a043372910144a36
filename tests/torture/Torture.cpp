// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The rounds of a scenario, and the checks after each.
#include "tests/torture/Torture.h"

#include <gmock/gmock.h>

#include <set>
#include <sstream>

#include "plugin/glt/miAssoc.h"
#include "plugin/input/gltAux.h"
#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tests/host/Faults.h"
#include "tests/plugin/glt/lists.h"
#include "tests/support/FailingMemory.h"

using namespace tavrel;
using testing::AnyOf;

namespace torture {

namespace {

std::vector<HLL *> s_clientLists;
bool s_terminated, s_isActing;

/// The invariants of every list. A page's positions are unique unless they were translated: a missing word leaves an
/// entry untranslated.
void expectSound(const HLL *list, bool positionsAreUnique) {
  if (list == nullptr) return;
  ASSERT_LE(list->pageCount, list->pageCapacity);
  std::set<int32_t> pages;
  uint32_t stored = 0;
  for (uint32_t i = 0; i < list->pageCount; ++i) {
    const HLP &page = list->pages[i];
    EXPECT_TRUE(pages.insert(page.page).second) << "page " << page.page << " twice";
    ASSERT_LE(page.count, page.capacity);
    std::set<uint16_t> positions;
    for (uint16_t k = 0; k < page.count; ++k)
      EXPECT_TRUE(positions.insert(page.words[k].pos).second || !positionsAreUnique)
          << "position " << page.words[k].pos << " twice";
    stored += page.count;
  }
  EXPECT_GE(list->wordCount, stored);
}

std::string text(const Highlights &highlights) {
  std::ostringstream out;
  for (const Highlight &highlight : highlights)
    out << highlight;
  return out.str();
}

/// The trace's calls with a visible effect. Clears the trace.
std::string takeVisibleCalls(RecordingHost &host) {
  static const std::set<std::string> visible = {
      "PageViewShowPage",      "PageViewScrollToPoint",  "PageViewApplyDrawColor",   "PageViewRefreshArea",
      "PageViewHighlightText", "PageViewPaintSelection", "ToolBarUpdateButtonStates"};
  std::string lines;
  for (const std::string &call : host.trace) {
    const size_t dot = call.find('.') + 1;
    if (visible.contains(call.substr(dot, call.find('(') - dot))) lines += call + "\n";
  }
  host.clear();
  return lines;
}

/// A smoke run: the host sets up the plug-in (again, where that failed), a file arrives, its page is drawn, the user
/// steps through the hits, the document is closed. Returns what happened, as a text.
std::string smokeRun(RecordingHost &host) {
  host.drawColor = {1, {0, 0, 0, 0}};
  host.shownPage = 0;
  host.frontDoc = host.doc;
  host.clear();
  std::string story;
  const auto step = [&](const char *what, const std::function<void()> &action) {
    const bool done = host.run(action);
    story += std::string(what) + (done ? "\n" : ": raised\n") + takeVisibleCalls(host);
  };
  SetupRecord record = {handshakeVersion, 77, host.kernelTable(), nullptr};
  step("set-up", [&] { PISetupSDK(handshakeVersion, &record); });
  host.run([&] { GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc)); });
  host.clear();

  static const std::string file = "<XML> <Body Units=characters color=00FF00 mode=active version=2> <highlights> "
                                  "<loc pg=1 pos=10 len=5> <loc pg=1 pos=20 len=5> <loc pg=4 pos=3 len=2> "
                                  "</highlights> </Body> </XML>";
  step("file", [&] { registerGLT(host.doc, file.data(), static_cast<uint32_t>(file.size())); });
  story += text(highlightsOf(GLT_GetHLL(host.doc))) + " mode " + std::to_string(GLT_GetViewMode(host.doc)) + "\n";
  host.shownPage = 1;
  step("draw", [&] { miPIPageViewDraw(host.view, nullptr); });
  for (const uint32_t code : {GLT_JUMP_NEXT, GLT_JUMP_LAST, GLT_JUMP_FIRST, GLT_JUMP_PREV}) {
    step("jump", [&] { GLT_Jump(host.doc, code); });
    uint32_t page = 0;
    uint16_t word = 0;
    GLT_GetPos(host.doc, &page, &word);
    story += "at " + std::to_string(page) + ", " + std::to_string(word) + ", prev " +
             std::to_string(GLTPrevEnabledProc(nullptr, nullptr)) + ", next " +
             std::to_string(GLTNextEnabledProc(nullptr, nullptr)) + "\n";
  }
  step("close", [&] { miPIDocDidClose(host.doc, nullptr); });
  EXPECT_EQ(GLT_GetHLL(host.doc), nullptr);
  return story;
}

const std::string &smokeRunWithoutFault() {
  static const std::string story = [] {
    RecordingHost host;
    return smokeRun(host);
  }();
  return story;
}

/// Frees everything that is still reachable.
void release(RecordingHost &host) {
  s_isActing = false;
  for (Doc document : {host.doc, host.otherDoc})
    host.run([&] { GLT_UnregisterHLL(document, GLT_GetHLL(document)); });
  for (HLL *list : s_clientLists)
    GLT_DeleteHLL(list);
  s_clientLists.clear();
  if (!s_terminated && gData != nullptr) host.run([] { ExtensionTerm(); });
  gData = nullptr;
}

/// One round: the state before it, and whether the scenario reached its end.
struct Round {
  size_t blocks = 0;
  PageView view = nullptr;
  bool finished = false;
};

void expectInvariants(RecordingHost &host, const Scenario &scenario, const Round &round, bool withoutMemory) {
  s_isActing = false;
  const bool raised = host.raises != 0;
  // A raise leaves a page and brackets open (gltDisplay.cpp); the host closes both.
  EXPECT_LE(host.openPages.size(), raised ? 1U : 0U);
  EXPECT_LE(host.finders.size(), raised ? 1U : 0U);
  EXPECT_LE(host.brackets, raised ? 2 : 0);
  EXPECT_GE(host.brackets, 0);
  for (const AssocEntry *entry = s_AssocList; entry != nullptr; entry = entry->next) {
    const auto *record = static_cast<const GLTRecord *>(entry->data);
    expectSound(record->hll, true);
    const uint32_t pages = HLL_GetPageCount(record->hll);
    EXPECT_TRUE(pages == 0 || record->curPage < pages) << record->curPage << " is the current page of " << pages;
  }
  for (const HLL *list : s_clientLists)
    expectSound(list, !scenario.translates);
  if (scenario.check) scenario.check(host);
  host.openPages.clear();
  host.finders.clear();
  host.brackets = 0;
  host.view = round.view;

  EXPECT_EQ(smokeRun(host), smokeRunWithoutFault());
  release(host);
  EXPECT_EQ(s_AssocList, nullptr);
  EXPECT_EQ(blocksFreedTwice(), 0U);
  Loss additional = {};
  if (withoutMemory) additional = scenario.withoutMemory;
  if (!round.finished) additional = scenario.afterRaise;
  const Loss &usual = scenario.always;
  const size_t hostBlocks = host.blocks.size(), before = round.blocks + hostBlocks;
  EXPECT_THAT(hostBlocks, AnyOf(0U, usual.hostBlocks, usual.hostBlocks + additional.hostBlocks))
      << "lost blocks of the host's";
  EXPECT_THAT(liveBlocks(), AnyOf(before, before + usual.blocks, before + usual.blocks + additional.blocks))
      << "lost blocks, or freed blocks that it had not allocated";
}

} // namespace

Count torture(const Scenario &scenario) {
  smokeRunWithoutFault();
  Round round;
  FaultTest test;
  test.prepare = [&](RecordingHost &host) {
    round = {liveBlocks(), host.view, false};
    s_terminated = false;
    if (scenario.prepare) scenario.prepare(host);
  };
  test.act = [&](RecordingHost &host) {
    s_isActing = true;
    scenario.act(host);
    round.finished = true;
  };
  test.check = [&](RecordingHost &host, const std::string &call) {
    expectInvariants(host, scenario, round, call.empty());
  };
  test.finish = release;
  test.leavesPagesOpen = test.leavesBlocks = test.leavesBrackets = true; // checked above

  Count count;
  {
    RecordingHost host;
    test.prepare(host);
    host.clear();
    const FailingMemory memory(SIZE_MAX);
    EXPECT_TRUE(host.run([&] { test.act(host); })) << "a raise without a fault";
    count.calls = host.calls;
    count.allocations = memory.allocations();
    expectInvariants(host, scenario, round, false);
  }
  count.faults = failAtEveryCall(test) + raiseAtEveryCall(test) + raiseAtEveryCall(test, errNone) +
                 raiseFromEveryCall(test) + failAtEveryAllocation(test) + failFromEveryAllocation(test);
  return count;
}

HLL *clientList() {
  HLL *list = GLT_NewHLL(nullptr);
  if (list != nullptr) s_clientLists.push_back(list);
  return list;
}

void noteTermination() { s_terminated = true; }

bool isActing() { return s_isActing; }

void jumpProc(Doc /*document*/, HLL * /*list*/, uint32_t /*code*/, void * /*userData*/) {}

void newProc(Doc /*document*/, HLL * /*list*/, void * /*userData*/) {}

HLL *sixHighlights() {
  HLL *list = clientList();
  for (const Highlight &h : Highlights{{0, 10, 4}, {0, 20, 4}, {2, 10, 4}, {2, 20, 4}, {2, 30, 4}, {3, 15, 4}})
    HLL_AddHL(list, h.page, h.pos, h.len);
  return list;
}

void registerSix(RecordingHost &host) {
  GLT_RegisterHLL(host.doc, sixHighlights(), GLT_CHARACTER_OFFSETS, jumpProc, newProc, 0, nullptr);
  host.clear();
}

} // namespace torture
