// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// The "DocModel" table: pages, words and text selections of a document, without any window. Version 0x00050000 ends
// with SelectionBounds, 0x00050001 has all operations below; a host provides both.
//
// Pages count from 0. A page's words are numbered in reading order (word-extraction version 2) or in the order of the
// content stream (version 1). A character offset counts code points, from 0, of the page's text: its words in reading
// order, joined by one space. Page space is in points, origin at the lower left of the page as shown, y upwards.
//
// A plug-in does not release text selections. A document keeps the 1,024 selections used last, and fewer where they
// cover more than a million words and ranges together, but always the 16 used last. Making a selection uses it, and so
// does every operation that takes it. So a plug-in may hold a selection, during a call or longer, while it makes few
// others; when in doubt it makes the selection anew, which costs little as long as the document still has it. The
// handle of a selection that was dropped raises errBadHandle for ever; it never names another selection. Tags: see
// Kernel.h.
#pragma once

#include "tavrel/hft.h"

extern tavrel::HFT gDocModelHFT;

// clang-format off
#define DOC_MODEL_OPERATIONS(OPERATION)                                                                                \
  /* The page object of a page number; each must be released with PageClose. [raises] [owned] */                       \
  OPERATION(0, DocOpenPage, Page(ModelDoc document, int32_t page))                                                     \
  /* Releases a page object. [raises] */                                                                               \
  OPERATION(1, PageClose, void(Page page))                                                                             \
  /* The words of a document by one version of word extraction, or null if there is no such version. The three options \
     are null, flags 8 (words unchanged, with their punctuation), clientData 0. [raises] [owned] */                    \
  OPERATION(2, WordFinderCreate, WordFinder(ModelDoc document, void *encoding, void *names, void *map,                 \
                                            int16_t version, uint32_t flags, void *clientData))                        \
  /* Destroys a word finder, and with it every word. [raises] */                                                       \
  OPERATION(3, WordFinderDestroy, void(WordFinder finder))                                                             \
  /* Extracts a page's words. Outputs, each may be null: the words in the finder's order, the same sorted by position  \
     on the page, the words in reading order (arrays borrowed until the page is released), their number. A page        \
     acquired twice must be released twice. [raises] */                                                                \
  OPERATION(4, WordFinderAcquirePage, void(WordFinder finder, int32_t page, Word **words, Word **sorted,               \
                                           Word **reading, int32_t *count))                                            \
  /* The n-th word of the page acquired last, from 0, or null. [raises] [borrowed until the page is released] */       \
  OPERATION(5, WordFinderGetNthWord, Word(WordFinder finder, int32_t index))                                           \
  /* Releases the words of an acquired page. [raises] */                                                               \
  OPERATION(6, WordFinderReleasePage, void(WordFinder finder, int32_t page))                                           \
  /* The number of a word's characters, in code points. [raises] */                                                    \
  OPERATION(7, WordGetLength, uint32_t(Word word))                                                                     \
  /* The character offset at which a word starts. [raises] */                                                          \
  OPERATION(8, WordGetCharOffset, uint32_t(Word word))                                                                 \
  /* The characters in the given ranges of offsets, or null where there are none. Equal ranges get the same            \
     selection, which belongs to its document. [raises] [borrowed as long as it is among those used last, see above] */\
  OPERATION(9, SelectionFromCharRanges, TextSelection(Page page, const TextRange *ranges, int32_t count))              \
  /* The same for ranges of words, numbered by that version of word extraction. [raises] [borrowed likewise] */        \
  OPERATION(10, SelectionFromWordRanges, TextSelection(Page page, const TextRange *ranges, int32_t count,              \
                                                       int16_t version))                                               \
  /* The number of the page that a selection lies on. [raises] */                                                      \
  OPERATION(11, SelectionPageNumber, int32_t(TextSelection selection))                                                 \
  /* The bounding box of a selection in page space. [raises] */                                                        \
  OPERATION(12, SelectionBounds, void(TextSelection selection, FixedRect *bounds))                                     \
  /* The line of text that a selection of the page begins on, in UTF-8 with a terminating 0; of a longer line what fits \
     into the size. The result is its length in bytes. start may be null; it gets the byte of the complete line at     \
     which the selection begins, which may be beyond the text. [raises] when the selection is on another page */       \
  OPERATION(13, PageGetLine, uint32_t(Page page, TextSelection selection, char *text, uint32_t size, uint32_t *start))
// clang-format on

namespace tavrel {

/// The newest version, which has all operations above.
inline constexpr uint32_t docModelVersion = 0x00050001;

} // namespace tavrel

namespace DocModel {
using namespace tavrel;
#define DOC_MODEL_DECLARE(...) TAVREL_OPERATION(gDocModelHFT, __VA_ARGS__)
DOC_MODEL_OPERATIONS(DOC_MODEL_DECLARE)
#undef DOC_MODEL_DECLARE
inline constexpr ListedOperation operations[] = {DOC_MODEL_OPERATIONS(TAVREL_LISTED)};
} // namespace DocModel
