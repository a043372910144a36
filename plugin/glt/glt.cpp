// The registry: at most one record a document, filed in the association table under the atom "GLT", twice.
//
// Calls into the host and into registrants may come back here for the same document. A record is therefore known by
// its serial number, and looked at again only after GLTStillRegistered has said that it is still the one.
#include "plugin/glt/glt.h"

#include <utility>

#include "plugin/glt/miAssoc.h"
#include "plugin/util/miUtils.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

namespace {

/// A document with both its keys, each fetched anew as hosts see it.
struct DocumentKey {
  Doc document;
  Atom key1, key2;
};

/// The atom as the host gave it last: the same name has the same atom, so a look-up without a host call can use it.
Atom s_gltAtom;

uint32_t s_lastSerial;

DocumentKey fetchKey(Doc document) {
  const Atom key1 = Kernel::AtomFromString("GLT");
  const Atom key2 = Kernel::AtomFromString("GLT");
  s_gltAtom = key2;
  return {document, key1, key2};
}

uint32_t nextSerial() {
  return s_lastSerial = s_lastSerial % UINT32_MAX + 1; // never 0, which means not filed
}

constexpr ColorValue defaultColor = {colorSpaceRGB, {fixedOne, 0, 0, 0}};

/// Tells the registrant, once, that its list goes. False when meanwhile the registration has gone by itself.
bool tellNewList(Doc document, uint32_t serial, GLTRecord *record) {
  GLTNewProc newProc = record->newProc;
  if (newProc == nullptr) return true;
  record->newProc = nullptr; // a registrant that registers from here must not be told of the same list again
  newProc(document, record->hll, HLL_GetData(record->hll));
  return GLTStillRegistered(document, serial, nullptr) != nullptr;
}

/// Removes the record with its list. The host is asked for the key first: if it fails, all is as before.
void removeRecord(Doc document, uint32_t serial) {
  const DocumentKey key = fetchKey(document);
  GLTRecord *record = GLTStillRegistered(document, serial, nullptr);
  if (record == nullptr) return;
  GLT_DeleteHLL(record->hll);
  AssociateDelete(key.document, key.key1, key.key2);
}

/// Whose a list is that is to be registered: the registration's that holds it, where it came from GLT_GetHLL, or the
/// caller's own (serial 0). A registration may go while the host is called, and its list with it.
struct Holder {
  Doc document;
  uint32_t serial;
};

Holder holderOf(const HLL *list) {
  for (const AssocEntry *entry = s_AssocList; list != nullptr && entry != nullptr; entry = entry->next) {
    const auto *record = static_cast<const GLTRecord *>(entry->data);
    if (entry->size == sizeof(GLTRecord) && record->hll == list)
      return {static_cast<Doc>(entry->object), record->serial};
  }
  return {nullptr, 0};
}

bool stillThere(const Holder &holder) {
  return holder.serial == 0 || GLTStillRegistered(holder.document, holder.serial, nullptr) != nullptr;
}

/// A copy of a registered list on its way from the old record to the new one. The host is called in between, so it is
/// kept here, where the next registration finds it if that call fails.
HLL *s_carried;

/// For a registration that begins to carry: whatever an earlier one left when the host made it fail goes.
void carry(HLL *copy) {
  GLT_DeleteHLL(s_carried);
  s_carried = copy;
}

/// Takes the document's record off the screen and out of the table. Where `list`, which is about to take its place, is
/// the very list that goes, a copy is carried over and stands for it. False when the registration went by itself
/// meanwhile.
bool retire(Doc document, PageView view, GLTRecord *record, const HLL *&list) {
  const uint32_t serial = record->serial;
  TextSelection selection = GLTMapHLLToViewer(document, record);
  if (selection != nullptr) TavrelView::PageViewHighlightText(view, selection);
  record = GLTStillRegistered(document, serial, nullptr);
  if (record == nullptr || !tellNewList(document, serial, record)) return false;
  const HLL *old = GLTStillRegistered(document, serial, nullptr)->hll;
  if (list == old) {
    carry(GLT_CopyHLL(list));
    list = s_carried;
  }
  removeRecord(document, serial);
  return true;
}

/// Where the caller of the next registration has its list, if it offers it.
HLL **s_offered;

/// The new record's own copy: the list itself where it is the one carried over or offered, else a fresh one.
HLL *takeCopy(const HLL *list, HLL **own) {
  if (own != nullptr && HLLIsComplete(list)) return std::exchange(*own, nullptr);
  if (list == nullptr || list != s_carried) return GLT_CopyHLL(list);
  HLL *copy = s_carried;
  s_carried = nullptr;
  return copy;
}

} // namespace

GLTRecord *GLTFindRecord(Doc document) {
  const DocumentKey key = fetchKey(document);
  return static_cast<GLTRecord *>(AssociateFind(key.document, key.key1, key.key2));
}

GLTRecord *GLTStillRegistered(Doc document, uint32_t serial, GLTRecord *asBuilt) {
  if (serial == 0) return asBuilt;
  auto *record = static_cast<GLTRecord *>(AssociateFind(document, s_gltAtom, s_gltAtom));
  return record != nullptr && record->serial == serial ? record : nullptr;
}

Bool16 GLT_RegisterHLL(Doc document, const HLL *list, int32_t offsetUnits, GLTJumpProc jumpProc, GLTNewProc newProc,
                       Bool16 scroll, const ColorValue *color) {
  return GLT_RegisterHLLCommon(document, list, offsetUnits, jumpProc, newProc, scroll, color, 2);
}

Bool16 GLT_RegisterWordOffsetHLL(Doc document, const HLL *list, GLTJumpProc jumpProc, GLTNewProc newProc, Bool16 scroll,
                                 const ColorValue *color, int16_t wordFinderVersion) {
  return GLT_RegisterHLLCommon(document, list, 0, jumpProc, newProc, scroll, color, wordFinderVersion);
}

void GLTOfferHLL(HLL **own) { s_offered = own; }

Bool16 GLT_RegisterHLLCommon(Doc document, const HLL *list, int32_t offsetUnits, GLTJumpProc jumpProc,
                             GLTNewProc newProc, Bool16 scroll, const ColorValue *color, int16_t wordFinderVersion) {
  HLL **const own = std::exchange(s_offered, nullptr);
  const Holder holder = holderOf(list);
  PageView view = TavrelView::DocGetPageView(document);
  carry(nullptr);
  GLTRecord *old = GLTFindRecord(document);
  if (!stillThere(holder)) return 1; // the list went with its own registration: there is nothing to show
  if (old != nullptr && !retire(document, view, old, list))
    return 1; // another registration took this document meanwhile: it stands

  const DocumentKey key = fetchKey(document);
  if (list != s_carried && !stillThere(holder)) return 1;
  GLTRecord record;
  miMemsetSAFE(&record, 0, sizeof record);
  record.hll = takeCopy(list, own);
  record.jumpProc = jumpProc;
  record.newProc = newProc;
  record.wordFinderVersion = wordFinderVersion;
  record.color = color != nullptr ? *color : defaultColor;
  record.offsetUnits = offsetUnits;
  record.serial = nextSerial();
  // Filed or not, the display goes on with the record as built.
  const bool filed = AssociateNew(key.document, key.key1, key.key2, &record, sizeof record) != 0;
  if (!filed) record.serial = 0;

  TextSelection selection = GLTMapHLLToViewer(document, &record);
  if (selection != nullptr && GLTStillRegistered(document, record.serial, &record) != nullptr) {
    TavrelView::PageViewHighlightText(view, selection);
    if (scroll != 0 && GLTStillRegistered(document, record.serial, &record) != nullptr) GLTScrollTo(view, selection);
  }
  if (!filed) GLT_DeleteHLL(record.hll);
  return 1;
}

void GLT_UnregisterHLL(Doc document, HLL *list) {
  GLTRecord *record = GLTFindRecord(document);
  if (record == nullptr || record->hll != list) return;
  const uint32_t serial = record->serial;
  if (!tellNewList(document, serial, record)) return;
  removeRecord(document, serial);
  GLTShowHighlights(document, nullptr, 1);
}

HLL *GLT_GetHLL(Doc document) {
  const GLTRecord *record = GLTFindRecord(document);
  return record != nullptr ? record->hll : nullptr;
}

int32_t GLT_GetViewMode(Doc document) {
  const GLTRecord *record = GLTFindRecord(document);
  return record != nullptr ? record->viewMode : 0;
}

void GLT_SetViewMode(Doc document, int32_t mode) {
  GLTRecord *record = GLTFindRecord(document);
  if (record != nullptr) record->viewMode = mode;
}

void GLT_GetColor(Doc document, ColorValue *color) {
  const GLTRecord *record = GLTFindRecord(document);
  if (record != nullptr) *color = record->color;
}

void GLT_SetColor(Doc document, const ColorValue *color) {
  GLTRecord *record = GLTFindRecord(document);
  if (record != nullptr) record->color = *color;
}

Bool16 GLT_GetPos(Doc document, uint32_t *pageIndex, uint16_t *wordIndex) {
  const GLTRecord *record = GLTFindRecord(document);
  if (record == nullptr) return 0;
  *pageIndex = record->curPage;
  *wordIndex = record->curWord;
  return 1;
}

Bool16 GLT_SetPos(Doc document, uint32_t pageIndex, uint16_t wordIndex, Bool16 redraw) {
  GLTRecord *record = GLTFindRecord(document);
  if (record == nullptr) return 0;
  const HLP *page = HLLPageAt(record->hll, pageIndex);
  if (page == nullptr || wordIndex >= page->count) return 0;
  record->curPage = pageIndex;
  record->curWord = wordIndex;
  GLTShowHighlights(document, record, redraw);
  return 1;
}
