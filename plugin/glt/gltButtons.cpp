// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The Prev and Next buttons of the host's tool bar: created once, inserted after Find Again, and their enabled tests.
#include "plugin/glt/glt.h"
#include "plugin/md/mdUtils.h"
#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

Callback pGLTPrevExecProc, pGLTPrevEnabledProc, pGLTNextExecProc, pGLTNextEnabledProc;

namespace {

/// What a button is made of, and where it is kept.
struct ButtonSpec {
  const char *name;
  uint16_t bitmapId;
  uint16_t tipId;
  Bitmap GlobalData::*bitmap;
  ToolButton GlobalData::*button;
  ButtonActionProc action;
  Callback *actionCallback;
  ButtonTestProc test;
  Callback *testCallback;
};

/// The keys of the tips are exchanged: "helpNext" is the key of the Prev button's tip, and users' resource files
/// override it by that key.
constexpr ButtonSpec prevSpec = {"TavrelGLT:Prev",        bitmapPrev,      stringHelpPrev,    &GlobalData::prevBitmap,
                                 &GlobalData::prevButton, GLTPrevExecProc, &pGLTPrevExecProc, GLTPrevEnabledProc,
                                 &pGLTPrevEnabledProc};
constexpr ButtonSpec nextSpec = {"TavrelGLT:Next",        bitmapNext,      stringHelpNext,    &GlobalData::nextBitmap,
                                 &GlobalData::nextButton, GLTNextExecProc, &pGLTNextExecProc, GLTNextEnabledProc,
                                 &pGLTNextEnabledProc};

constexpr uint16_t tipSize = 130;

void createOnce(const ButtonSpec &spec) {
  if (gData->*spec.button != nullptr) return;
  gData->*spec.bitmap = mdGetBitmap(spec.bitmapId);
  ToolButton button = TavrelView::ToolButtonCreate(Kernel::AtomFromString(spec.name), gData->*spec.bitmap, 0, 0);
  gData->*spec.button = button;
  *spec.actionCallback = Kernel::CreateCallback(gExtensionID, entryOf(spec.action));
  TavrelView::ToolButtonAttachAction(button, *spec.actionCallback, nullptr);
  *spec.testCallback = Kernel::CreateCallback(gExtensionID, entryOf(spec.test));
  TavrelView::ToolButtonAttachEnabledTest(button, *spec.testCallback, nullptr);
  char tip[tipSize];
  TavrelView::ToolButtonAttachTip(button, mdGetString(spec.tipId, tip, sizeof tip));
}

/// The input of an enabled test: the front document's record and the page on screen.
struct Front {
  const GLTRecord *record; ///< null: disabled
  int32_t page;
};

Front front() {
  Doc document = TavrelView::GetFrontDoc();
  GLTRecord *record = GLTFindRecord(document);
  if (record == nullptr) return {nullptr, 0};
  const GLTRecordRef ref = GLTRefer(document, record);
  PageView view = document != nullptr ? TavrelView::DocGetPageView(document) : nullptr;
  const int32_t page = view != nullptr ? TavrelView::PageViewGetPageNum(view) : 0;
  return {GLTStillRegistered(ref), page};
}

} // namespace

Bool16 GLT_ShowButtons(Bool16 show, ToolButton anchor) {
  ToolBar bar = TavrelView::GetToolBar();
  if (bar == nullptr || gData == nullptr) return 0;
  if (show == 0 || gData->buttonsShown != 0) {
    // Nothing sets the flag, so that buttons on the tool bar stay there.
    if (gData->buttonsShown == 0) return 1;
    if (gData->prevButton != nullptr) TavrelView::ToolButtonDetach(gData->prevButton);
    if (gData->nextButton != nullptr) TavrelView::ToolButtonDetach(gData->nextButton);
    gData->buttonsShown = 0;
    return 1;
  }
  if (!TavrelView::ToolBarHasSpace(bar, 2, 0)) return 0;
  if (anchor == nullptr) anchor = TavrelView::ToolBarFindButton(bar, Kernel::AtomFromString("FindAgainDialog"));
  createOnce(prevSpec);
  createOnce(nextSpec);
  TavrelView::ToolButtonSetAttribute(gData->prevButton, buttonAlsoInBrowser);
  TavrelView::ToolButtonSetAttribute(gData->nextButton, buttonAlsoInBrowser);
  TavrelView::ToolBarInsertButton(bar, gData->prevButton, 0, anchor);
  TavrelView::ToolBarInsertButton(bar, gData->nextButton, 0, gData->prevButton);
  return 1;
}

void GLTPrevExecProc(ToolButton /*button*/, void * /*clientData*/) {
  Doc document = TavrelView::GetFrontDoc();
  const uint32_t code = (TavrelView::GetModifierKeyState() & modifierShift) != 0 ? GLT_JUMP_PREV_BEYOND : GLT_JUMP_PREV;
  if (document != nullptr) GLT_Jump(document, code);
}

void GLTNextExecProc(ToolButton /*button*/, void * /*clientData*/) {
  Doc document = TavrelView::GetFrontDoc();
  const uint32_t code = (TavrelView::GetModifierKeyState() & modifierShift) != 0 ? GLT_JUMP_NEXT_BEYOND : GLT_JUMP_NEXT;
  if (document != nullptr) GLT_Jump(document, code);
}

Bool16 GLTPrevEnabledProc(ToolButton /*button*/, void * /*clientData*/) {
  const Front at = front();
  const GLTRecord *record = at.record;
  if (record == nullptr) return 0;
  if (record->curPage != 0) return 1;
  if (record->viewMode == GLT_VIEW_ONE) return record->curWord != 0;
  if (record->viewMode != GLT_VIEW_ALL) return 0;
  for (uint32_t i = 0; i < HLL_GetPageCount(record->hll); ++i)
    if (record->hll->pages[i].page < at.page) return 1;
  return 0;
}

Bool16 GLTNextEnabledProc(ToolButton /*button*/, void * /*clientData*/) {
  const Front at = front();
  const GLTRecord *record = at.record;
  if (record == nullptr) return 0;
  // Unsigned, so that a list without pages enables Next.
  if (record->curPage < HLL_GetPageCount(record->hll) - 1) return 1;
  if (record->viewMode == GLT_VIEW_ONE) {
    const HLP *page = HLLPageAt(record->hll, record->curPage);
    return int{record->curWord} < (page != nullptr ? int{page->count} : 0) - 1;
  }
  if (record->viewMode != GLT_VIEW_ALL) return 0;
  for (uint32_t i = record->curPage; i < HLL_GetPageCount(record->hll); ++i)
    if (record->hll->pages[i].page > at.page) return 1;
  return 0;
}
