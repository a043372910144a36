// A plug-in that marks on the scroll bar which pages of a document have hits, after every page drawn. It knows the
// interface in sdk/ alone, and the hits through the table "TavrelGLT", whoever found them; without that table it does
// nothing.
//
// Owns the table pointers and one array of page numbers. Host calls may raise through any of these functions: no object
// here has a destructor, and the array is a static.
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
int32_t *s_pages; ///< of the list looked at last
size_t s_capacity;

template <typename Function> Callback callbackOf(Function function) {
  return Kernel::CreateCallback(s_self, entryOf(function));
}

bool hasRoom(size_t count) {
  if (count <= s_capacity) return true;
  auto *pages = static_cast<int32_t *>(realloc(s_pages, count * sizeof *s_pages));
  if (pages == nullptr) return false;
  s_pages = pages;
  s_capacity = count;
  return true;
}

/// Puts the numbers of those of the first `documentPages` pages that have a hit into the array and returns how many
/// they are: none where memory is exhausted. A file may name pages that the document lacks, in any number.
uint32_t collectPages(const HLL *list, int32_t documentPages) {
  const uint32_t pageCount = list == nullptr ? 0 : TavrelGLT::HLL_GetPageCount(list);
  if (documentPages <= 0 || !hasRoom(std::min(pageCount, static_cast<uint32_t>(documentPages)))) return 0;
  uint32_t count = 0;
  for (uint32_t i = 0; i < pageCount && count < static_cast<uint32_t>(documentPages); ++i) {
    int32_t page = -1;
    uint16_t pos = 0, len = 0;
    if (TavrelGLT::HLL_GetHL(list, i, 0, &page, &pos, &len) && page >= 0 && page < documentPages)
      s_pages[count++] = page;
  }
  return count;
}

/// A list may get hits at any time and keep its address: it is read anew every time. The host knows equal pages.
void pageDrawn(PageView view, void * /*clientData*/) {
  Doc document = TavrelView::PageViewGetDoc(view);
  if (document == nullptr) return;
  const uint32_t count = collectPages(TavrelGLT::GLT_GetHLL(document), TavrelView::PageViewGetPageCount(view));
  TavrelView::DocMarkPages(s_self, document, s_pages, count);
}

/// Draw procedures are called in the order in which they came, and a plug-in may give a document its hits in its own.
/// When the first document opens, all plug-ins have registered theirs; a second registration is none.
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
  gTavrelViewHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelView"), tavrelViewVersion);
  if (gTavrelViewHFT == nullptr) return 0;
  record->handshake = callbackOf(shakeHands);
  return 1;
}

} // namespace

TAVREL_PLUGIN_VERSION("1.0");

// The exported `main`, under another name in the source because it has three arguments; protected, or the `main` of the
// program that loads it would take its place.
extern "C" [[gnu::visibility("protected")]] uint32_t hitPagesMain(uint32_t hostVersion, uint32_t *outVersion,
                                                                  void **outSetupProc) __asm__("main");

extern "C" uint32_t hitPagesMain(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc) {
  *outVersion = std::min(hostVersion, handshakeVersion);
  *outSetupProc = functionOf<void *>(entryOf(setUp));
  return 1;
}
