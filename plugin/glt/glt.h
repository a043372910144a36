// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The highlight model and its operations: the list, the registry of documents, display, scrolling, jumping
// and the tool bar buttons. The operations that other plug-ins share are described in tavrel/TavrelGLT.h as well.
//
// A highlight's unit is a character offset or a word number; the list's registration says which. Page indices count a
// list's page records; page numbers are the host's.
#pragma once

#include "tavrel/TavrelGLT.h"
#include "tavrel/types.h"

/// A highlight. `pos` is its identity within its page. Passed to the host as an array.
using HL = tavrel::TextRange;

/// One page's highlights, in order of adding. No two have the same `pos`.
struct HLP {
  int32_t page;
  HL *words; ///< owned; null until the first highlight
  uint16_t count;
  uint16_t capacity;
};

/// A document's highlights, page by page, in order of adding. No two records have the same `page`.
struct HLL {
  HLP *pages; ///< owned; null until the first page
  uint32_t pageCount;
  uint32_t pageCapacity;
  uint32_t wordCount; ///< highlights accepted, which after a failed allocation is more than are stored
  void *data;         ///< the creator's; never read through
};

static_assert(sizeof(HL) == 4);
static_assert(sizeof(HLP) == (sizeof(void *) == 4 ? 12 : 24) && sizeof(HLL) == (sizeof(void *) == 4 ? 20 : 32));

/// The registry's record of a document with highlights. Stored in the association table.
struct GLTRecord {
  HLL *hll;            ///< the registry's own copy; null where memory ran out, and then read as an empty list
  int32_t offsetUnits; ///< GLT_CHARACTER_OFFSETS, or anything else for word numbers
  uint32_t curPage;    ///< page index of the current highlight
  uint16_t curWord;    ///< its word index
  int32_t viewMode;    ///< GLTViewMode
  tavrel::ColorValue color;
  tavrel::GLTJumpProc jumpProc; ///< may be null
  tavrel::GLTNewProc newProc;   ///< may be null
  int16_t wordFinderVersion;    ///< resolves word numbers
  bool filed;                   ///< false where memory ran out: then only the registration itself has the record
  uint32_t serial;              ///< the registration's number, from 1 on; unique
};

/// A reference to a record that stays valid over host calls and registrants' procedures, each of which may register,
/// unregister or jump; a pointer to the record does not.
struct GLTRecordRef {
  tavrel::Doc document;
  uint32_t serial;    ///< of the registration; 0 for none
  GLTRecord *unfiled; ///< the record itself where it could not be filed, so that no other call can retire it; else null
};

// The list (gltList.cpp). These fail only when memory is exhausted, and read a null list as an empty one.

HLL *GLT_NewHLL(void *userData);
HLL *GLT_CopyHLL(const HLL *list);
void GLT_DeleteHLL(HLL *list);
void *HLL_GetData(const HLL *list);
void HLL_SetData(HLL *list, void *userData);
uint32_t HLL_GetWordCount(const HLL *list);
uint32_t HLL_GetPageCount(const HLL *list);
tavrel::Bool16 HLL_GetHL(const HLL *list, uint32_t pageIndex, uint16_t wordIndex, int32_t *page, uint16_t *pos,
                         uint16_t *len);
tavrel::Bool16 HLL_AddHL(HLL *list, int32_t page, uint16_t pos, uint16_t len);
tavrel::Bool16 HLL_FindPagePos(const HLL *list, int32_t page, uint32_t *pageIndex);

HLP *HLLFindPage(const HLL *list, int32_t page);
HLP *HLLInsertPage(HLL *list, int32_t page);

/// HLL_AddHL for a page whose record is known; null when the list has none.
void HLLAddToPage(HLL *list, HLP *record, int32_t page, uint16_t pos, uint16_t len);
tavrel::Bool16 HLLCheck(HLL *list, uint32_t needed);
HL *HLPFindWord(const HLP *page, uint16_t pos);
HL *HLPInsertWord(HLP *page, uint16_t pos, uint16_t len);
tavrel::Bool16 HLPCheck(HLP *page, uint16_t needed);

/// Whether all accepted highlights are stored. Then a copy is the same in everything, if the list was filled by
/// HLL_AddHL alone.
bool HLLIsComplete(const HLL *list);

/// The page record at an index, or null beyond the end.
const HLP *HLLPageAt(const HLL *list, uint32_t pageIndex);

// The registry (glt.cpp).

tavrel::Bool16 GLT_RegisterHLL(tavrel::Doc document, const HLL *list, int32_t offsetUnits, tavrel::GLTJumpProc jumpProc,
                               tavrel::GLTNewProc newProc, tavrel::Bool16 scroll, const tavrel::ColorValue *color);
tavrel::Bool16 GLT_RegisterWordOffsetHLL(tavrel::Doc document, const HLL *list, tavrel::GLTJumpProc jumpProc,
                                         tavrel::GLTNewProc newProc, tavrel::Bool16 scroll,
                                         const tavrel::ColorValue *color, int16_t wordFinderVersion);
tavrel::Bool16 GLT_RegisterHLLCommon(tavrel::Doc document, const HLL *list, int32_t offsetUnits,
                                     tavrel::GLTJumpProc jumpProc, tavrel::GLTNewProc newProc, tavrel::Bool16 scroll,
                                     const tavrel::ColorValue *color, int16_t wordFinderVersion);

/// The arguments of a registration besides the document and the list; the fields as in GLTRecord.
struct GLTTerms {
  int32_t offsetUnits;
  tavrel::GLTJumpProc jumpProc;
  tavrel::GLTNewProc newProc;
  tavrel::Bool16 scroll;           ///< whether the view scrolls to the first page's highlights
  const tavrel::ColorValue *color; ///< null for red
  int16_t wordFinderVersion;
};

/// The version of word extraction of lists that name none.
inline constexpr int16_t gltDefaultWordFinderVersion = 2;

/// Registers a list that the caller gives away. The list was filled by HLL_AddHL alone and has no other user, so that
/// the record may take the list itself instead of a copy. `list` is null afterwards if the record took it, and still
/// belongs to the caller if not. Always 1.
tavrel::Bool16 GLTRegisterGivenHLL(tavrel::Doc document, HLL *&list, const GLTTerms &terms);

void GLT_UnregisterHLL(tavrel::Doc document, HLL *list);
HLL *GLT_GetHLL(tavrel::Doc document);
int32_t GLT_GetViewMode(tavrel::Doc document);
void GLT_SetViewMode(tavrel::Doc document, int32_t mode);
void GLT_GetColor(tavrel::Doc document, tavrel::ColorValue *color);
void GLT_SetColor(tavrel::Doc document, const tavrel::ColorValue *color);
tavrel::Bool16 GLT_GetPos(tavrel::Doc document, uint32_t *pageIndex, uint16_t *wordIndex);
tavrel::Bool16 GLT_SetPos(tavrel::Doc document, uint32_t pageIndex, uint16_t wordIndex, tavrel::Bool16 redraw);

/// A document's record, or null. Asks the host for the atom twice, once per key.
GLTRecord *GLTFindRecord(tavrel::Doc document);

/// A reference to a record of a document; for null, a reference to none.
GLTRecordRef GLTRefer(tavrel::Doc document, GLTRecord *record);

/// The record referred to, or null when it is no longer the document's. Makes no host call.
GLTRecord *GLTStillRegistered(const GLTRecordRef &ref);

// Display and scrolling (gltDisplay.cpp, gltScroll.cpp).

/// Turns the view to the current page and makes a text selection of the highlights to show there; null when there is
/// none or the host failed. The selection belongs to the host.
tavrel::TextSelection GLTMapHLLToViewer(tavrel::Doc document, GLTRecord *record);

/// Turns and scrolls to the current highlights (scroll 1) or paints them (scroll 0). Without a record, has the complete
/// view redrawn.
void GLTShowHighlights(tavrel::Doc document, GLTRecord *record, tavrel::Bool16 scroll);

/// Brings a selection into view: centred, or near the upper left where it is too large for that.
void GLTScrollTo(tavrel::PageView view, tavrel::TextSelection selection);

/// Where GLTScrollTo scrolls to.
struct GLTScrollTarget {
  bool scroll; ///< false when the selection is fully visible
  int16_t x, y;
};

/// The arithmetic of GLTScrollTo, in device units. `bounds` is in 16.16 with its larger y in `top`.
GLTScrollTarget GLTScrollTargetFor(const tavrel::DeviceRect &visible, const tavrel::FixedRect &bounds);

// Jumping (gltJump.cpp).

void GLT_Jump(tavrel::Doc document, uint32_t code);

// The tool bar buttons (gltButtons.cpp).

/// The callbacks given to the host for the buttons.
extern tavrel::Callback pGLTPrevExecProc, pGLTPrevEnabledProc, pGLTNextExecProc, pGLTNextEnabledProc;

tavrel::Bool16 GLT_ShowButtons(tavrel::Bool16 show, tavrel::ToolButton anchor);
void GLTPrevExecProc(tavrel::ToolButton button, void *clientData);
void GLTNextExecProc(tavrel::ToolButton button, void *clientData);
tavrel::Bool16 GLTPrevEnabledProc(tavrel::ToolButton button, void *clientData);
tavrel::Bool16 GLTNextEnabledProc(tavrel::ToolButton button, void *clientData);
