// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// A plug-in that marks the pages with hits beside the scroll bar after each page is drawn. It uses only the interface
// in sdk/, and reads the hits through the table "TavrelGLT"; without that table it does nothing.
//
// Owns the table pointers and one array of page numbers. Host calls may raise through any of these functions, so no
// object here has a destructor, and the array is a static variable.
#include <algorithm>
#include <cstdlib>

#include "tavrel/Kernel.h"
#include "tavrel/TavrelGLT.h"
#include "tavrel/TavrelView.h"
#include "tavrel/plugin.h"

using namespace tavrel;

HFT gKernelHFT, gTavrelViewHFT, gTavrelGLTHFT;

namespace {

ExtensionID s_self;
int32_t *s_pages; ///< of the list that was read last
size_t s_capacity;

template <typename Function> Callback callbackOf(Function function) {
  return Kernel::CreateCallback(s_self, entryOf(function));
}

bool ensureCapacity(size_t count) {
  if (count <= s_capacity) return true;
  auto *pages = static_cast<int32_t *>(realloc(s_pages, count * sizeof *s_pages));
  if (pages == nullptr) return false;
  s_pages = pages;
  s_capacity = count;
  return true;
}

/// Stores the numbers of the document's pages with hits in the array and returns how many there are; 0 if memory is
/// exhausted. A file may name any number of pages that the document lacks.
uint32_t collectPages(const HLL *list, int32_t documentPages) {
  const uint32_t pageCount = list == nullptr ? 0 : TavrelGLT::HLL_GetPageCount(list);
  if (documentPages <= 0 || !ensureCapacity(std::min(pageCount, static_cast<uint32_t>(documentPages)))) return 0;
  uint32_t count = 0;
  for (uint32_t i = 0; i < pageCount && count < static_cast<uint32_t>(documentPages); ++i) {
    int32_t page = -1;
    uint16_t pos = 0, len = 0;
    if (TavrelGLT::HLL_GetHL(list, i, 0, &page, &pos, &len) && page >= 0 && page < documentPages)
      s_pages[count++] = page;
  }
  return count;
}

/// The list is read again each time, because hits may be added to it at any time. The host detects equal pages.
void pageDrawn(PageView view, void * /*clientData*/) {
  Doc document = TavrelView::PageViewGetDoc(view);
  if (document == nullptr) return;
  const uint32_t count = collectPages(TavrelGLT::GLT_GetHLL(document), TavrelView::PageViewGetPageCount(view));
  TavrelView::DocMarkPages(s_self, document, s_pages, count);
}

/// Draw procedures are called in order of registration, and another plug-in's one may register hits. When the first
/// document opens, all plug-ins have registered theirs, so this one runs last. A repeated registration has no effect.
void documentOpened(Doc /*document*/, void * /*clientData*/) {
  TavrelView::RegisterPageDrawProc(callbackOf(pageDrawn), nullptr);
}

uint32_t importTables() {
  gTavrelGLTHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelGLT"), tavrelGLTVersion);
  return 1;
}

uint32_t initialise() {
  if (gTavrelGLTHFT == nullptr) return 1;
  TavrelView::RegisterNotification(notifyDocDidOpen, s_self, callbackOf(documentOpened), nullptr);
  return 1;
}

uint32_t unload() {
  free(s_pages);
  s_pages = nullptr;
  s_capacity = 0;
  return 1;
}

uint32_t shakeHands(uint32_t /*version*/, HandshakeRecord *record) {
  record->name = Kernel::AtomFromString("HitPages");
  record->importTables = callbackOf(importTables);
  record->initialise = callbackOf(initialise);
  record->unload = callbackOf(unload);
  return 1;
}

uint32_t setUp(uint32_t version, SetupRecord *record) {
  if (version != handshakeVersion) return 0;
  s_self = record->extension;
  gKernelHFT = record->kernel;
  gTavrelViewHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelView"), tavrelViewMarksVersion);
  if (gTavrelViewHFT == nullptr) return 0;
  record->handshake = callbackOf(shakeHands);
  return 1;
}

} // namespace

TAVREL_PLUGIN_VERSION("1.0");

// The exported `main`. It has another name in the source because it has three arguments. Its visibility is protected:
// otherwise the `main` of the program would be used instead.
extern "C" [[gnu::visibility("protected")]] uint32_t hitPagesMain(uint32_t hostVersion, uint32_t *outVersion,
                                                                  void **outSetupProc) __asm__("main");

extern "C" uint32_t hitPagesMain(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc) {
  *outVersion = std::min(hostVersion, handshakeVersion);
  *outSetupProc = functionOf<void *>(entryOf(setUp));
  return 1;
}
