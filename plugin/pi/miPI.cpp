// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Export, initialisation and termination, in the order in which the host drives them, and the document notifications.
// No frames here: a host call that raises ends the callback and propagates to the host's frame.
#include "plugin/pi/miPI.h"

#include <cstdlib>

#include "plugin/glt/glt.h"
#include "plugin/glt/gltHFT.h"
#include "plugin/input/gltAux.h"
#include "plugin/md/mdUtils.h"
#include "plugin/pi/mdPI.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

GlobalData *gData;

uint32_t ExtensionExportHFTs() {
  gData = static_cast<GlobalData *>(calloc(1, sizeof(GlobalData)));
  if (gData == nullptr) return 0;
  GLTExportHFTServer(); // on failure no client gets the table; everything else works
  return 1;
}

uint32_t ExtensionInit() {
  if (!mdInit()) return 0;
  miPIRegisterForNotifications();
  return gltRegisterAuxdata();
}

uint32_t ExtensionTerm() {
  mdTerm();
  if (gData != nullptr) {
    if (gData->prevBitmap != 0) mdReleaseBitmap(gData->prevBitmap);
    if (gData->nextBitmap != 0) mdReleaseBitmap(gData->nextBitmap);
  }
  free(gData); // the pointer keeps its value: nothing reads it after the unload callback
  return gltUnregisterAuxdata();
}

void miPIRegisterForNotifications() {
  TavrelView::RegisterNotification(notifyDocDidOpen, gExtensionID,
                                   Kernel::CreateCallback(gExtensionID, entryOf(miPIDocDidOpen)), nullptr);
  TavrelView::RegisterNotification(notifyDocDidClose, gExtensionID,
                                   Kernel::CreateCallback(gExtensionID, entryOf(miPIDocDidClose)), nullptr);
  TavrelView::RegisterPageDrawProc(Kernel::CreateCallback(gExtensionID, entryOf(miPIPageViewDraw)), nullptr);
}

void miPIDocDidOpen(Doc /*document*/, void * /*clientData*/) {}

void miPIDocDidClose(Doc document, void * /*clientData*/) {
  HLL *list = GLT_GetHLL(document);
  if (list != nullptr) GLT_UnregisterHLL(document, list);
}

void miPIPageViewDraw(PageView view, void * /*clientData*/) {
  Doc document = TavrelView::PageViewGetDoc(view);
  if (document == nullptr) return;
  GLTRecord *record = GLTFindRecord(document);
  if (record == nullptr || record->hll == nullptr) return;
  const GLTRecordRef ref = GLTRefer(document, record);
  const int32_t page = TavrelView::PageViewGetPageNum(view);
  record = GLTStillRegistered(ref);
  uint32_t pageIndex = 0;
  if (record != nullptr && HLL_FindPagePos(record->hll, page, &pageIndex)) GLT_SetPos(document, pageIndex, 0, 0);
}
