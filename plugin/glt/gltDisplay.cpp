// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Puts the registered highlights on the screen, in two phases: first the view is turned and scrolled to them, then,
// when the host draws the page, they are painted.
#include "plugin/glt/glt.h"
#include "plugin/pi/PIFrame.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

namespace {

/// How many of a page's highlights are marked, always from its first one on.
int32_t entriesShown(int32_t viewMode, uint16_t count) {
  switch (viewMode) {
  case GLT_VIEW_ALL:
    return count;
  case GLT_VIEW_ONE:           // the page's first highlight, whichever the current one is
    return count != 0 ? 1 : 0; // a page without highlights has no array, and the host would read its first entry
  default:
    return 0;
  }
}

TextSelection selectionOn(Page page, const GLTRecord *record, const HL *words, int32_t entries) {
  if (record->offsetUnits == GLT_CHARACTER_OFFSETS) return DocModel::SelectionFromCharRanges(page, words, entries);
  return DocModel::SelectionFromWordRanges(page, words, entries, record->wordFinderVersion);
}

void paint(const GLTRecordRef &ref, PageView view, TextSelection selection) {
  ColorValue saved;
  TavrelView::PageViewFetchDrawColor(view, &saved);
  const GLTRecord *record = GLTStillRegistered(ref);
  if (record == nullptr) return;
  const ColorValue color = record->color;
  TavrelView::PageViewApplyDrawColor(view, &color);
  TavrelView::PageViewPaintSelection(view, selection);
  TavrelView::PageViewApplyDrawColor(view, &saved);
}

/// Shows a record in an open bracket.
void showRecord(const GLTRecordRef &ref, PageView view, Bool16 scroll) {
  GLTRecord *record = GLTStillRegistered(ref);
  if (record == nullptr) return;
  if (HLL_GetWordCount(record->hll) == 0) {
    TavrelView::PageViewShowPage(view, 0);
    return;
  }
  if (record->viewMode == GLT_VIEW_NONE) {
    const HLP *page = HLLPageAt(record->hll, record->curPage);
    if (page != nullptr) TavrelView::PageViewShowPage(view, page->page);
    return;
  }
  TextSelection selection = GLTMapHLLToViewer(ref.document, record);
  record = GLTStillRegistered(ref);
  if (selection == nullptr || record == nullptr) return;
  if (scroll != 0)
    GLTScrollTo(view, selection);
  else
    paint(ref, view, selection);
}

} // namespace

TextSelection GLTMapHLLToViewer(Doc document, GLTRecord *record) {
  const GLTRecordRef ref = GLTRefer(document, record);
  const uint32_t pageIndex = record->curPage;
  const HLP *current = HLLPageAt(record->hll, pageIndex);
  if (current == nullptr) return nullptr;
  const int32_t pageNumber = current->page;
  const int32_t entries = entriesShown(record->viewMode, current->count);
  Page page = nullptr;
  TextSelection selection = nullptr;
  const bool done = PIProtect([&] {
    PageView view = TavrelView::DocGetPageView(document);
    if (view != nullptr) TavrelView::PageViewShowPage(view, pageNumber);
    page = DocModel::DocOpenPage(TavrelView::DocGetModelDoc(document), pageNumber);
    const GLTRecord *still = GLTStillRegistered(ref);
    if (still != nullptr) selection = selectionOn(page, still, still->hll->pages[pageIndex].words, entries);
  });
  // After a raise with a code an opened page stays open; after a raise without a code it is closed.
  if (!done && (Kernel::GetExceptionCode() != errNone || page == nullptr)) return nullptr;
  DocModel::PageClose(page);
  return done ? selection : nullptr;
}

void GLTShowHighlights(Doc document, GLTRecord *record, Bool16 scroll) {
  const GLTRecordRef ref = GLTRefer(document, record);
  PIProtect([&] {
    PageView view = TavrelView::DocGetPageView(document);
    TavrelView::PageViewBeginBatch(view); // also without a view: the host handles null
    if (view != nullptr && record == nullptr) TavrelView::PageViewRefreshArea(view, nullptr);
    if (view != nullptr && record != nullptr) showRecord(ref, view, scroll);
    TavrelView::PageViewEndBatch(view);
  });
  // After a raise the bracket stays open; the host closes it.
}
