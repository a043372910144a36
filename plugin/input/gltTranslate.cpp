// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Translates a highlight list page by page, each in a separate frame, so that a raise ends only one page's translation.
#include "plugin/input/gltTranslate.h"

#include "plugin/glt/glt.h"
#include "plugin/pi/PIFrame.h"
#include "tavrel/DocModel.h"

using namespace tavrel;

namespace {

/// One page's entries, rewritten from the front.
void translatePage(WordFinder finder, HLL *list, uint32_t pageIndex) {
  const int32_t pageNumber = list->pages[pageIndex].page;
  Word *words = nullptr, *sorted = nullptr, *reading = nullptr;
  int32_t wordCount = 0;
  DocModel::WordFinderAcquirePage(finder, pageNumber, &words, &sorted, &reading, &wordCount);
  const uint16_t count = list->pages[pageIndex].count;
  uint16_t out = 0;
  for (uint16_t i = 0; i < count; ++i) {
    const uint16_t pos = list->pages[pageIndex].words[i].pos;
    if (pos > wordCount) { // one beyond the last word is looked up: the host may return a word
      --list->pages[pageIndex].count;
      continue;
    }
    Word word = DocModel::WordFinderGetNthWord(finder, pos);
    HL translated = {0, 0};
    if (word != nullptr) {
      translated.pos = static_cast<uint16_t>(DocModel::WordGetCharOffset(word));
      translated.len = static_cast<uint8_t>(DocModel::WordGetLength(word));
    }
    // After a missing word the output index stays, so that the page's last entry stays untranslated.
    list->pages[pageIndex].words[out] = translated;
    if (word != nullptr) ++out;
  }
  DocModel::WordFinderReleasePage(finder, pageNumber);
}

} // namespace

void TranslateHLLWordToCharOffsets(void * /*ignored*/, WordFinder finder, HLL *list) {
  for (uint32_t i = 0; i < HLL_GetPageCount(list); ++i)
    PIProtect([&] { translatePage(finder, list, i); });
}
