// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// The "TavrelGLT" table, up to version 0x00050000: what the highlight plug-in offers to other plug-ins. A client asks
// for it with Kernel::RequestTable, stores it in its own global `gTavrelGLTHFT` and calls `TavrelGLT::GLT_Jump(...)`.
//
// A highlight list (HLL) holds the hits of one document, grouped by page. A hit is addressed by a page index (the
// position of its page in the list, not the page number) and a word index within that page. Booleans are 1 and 0.
#pragma once

#include <iterator>

#include "tavrel/hft.h"

struct HLL;

extern tavrel::HFT gTavrelGLTHFT;

namespace tavrel {

/// Codes of GLT_Jump; the jump procedure gets the same ones.
enum GLTJumpCode : uint32_t {
  GLT_JUMP_NEXT = 0,
  GLT_JUMP_NEXT_BEYOND = 1, ///< only for the jump procedure
  GLT_JUMP_PREV = 2,
  GLT_JUMP_PREV_BEYOND = 3, ///< only for the jump procedure
  GLT_JUMP_FIRST = 4,
  GLT_JUMP_LAST = 5,
};

/// View modes: all hits of the current page, its first one, none.
enum GLTViewMode : int32_t { GLT_VIEW_ALL = 0, GLT_VIEW_ONE = 1, GLT_VIEW_NONE = 2 };

/// `offsetUnits` of character offsets; any other value means word numbers.
inline constexpr int32_t GLT_CHARACTER_OFFSETS = 1;

/// Called after every move, before the view follows: the document, the registered list, the code, the list's user data.
using GLTJumpProc = void (*)(Doc document, HLL *list, uint32_t code, void *userData);
/// Called just before the registered list is destroyed: the document, that list, its user data.
using GLTNewProc = void (*)(Doc document, HLL *list, void *userData);

inline constexpr uint32_t tavrelGLTVersion = 0x00050000;

/// The type of auxiliary data that is a highlight file, and the name of the button that steps to the next hits. A host
/// that has no window uses them instead of a user.
inline constexpr char gltAuxDataType[] = "tavrelglt", gltNextButton[] = "TavrelGLT:Next";

} // namespace tavrel

// clang-format off
#define TAVREL_GLT_OPERATIONS(OPERATION)                                                                               \
  /* A new, empty list with the caller's data, or null. [owned] */                                                     \
  OPERATION(1, GLT_NewHLL, HLL *(void *userData))                                                                      \
  /* A copy of a list, or null. [owned] */                                                                             \
  OPERATION(2, GLT_CopyHLL, HLL *(const HLL *list))                                                                    \
  /* Deletes a list that the caller owns. */                                                                           \
  OPERATION(3, GLT_DeleteHLL, void(HLL *list))                                                                         \
  /* Shows a copy of the list on a document, in place of any other. color null: red. Always 1. */                      \
  OPERATION(4, GLT_RegisterHLL, Bool16(Doc document, const HLL *list, int32_t offsetUnits, GLTJumpProc jumpProc,       \
                                       GLTNewProc newProc, Bool16 scroll, const ColorValue *color))                    \
  /* Unregisters a list, which must be the one that GLT_GetHLL returned. */                                            \
  OPERATION(5, GLT_UnregisterHLL, void(Doc document, HLL *list))                                                       \
  /* How many hits are shown (GLTViewMode). */                                                                         \
  OPERATION(6, GLT_GetViewMode, int32_t(Doc document))                                                                 \
  /* Sets it; takes effect with the next redraw. */                                                                    \
  OPERATION(7, GLT_SetViewMode, void(Doc document, int32_t mode))                                                      \
  /* The registered list, or null. [borrowed until another is registered or it is unregistered] */                     \
  OPERATION(8, GLT_GetHLL, HLL *(Doc document))                                                                        \
  /* The current hit; 0 without a registered list. The word index may be one beyond its page's last hit, and is 65535  \
     on a page without any. */                                                                                         \
  OPERATION(9, GLT_GetPos, Bool16(Doc document, uint32_t *pageIndex, uint16_t *wordIndex))                             \
  /* Moves to another hit; 0 where there is none. redraw 1 shows its page and scrolls to it. */                        \
  OPERATION(10, GLT_SetPos, Bool16(Doc document, uint32_t pageIndex, uint16_t wordIndex, Bool16 redraw))               \
  /* Moves the current hit by a jump code (GLTJumpCode). */                                                            \
  OPERATION(11, GLT_Jump, void(Doc document, uint32_t code))                                                           \
  /* The list's user data. */                                                                                          \
  OPERATION(12, HLL_GetData, void *(const HLL *list))                                                                  \
  OPERATION(13, HLL_SetData, void(HLL *list, void *userData))                                                          \
  /* The number of hits added; when memory ran out, more than there are. */                                            \
  OPERATION(14, HLL_GetWordCount, uint32_t(const HLL *list))                                                           \
  /* The number of pages with hits. */                                                                                 \
  OPERATION(15, HLL_GetPageCount, uint32_t(const HLL *list))                                                           \
  /* One hit: its page number, start and length; 0 where there is none, and then nothing is written. */                \
  OPERATION(16, HLL_GetHL, Bool16(const HLL *list, uint32_t pageIndex, uint16_t wordIndex, int32_t *page,              \
                                  uint16_t *pos, uint16_t *len))                                                       \
  /* Adds a hit; a second one with the same page and start is dropped. Always 1. */                                    \
  OPERATION(17, HLL_AddHL, Bool16(HLL *list, int32_t page, uint16_t pos, uint16_t len))                                \
  /* The index of a page number; 0 where the list has no such page. */                                                 \
  OPERATION(18, HLL_FindPagePos, Bool16(const HLL *list, int32_t page, uint32_t *pageIndex))                           \
  /* The colour; untouched without a registered list. */                                                               \
  OPERATION(19, GLT_GetColor, void(Doc document, ColorValue *color))                                                   \
  /* Sets it; takes effect with the next redraw. */                                                                    \
  OPERATION(20, GLT_SetColor, void(Doc document, const ColorValue *color))                                             \
  /* Puts Prev and Next on the tool bar after a button (null: after Find Again). 0 without a tool bar or space. */     \
  OPERATION(21, GLT_ShowButtons, Bool16(Bool16 show, ToolButton anchor))                                               \
  /* GLT_RegisterHLL for word numbers of one version of word extraction. It is last: the order never changes. */       \
  OPERATION(22, GLT_RegisterWordOffsetHLL, Bool16(Doc document, const HLL *list, GLTJumpProc jumpProc,                 \
                                                  GLTNewProc newProc, Bool16 scroll, const ColorValue *color,          \
                                                  int16_t wordFinderVersion))
// clang-format on

namespace TavrelGLT {
using namespace tavrel;
#define TAVREL_GLT_DECLARE(...) TAVREL_OPERATION(gTavrelGLTHFT, __VA_ARGS__)
TAVREL_GLT_OPERATIONS(TAVREL_GLT_DECLARE)
#undef TAVREL_GLT_DECLARE
inline constexpr ListedOperation operations[] = {TAVREL_GLT_OPERATIONS(TAVREL_LISTED)};
/// Selectors of the table: one more than it has operations, because 0 is empty.
inline constexpr uint32_t selectorCount = std::size(operations) + 1;
} // namespace TavrelGLT
