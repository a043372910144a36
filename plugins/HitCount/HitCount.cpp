// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// A plug-in that shows the number of the current hit on the status line after each page is drawn: "hit 7 of 42, page 2
// of 6". It uses only the interface in sdk/, and reads the hits through the table "TavrelGLT"; without that table it
// does nothing.
//
// Owns only the table pointers. Host calls may raise through any of these functions, so no object here has a
// destructor.
#include <algorithm>
#include <cstdio>

#include "tavrel/Kernel.h"
#include "tavrel/TavrelGLT.h"
#include "tavrel/TavrelView.h"
#include "tavrel/plugin.h"

using namespace tavrel;

HFT gKernelHFT, gTavrelViewHFT, gTavrelGLTHFT;

namespace {

ExtensionID s_self;

template <typename Function> Callback callbackOf(Function function) {
  return Kernel::CreateCallback(s_self, entryOf(function));
}

bool hasHit(const HLL *list, uint32_t pageIndex, uint32_t wordIndex) {
  int32_t page = 0;
  uint16_t pos = 0, len = 0;
  return TavrelGLT::HLL_GetHL(list, pageIndex, static_cast<uint16_t>(wordIndex), &page, &pos, &len) != 0;
}

/// A page's number of hits. The table has no operation for it. A binary search finds it: a list may have thousands of
/// pages, and this runs after each draw.
uint32_t hitsOn(const HLL *list, uint32_t pageIndex) {
  uint32_t count = 0;
  for (uint32_t step = 0x8000; step != 0; step /= 2)
    if (hasHit(list, pageIndex, count + step - 1)) count += step;
  return count;
}

/// The part of a list that can be shown: the hits on pages that the document has. A file may name other pages.
struct Shown {
  uint32_t pages, hits;
};

Shown operator+(const Shown &a, const Shown &b) { return {a.pages + b.pages, a.hits + b.hits}; }

/// The part of these pages of the list that can be shown.
Shown shownBetween(const HLL *list, uint32_t first, uint32_t end, int32_t documentPages) {
  Shown shown = {0, 0};
  for (uint32_t i = first; i < end; ++i) {
    int32_t page = 0;
    uint16_t pos = 0, len = 0;
    if (!TavrelGLT::HLL_GetHL(list, i, 0, &page, &pos, &len) || page < 0 || page >= documentPages) continue;
    shown = shown + Shown{1, hitsOn(list, i)};
  }
  return shown;
}

/// Writes an empty text if there is no current hit, or if it is on a page that the document lacks.
void describePosition(Doc document, PageView view, char *text, size_t size) {
  text[0] = 0;
  const HLL *list = TavrelGLT::GLT_GetHLL(document);
  uint32_t pageIndex = 0;
  uint16_t wordIndex = 0;
  if (list == nullptr || !TavrelGLT::GLT_GetPos(document, &pageIndex, &wordIndex)) return;
  const int32_t documentPages = TavrelView::PageViewGetPageCount(view);
  const Shown current = shownBetween(list, pageIndex, pageIndex + 1, documentPages);
  if (current.hits == 0) return;
  const Shown before = shownBetween(list, 0, pageIndex, documentPages);
  const Shown after = shownBetween(list, pageIndex + 1, TavrelGLT::HLL_GetPageCount(list), documentPages);
  const Shown all = before + current + after;
  // Stepping by words moves one index after a page's last hit before it turns the page.
  const uint32_t number = before.hits + std::min(uint32_t{wordIndex} + 1, current.hits);
  snprintf(text, size, "hit %u of %u, page %u of %u", number, all.hits, before.pages + 1, all.pages);
}

/// The status line is the front document's.
bool isInFront(Doc document) { return document != nullptr && document == TavrelView::GetFrontDoc(); }

void pageDrawn(PageView view, void * /*clientData*/) {
  Doc document = TavrelView::PageViewGetDoc(view);
  if (!isInFront(document)) return;
  char text[100];
  describePosition(document, view, text, sizeof text);
  TavrelView::SetStatusText(s_self, text);
}

/// Draw procedures are called in order of registration, and the highlight plug-in's one changes the current hit. When
/// the first document opens, all plug-ins have registered theirs, so this one runs last. A repeated registration has no
/// effect.
void documentOpened(Doc /*document*/, void * /*clientData*/) {
  TavrelView::RegisterPageDrawProc(callbackOf(pageDrawn), nullptr);
}

void documentClosed(Doc document, void * /*clientData*/) {
  if (isInFront(document)) TavrelView::SetStatusText(s_self, nullptr);
}

uint32_t importTables() {
  gTavrelGLTHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelGLT"), tavrelGLTVersion);
  return 1;
}

uint32_t initialise() {
  if (gTavrelGLTHFT == nullptr) return 1;
  TavrelView::RegisterNotification(notifyDocDidOpen, s_self, callbackOf(documentOpened), nullptr);
  TavrelView::RegisterNotification(notifyDocDidClose, s_self, callbackOf(documentClosed), nullptr);
  return 1;
}

uint32_t shakeHands(uint32_t /*version*/, HandshakeRecord *record) {
  record->name = Kernel::AtomFromString("HitCount");
  record->importTables = callbackOf(importTables);
  record->initialise = callbackOf(initialise);
  return 1;
}

uint32_t setUp(uint32_t version, SetupRecord *record) {
  if (version != handshakeVersion) return 0;
  s_self = record->extension;
  gKernelHFT = record->kernel;
  gTavrelViewHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelView"), tavrelViewVersion);
  if (gTavrelViewHFT == nullptr) return 0;
  record->handshake = callbackOf(shakeHands);
  return 1;
}

} // namespace

TAVREL_PLUGIN_VERSION("1.1");

// The exported `main`. It has another name in the source because it has three arguments. Its visibility is protected:
// otherwise the `main` of the program would be used instead.
extern "C" [[gnu::visibility("protected")]] uint32_t hitCountMain(uint32_t hostVersion, uint32_t *outVersion,
                                                                  void **outSetupProc) __asm__("main");

extern "C" uint32_t hitCountMain(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc) {
  *outVersion = std::min(hostVersion, handshakeVersion);
  *outSetupProc = functionOf<void *>(entryOf(setUp));
  return 1;
}
