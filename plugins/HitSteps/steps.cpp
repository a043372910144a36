// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// A current hit is kept as the number of its page, its index there and its position: lists are registered and removed
// at any time, and so it is compared with the list before each use. Calls of the highlight plug-in may call other
// plug-ins, so after them everything is looked up again.
#include "steps.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "hits.h"
#include "sight.h"

using namespace tavrel;

namespace {

ExtensionID s_self;
Callback s_row, s_chosen;

struct Current {
  Doc document;
  int32_t page; ///< -1: there is no current hit
  uint32_t word;
  uint16_t pos;
  Units units;
  const HLL *list; ///< the one that was read last; only compared
  bool isNew;      ///< the list, which has not been drawn yet
  bool isUnseen;   ///< the hit: the user has gone to its page, and it may be out of sight
  uint32_t listed; ///< the fingerprint of the hits in the side panel's list; 0: there is none
};

Current *s_currents; ///< one for each document with hits
size_t s_count, s_capacity;

/// Null if memory is exhausted. Valid until the next call for another document.
Current *currentOf(Doc document) {
  for (size_t i = 0; i < s_count; ++i)
    if (s_currents[i].document == document) return &s_currents[i];
  if (s_count == s_capacity) {
    const size_t capacity = std::max<size_t>(8, 2 * s_capacity);
    auto *grown = static_cast<Current *>(realloc(s_currents, capacity * sizeof *s_currents));
    if (grown == nullptr) return nullptr;
    s_currents = grown;
    s_capacity = capacity;
  }
  s_currents[s_count] = {document, -1, 0, 0, unitCharacters, nullptr, false, false, 0};
  return &s_currents[s_count++];
}

/// What a step and a drawing start from.
struct Scene {
  PageView view;
  const HLL *list;
  Hits hits;
  const HitPage *page; ///< the hits of the page shown, or null
  Current *current;    ///< on that page, if it has hits
};

void setCurrent(Current *current, const HLL *list, const HitPage &page, uint32_t word) {
  TextRange range = {0, 0};
  rangeOf(list, page.index, word, &range);
  current->page = page.number;
  current->word = word;
  current->pos = range.pos;
}

bool isStillThere(const Current &current, const HLL *list, const HitPage &page) {
  TextRange range;
  return current.page == page.number && rangeOf(list, page.index, current.word, &range) && range.pos == current.pos;
}

/// False for a document without a view or hits. The current hit follows the page shown.
bool readScene(Doc document, Scene *scene) {
  scene->list = document == nullptr ? nullptr : TavrelGLT::GLT_GetHLL(document);
  if (scene->list == nullptr) return false;
  scene->view = TavrelView::DocGetPageView(document);
  scene->hits = readHits(scene->list, TavrelView::PageViewGetPageCount(scene->view));
  scene->current = currentOf(document);
  if (scene->view == nullptr || scene->hits.hitCount == 0 || scene->current == nullptr) return false;
  scene->page = pageOfHits(scene->hits, TavrelView::PageViewGetPageNum(scene->view));
  Current &current = *scene->current;
  if (current.list != scene->list) current.isNew = true;
  current.list = scene->list;
  if (scene->page == nullptr || isStillThere(current, scene->list, *scene->page)) return true;
  if (current.page == scene->page->number) current.isNew = true; // at the address of the one before
  setCurrent(&current, scene->list, *scene->page, 0);
  current.isUnseen = true;
  return true;
}

HitPlace placeOf(const Scene &scene, const HitPage &page, uint32_t word) {
  HitPlace place = {scene.current->document, page.number, {0, 0}, scene.current->units};
  rangeOf(scene.list, page.index, word, &place.range);
  return place;
}

/// The button is greyed at the last hit and its key does nothing there, so the text says why.
void describe(const Scene &scene, char *text, size_t size) {
  const Hits &hits = scene.hits;
  if (scene.page == nullptr) {
    snprintf(text, size, "%u %s on %u %s, none on this one", hits.hitCount, hits.hitCount == 1 ? "hit" : "hits",
             hits.pageCount, hits.pageCount == 1 ? "page" : "pages");
    return;
  }
  const uint32_t number = scene.page->first + scene.current->word + 1;
  const bool isLast = number == hits.hitCount && number > 1 && TavrelView::PageViewIsInWindow(scene.view) != 0;
  snprintf(text, size, "hit %u of %u, page %u of %u%s", number, hits.hitCount,
           static_cast<uint32_t>(scene.page - hits.pages) + 1, hits.pageCount, isLast ? ": the last hit" : "");
}

/// Of a document none of whose hits is on its pages: a list may be another document's.
void describeStrayHits(Doc document, char *text, size_t size) {
  const HLL *list = TavrelGLT::GLT_GetHLL(document);
  PageView view = TavrelView::DocGetPageView(document);
  if (list == nullptr || view == nullptr || readHits(list, TavrelView::PageViewGetPageCount(view)).hitCount > 0) return;
  const uint32_t count = TavrelGLT::HLL_GetWordCount(list);
  if (count > 0) snprintf(text, size, "%u %s, none on the pages of this document", count, count == 1 ? "hit" : "hits");
}

/// The status line is the front document's. Without a list its text is removed.
void showStatus(Doc document, const Scene *scene) {
  if (document == nullptr || document != TavrelView::GetFrontDoc()) return;
  char text[100] = "";
  if (scene != nullptr)
    describe(*scene, text, sizeof text);
  else
    describeStrayHits(document, text, sizeof text);
  TavrelView::SetStatusText(s_self, text);
}

/// The list beside the page has all hits and follows the current one.
void showInList(const Scene &scene) {
  Current &current = *scene.current;
  const uint32_t fingerprint = scene.hits.fingerprint ^ static_cast<uint32_t>(current.units);
  if (current.listed != fingerprint)
    TavrelView::DocSetList(s_self, current.document, "Hits", scene.hits.hitCount, s_row, s_chosen);
  current.listed = fingerprint;
  TavrelView::DocSetListRow(s_self, current.document, scene.page == nullptr ? noRow : scene.page->first + current.word);
}

void removeList(Doc document) {
  Current *const end = s_currents + s_count;
  Current *const current = std::find_if(s_currents, end, [=](const Current &one) { return one.document == document; });
  if (current == end || current->listed == 0) return;
  TavrelView::DocSetList(s_self, document, nullptr, 0, nullptr, nullptr);
  current->listed = 0;
}

/// Shows a hit of the page shown as the current one. False if the page cannot be read, unless `anyway`.
bool makeCurrent(const Scene &scene, uint32_t word, bool anyway) {
  if (!bringIntoSight(scene.view, placeOf(scene, *scene.page, word)) && !anyway) return false;
  setCurrent(scene.current, scene.list, *scene.page, word);
  scene.current->isNew = scene.current->isUnseen = false;
  TavrelView::PageViewRefreshArea(scene.view, nullptr);
  showStatus(scene.current->document, &scene);
  showInList(scene);
  return true;
}

bool isAt(Doc document, const HLL *list, uint32_t pageIndex) {
  uint32_t page = 0;
  uint16_t word = 0;
  return TavrelGLT::GLT_GetHLL(document) == list && TavrelGLT::GLT_GetPos(document, &page, &word) != 0 &&
         page == pageIndex;
}

/// Has the highlight plug-in make one step to a page of the list. It steps by pages in some modes and directions, and
/// by words in the others: it is put where its next step is to the page.
void jump(Doc document, const HLL *list, uint32_t pageIndex, int direction) {
  if (direction > 0 ? pageIndex == 0 : pageIndex + 1 == TavrelGLT::HLL_GetPageCount(list))
    return TavrelGLT::GLT_Jump(document, direction > 0 ? GLT_JUMP_FIRST : GLT_JUMP_LAST);
  const bool byWords = (TavrelGLT::GLT_GetViewMode(document) == GLT_VIEW_ONE) == (direction > 0);
  const uint32_t before = direction > 0 ? pageIndex - 1 : pageIndex + 1;
  uint32_t page = 0;
  uint16_t word = 0;
  TavrelGLT::GLT_GetPos(document, &page, &word);
  const uint32_t last = direction > 0 ? hitsOn(list, before) : 0;
  if (page != before || (byWords && word != last))
    TavrelGLT::GLT_SetPos(document, before,
                          static_cast<uint16_t>(direction > 0 && byWords ? std::max(last, 1U) - 1 : 0), 1);
  const uint32_t code = direction > 0 ? GLT_JUMP_NEXT : GLT_JUMP_PREV;
  // In the mode for one hit, a step forwards goes behind the page's last hit first.
  for (int steps = 0; steps < 2 && isAt(document, list, before); ++steps)
    TavrelGLT::GLT_Jump(document, code);
  if (TavrelGLT::GLT_GetHLL(document) == list && !isAt(document, list, pageIndex))
    TavrelGLT::GLT_SetPos(document, pageIndex, 0, 1); // a page of the list before it has no hits
}

/// The units of the list's positions, from what the highlight plug-in has painted on the page being drawn.
Units unitsOf(const Scene &scene, int32_t mode) {
  const uint32_t count = mode == GLT_VIEW_ALL ? scene.page->count : 1;
  const TextRange *ranges = readRanges(scene.list, scene.page->index, count);
  if (ranges == nullptr) return scene.current->units;
  return learnUnits(scene.view, scene.current->document, scene.page->number, ranges, count, scene.current->units);
}

} // namespace

void startSteps(ExtensionID self, Callback row, Callback chosen) {
  s_self = self;
  s_row = row;
  s_chosen = chosen;
}

void endSteps() {
  free(s_currents);
  s_currents = nullptr;
  s_count = s_capacity = 0;
  freeHits();
}

void step(Doc document, int direction) {
  Scene scene = {};
  if (!readScene(document, &scene)) return;
  const int32_t shown = TavrelView::PageViewGetPageNum(scene.view);
  const HitPage *beside = pageBeside(scene.hits, shown, direction);
  if (scene.page != nullptr && direction > 0 && scene.current->isUnseen) {
    scene.current->isUnseen = false;
    if (!isInSight(scene.view, placeOf(scene, *scene.page, scene.current->word))) {
      makeCurrent(scene, scene.current->word, true);
      return;
    }
  }
  if (scene.page != nullptr) {
    const int64_t word = int64_t{scene.current->word} + direction;
    const bool onPage = word >= 0 && word < scene.page->count;
    // A damaged page is left by one step, if there is another one.
    if (onPage && makeCurrent(scene, static_cast<uint32_t>(word), beside == nullptr)) return;
  }
  if (beside == nullptr) return;
  const int32_t target = beside->number;
  TavrelView::PageViewBeginBatch(scene.view);
  jump(document, scene.list, beside->index, direction);
  Scene after = {};
  if (readScene(document, &after) && after.page != nullptr && after.page->number == target)
    makeCurrent(after, direction > 0 ? 0 : after.page->count - 1, true);
  TavrelView::PageViewEndBatch(scene.view);
}

bool canStep(Doc document, int direction) {
  Scene scene = {};
  if (!readScene(document, &scene)) return false;
  if (scene.page != nullptr && direction > 0 && scene.current->isUnseen) return true;
  if (scene.page != nullptr && (direction > 0 ? scene.current->word + 1 < scene.page->count : scene.current->word > 0))
    return true;
  return pageBeside(scene.hits, TavrelView::PageViewGetPageNum(scene.view), direction) != nullptr;
}

void goToFirstHitOfPage(Doc document) {
  Scene scene = {};
  if (readScene(document, &scene) && scene.page != nullptr) makeCurrent(scene, 0, true);
}

void showNumber(Doc document) {
  Scene scene = {};
  if (!readScene(document, &scene)) return;
  showInList(scene);
  showStatus(document, &scene);
}

void showCurrentHit(PageView view) {
  Doc document = TavrelView::PageViewGetDoc(view);
  Scene scene = {};
  if (!readScene(document, &scene)) {
    removeList(document);
    return showStatus(document, nullptr);
  }
  const int32_t mode = TavrelGLT::GLT_GetViewMode(document);
  const bool inWindow = TavrelView::PageViewIsInWindow(view) != 0;
  bool cameIntoSight = false;
  if (scene.page != nullptr && inWindow) {
    const auto before = scene.current->units;
    scene.current->units = unitsOf(scene, mode);
    const HitPlace place = placeOf(scene, *scene.page, scene.current->word);
    // What was brought into sight before the units were known may have been another place.
    if (scene.current->isNew || scene.current->units != before) {
      bringIntoSight(view, place);
      scene.current->isUnseen = false;
    }
    cameIntoSight = scene.current->isUnseen && isInSight(view, place);
    if (cameIntoSight) scene.current->isUnseen = false;
    if (mode != GLT_VIEW_NONE) outline(view, place);
  }
  scene.current->isNew = false;
  if (inWindow) showInList(scene);
  showStatus(document, &scene);
  // Last, because the tests of buttons look up the scene anew: there may be nothing to step to any more.
  if (cameIntoSight) TavrelView::ToolBarUpdateButtonStates(TavrelView::GetToolBar());
}

void writeRow(Doc document, uint32_t row, ListRow *out) {
  const HLL *list = TavrelGLT::GLT_GetHLL(document);
  const Hits hits = lastHits(list, TavrelView::PageViewGetPageCount(TavrelView::DocGetPageView(document)));
  const HitPage *page = pageOfHit(hits, row);
  const Current *current = currentOf(document);
  if (page == nullptr || current == nullptr) return;
  HitPlace place = {document, page->number, {0, 0}, current->units};
  if (!rangeOf(list, page->index, row - page->first, &place.range)) return;
  writeLine(place, out);
}

void goToRow(Doc document, uint32_t row) {
  Scene scene = {};
  if (!readScene(document, &scene)) return;
  const HitPage *page = pageOfHit(scene.hits, row);
  if (page == nullptr) return;
  const int32_t number = page->number;
  const uint32_t word = row - page->first;
  PageView view = scene.view;
  TavrelView::PageViewBeginBatch(view);
  if (scene.page != page) TavrelGLT::GLT_SetPos(document, page->index, 0, 1);
  if (readScene(document, &scene) && scene.page != nullptr && scene.page->number == number && word < scene.page->count)
    makeCurrent(scene, word, true);
  TavrelView::PageViewEndBatch(view);
}

void forgetHits(Doc document) {
  s_count = static_cast<size_t>(
      std::remove_if(s_currents, s_currents + s_count, [=](const Current &one) { return one.document == document; }) -
      s_currents);
  if (document == TavrelView::GetFrontDoc()) TavrelView::SetStatusText(s_self, nullptr);
}
