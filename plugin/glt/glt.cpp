// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The registry: at most one record for a document, filed in the association table under the atom "GLT", twice.
//
// Calls into the host and into registrants may call the registry again for the same document. Over such a call no
// pointer to a record is kept, only a GLTRecordRef, and the record is used again only after GLTStillRegistered has
// found it.
//
// A record owns its list. Before that the list to be registered has another owner (ListSource), and no host call comes
// between the two: a raise loses no list, except that of a record that could not be filed for lack of memory.
#include "plugin/glt/glt.h"

#include <utility>

#include "plugin/glt/miAssoc.h"
#include "plugin/util/miUtils.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

namespace {

/// A document with both its keys, each fetched from the host separately.
struct DocumentKey {
  Doc document;
  Atom key1, key2;
};

/// The atom that the host returned last. A name always has the same atom, so a look-up without a host call can use it.
Atom s_gltAtom;

uint32_t s_lastSerial;

DocumentKey fetchKey(Doc document) {
  const Atom key1 = Kernel::AtomFromString("GLT");
  const Atom key2 = Kernel::AtomFromString("GLT");
  s_gltAtom = key2;
  return {document, key1, key2};
}

/// The document's record, or null, without a host call.
GLTRecord *currentRecord(Doc document) {
  return static_cast<GLTRecord *>(AssociateFind(document, s_gltAtom, s_gltAtom));
}

uint32_t nextSerial() {
  return s_lastSerial = s_lastSerial % UINT32_MAX + 1; // never 0, which refers to no record
}

constexpr ColorValue defaultColor = {colorSpaceRGB, {fixedOne, 0, 0, 0}};

/// Notifies the registrant that its list is about to be destroyed. Does nothing when the list is destroyed already.
void notifyNewList(const GLTRecordRef &ref) {
  GLTRecord *record = GLTStillRegistered(ref);
  if (record == nullptr || record->newProc == nullptr) return;
  GLTNewProc newProc = record->newProc;
  // Cleared before the call: a registrant frees its data for the list in the procedure, so it is notified once, even if
  // the procedure raises or registers.
  record->newProc = nullptr;
  newProc(ref.document, record->hll, HLL_GetData(record->hll));
}

/// Destroys a record with its list. Does nothing when the record is destroyed already.
void removeRecord(const GLTRecordRef &ref, const DocumentKey &key) {
  GLTRecord *record = GLTStillRegistered(ref);
  if (record == nullptr) return;
  GLT_DeleteHLL(record->hll);
  AssociateDelete(key.document, key.key1, key.key2);
}

/// A list that is to be registered, and its owner until the new record has a list.
struct ListSource {
  const HLL *list;     ///< may be null, and is registered then, too
  HLL **given;         ///< the variable of a caller that gives the list away; null where it is only lent
  GLTRecordRef lender; ///< the registration that owns the list, if it came from GLT_GetHLL; else none
};

constexpr GLTRecordRef noRecord = {nullptr, 0, nullptr};

ListSource givenList(HLL *&list) { return {list, &list, noRecord}; }

ListSource lentList(const HLL *list) {
  for (const AssocEntry *entry = s_AssocList; list != nullptr && entry != nullptr; entry = entry->next) {
    if (entry->key1 != s_gltAtom || entry->key2 != s_gltAtom) continue;
    auto *record = static_cast<GLTRecord *>(entry->data);
    if (record->hll == list) return {list, nullptr, GLTRefer(static_cast<Doc>(entry->object), record)};
  }
  return {list, nullptr, noRecord};
}

/// A list that a registration lends is destroyed with that registration.
bool isAlive(const ListSource &source) {
  return source.lender.serial == 0 || GLTStillRegistered(source.lender) != nullptr;
}

/// The record's list: the given one where a copy would be the same, else a copy.
HLL *ownList(const ListSource &source) {
  if (source.given != nullptr && HLLIsComplete(source.list)) return std::exchange(*source.given, nullptr);
  return GLT_CopyHLL(source.list);
}

/// Whether another registration has been filed for the document since this one found `old` (or none).
bool isOvertaken(const GLTRecordRef &old) {
  const GLTRecord *current = currentRecord(old.document);
  return current != nullptr && current->serial != old.serial;
}

/// Removes the old record's marks from the screen, notifies its registrant, and removes the record, unless it lends the
/// new record's list: then it stays until the list has been copied. The old record may be unregistered meanwhile, which
/// changes nothing for the new one.
void retire(const GLTRecordRef &old, PageView view, const ListSource &source) {
  TextSelection selection = GLTMapHLLToViewer(old.document, GLTStillRegistered(old));
  if (selection != nullptr) TavrelView::PageViewHighlightText(view, selection);
  notifyNewList(old);
  if (GLTStillRegistered(old) == nullptr) return;
  const DocumentKey key = fetchKey(old.document); // before the removal: if the host raises here, nothing has changed
  if (source.lender.serial != old.serial) removeRecord(old, key);
}

/// A record without a list, at the list's first highlight.
GLTRecord newRecord(const GLTTerms &terms) {
  GLTRecord record;
  miMemsetSAFE(&record, 0, sizeof record);
  record.jumpProc = terms.jumpProc;
  record.newProc = terms.newProc;
  record.wordFinderVersion = terms.wordFinderVersion;
  record.color = terms.color != nullptr ? *terms.color : defaultColor;
  record.offsetUnits = terms.offsetUnits;
  record.serial = nextSerial();
  return record;
}

/// Turns the view to a new record's first page and has its highlights marked there.
void showNewRecord(Doc document, PageView view, GLTRecord *record, Bool16 scroll) {
  const GLTRecordRef ref = GLTRefer(document, record);
  TextSelection selection = GLTMapHLLToViewer(document, record);
  if (selection == nullptr || GLTStillRegistered(ref) == nullptr) return;
  TavrelView::PageViewHighlightText(view, selection);
  if (scroll != 0 && GLTStillRegistered(ref) != nullptr) GLTScrollTo(view, selection);
}

Bool16 registerList(Doc document, const ListSource &source, const GLTTerms &terms) {
  PageView view = TavrelView::DocGetPageView(document);
  const GLTRecordRef old = GLTRefer(document, GLTFindRecord(document));
  if (!isAlive(source)) return 1; // the list has been destroyed
  if (old.serial != 0) retire(old, view, source);
  if (isOvertaken(old)) return 1; // the latest registration is kept

  const DocumentKey key = fetchKey(document);
  // Tested again: a registration made in that call has filed a record, and replacing it would lose its list.
  if (isOvertaken(old) || !isAlive(source)) return 1;
  GLTRecord record = newRecord(terms);
  record.hll = ownList(source);
  removeRecord(old, key); // it still exists where it lent its list
  record.filed = true;
  // The record is displayed whether or not it could be filed.
  record.filed = AssociateNew(key.document, key.key1, key.key2, &record, sizeof record) != 0;
  showNewRecord(document, view, &record, terms.scroll);
  if (!record.filed) GLT_DeleteHLL(record.hll);
  return 1;
}

} // namespace

GLTRecord *GLTFindRecord(Doc document) {
  const DocumentKey key = fetchKey(document);
  return static_cast<GLTRecord *>(AssociateFind(key.document, key.key1, key.key2));
}

GLTRecordRef GLTRefer(Doc document, GLTRecord *record) {
  if (record == nullptr) return {document, 0, nullptr};
  return {document, record->serial, record->filed ? nullptr : record};
}

GLTRecord *GLTStillRegistered(const GLTRecordRef &ref) {
  if (ref.unfiled != nullptr) return ref.unfiled;
  GLTRecord *record = currentRecord(ref.document);
  return record != nullptr && record->serial == ref.serial ? record : nullptr;
}

Bool16 GLT_RegisterHLL(Doc document, const HLL *list, int32_t offsetUnits, GLTJumpProc jumpProc, GLTNewProc newProc,
                       Bool16 scroll, const ColorValue *color) {
  return GLT_RegisterHLLCommon(document, list, offsetUnits, jumpProc, newProc, scroll, color,
                               gltDefaultWordFinderVersion);
}

Bool16 GLT_RegisterWordOffsetHLL(Doc document, const HLL *list, GLTJumpProc jumpProc, GLTNewProc newProc, Bool16 scroll,
                                 const ColorValue *color, int16_t wordFinderVersion) {
  return GLT_RegisterHLLCommon(document, list, 0, jumpProc, newProc, scroll, color, wordFinderVersion);
}

Bool16 GLT_RegisterHLLCommon(Doc document, const HLL *list, int32_t offsetUnits, GLTJumpProc jumpProc,
                             GLTNewProc newProc, Bool16 scroll, const ColorValue *color, int16_t wordFinderVersion) {
  return registerList(document, lentList(list), {offsetUnits, jumpProc, newProc, scroll, color, wordFinderVersion});
}

Bool16 GLTRegisterGivenHLL(Doc document, HLL *&list, const GLTTerms &terms) {
  return registerList(document, givenList(list), terms);
}

void GLT_UnregisterHLL(Doc document, HLL *list) {
  GLTRecord *record = GLTFindRecord(document);
  if (record == nullptr || record->hll != list) return;
  const GLTRecordRef ref = GLTRefer(document, record);
  notifyNewList(ref);
  if (GLTStillRegistered(ref) == nullptr) return;
  removeRecord(ref, fetchKey(document));
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
