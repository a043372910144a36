// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Moves a document's current highlight, notifies the registrant, and shows the new position.
#include "plugin/glt/glt.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

namespace {

/// One jump in progress. A registrant's procedure may unregister the record at any time.
struct Jump {
  Doc document;
  GLTRecord *record;
  GLTRecordRef ref;
};

/// Calls the registrant's jump procedure. False when the record is no longer the document's: the jump ends there.
bool notify(Jump &jump, uint32_t code) {
  GLTRecord *record = jump.record;
  if (record->jumpProc == nullptr) return true;
  record->jumpProc(jump.document, record->hll, code, HLL_GetData(record->hll));
  jump.record = GLTStillRegistered(jump.ref);
  return jump.record != nullptr;
}

void show(const Jump &jump) { GLTShowHighlights(jump.document, jump.record, 1); }

void moveNotifyShow(Jump &jump, uint32_t pageIndex, uint16_t wordIndex, uint32_t code) {
  jump.record->curPage = pageIndex;
  jump.record->curWord = wordIndex;
  if (notify(jump, code)) show(jump);
}

/// The number of highlights at a page index; 0 beyond the list's end.
uint16_t countAt(const GLTRecord *record, uint32_t pageIndex) {
  const HLP *page = HLLPageAt(record->hll, pageIndex);
  return page != nullptr ? page->count : 0;
}

/// The word index of a page's last highlight; 65535 on a page without any, which becomes the current word index.
uint16_t lastWord(const GLTRecord *record, uint32_t pageIndex) {
  return static_cast<uint16_t>(countAt(record, pageIndex) - 1);
}

/// At either end of the list with all highlights shown: moves to a list page that lies beyond the page on screen.
/// Visits all pages from the current one on, and moves to and notifies of every match, so that the last match is shown.
/// Both directions notify with the code NEXT.
template <typename Beyond> void returnToPage(Jump &jump, Beyond beyond) {
  const int32_t shown = TavrelView::PageViewGetPageNum(TavrelView::DocGetPageView(jump.document));
  jump.record = GLTStillRegistered(jump.ref);
  if (jump.record == nullptr) return;
  for (uint32_t i = jump.record->curPage; i < HLL_GetPageCount(jump.record->hll); ++i)
    if (beyond(shown, jump.record->hll->pages[i].page)) {
      jump.record->curPage = i;
      jump.record->curWord = 0;
      if (!notify(jump, GLT_JUMP_NEXT)) return;
    }
  show(jump);
}

void next(Jump &jump) {
  const GLTRecord *record = jump.record;
  // Tested before the increment: the word index reaches the count itself before the page changes.
  if (record->viewMode == GLT_VIEW_ONE && record->curWord < countAt(record, record->curPage))
    return moveNotifyShow(jump, record->curPage, static_cast<uint16_t>(record->curWord + 1), GLT_JUMP_NEXT);
  if (record->curPage + 1 < HLL_GetPageCount(record->hll))
    return moveNotifyShow(jump, record->curPage + 1, 0, GLT_JUMP_NEXT);
  if (record->viewMode != GLT_VIEW_ALL) {
    notify(jump, GLT_JUMP_NEXT_BEYOND);
    return;
  }
  returnToPage(jump, [](int32_t shown, int32_t page) { return shown < page; });
}

void previous(Jump &jump) {
  const GLTRecord *record = jump.record;
  // Prev steps by words in every view mode except GLT_VIEW_ONE, where Next does.
  if (record->viewMode != GLT_VIEW_ONE && record->curWord != 0)
    return moveNotifyShow(jump, record->curPage, static_cast<uint16_t>(record->curWord - 1), GLT_JUMP_PREV);
  if (record->curPage != 0)
    return moveNotifyShow(jump, record->curPage - 1, lastWord(record, record->curPage - 1), GLT_JUMP_PREV);
  if (record->viewMode != GLT_VIEW_ALL) {
    notify(jump, GLT_JUMP_PREV_BEYOND);
    return;
  }
  returnToPage(jump, [](int32_t shown, int32_t page) { return shown > page; });
}

} // namespace

void GLT_Jump(Doc document, uint32_t code) {
  GLTRecord *record = GLTFindRecord(document);
  if (record == nullptr) return;
  Jump jump = {document, record, GLTRefer(document, record)};
  switch (code) {
  case GLT_JUMP_NEXT:
    return next(jump);
  case GLT_JUMP_PREV:
    return previous(jump);
  case GLT_JUMP_NEXT_BEYOND:
  case GLT_JUMP_PREV_BEYOND:
    notify(jump, code);
    return;
  case GLT_JUMP_FIRST:
    return moveNotifyShow(jump, 0, 0, code);
  case GLT_JUMP_LAST: {
    const uint32_t last = HLL_GetPageCount(record->hll) - 1;
    return moveNotifyShow(jump, last, record->viewMode == GLT_VIEW_ONE ? lastWord(record, last) : uint16_t{0}, code);
  }
  default:
    show(jump);
  }
}
