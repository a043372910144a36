// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Other plug-ins: requesting the table, calling every entry of it as a client, and translating word numbers into
// character offsets.
#include <gtest/gtest.h>

#include <set>

#include "plugin/glt/gltHFT.h"
#include "plugin/input/gltTranslate.h"
#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tavrel/TavrelGLT.h"
#include "tests/torture/Torture.h"

using namespace tavrel;

HFT gTavrelGLTHFT;

namespace torture {

namespace {

Entry s_entries[TavrelGLT::selectorCount];

void offered(RecordingHost &host) {
  gExtensionID = 77;
  ExtensionExportHFTs();
  host.clear();
}

/// The table as the client calls it: the entries that the plug-in stored with the host.
void obtained(RecordingHost &host) {
  offered(host);
  GLTProvideHFT(gGLTHFTServer, tavrelGLTVersion);
  for (const auto &[selector, callback] : host.exported)
    s_entries[selector] = callback;
  gTavrelGLTHFT = s_entries;
  host.clear();
}

HLL *s_list;

void walk(Doc document) {
  ColorValue color = {colorSpaceRGB, {0, fixedOne, 0, 0}};
  TavrelGLT::GLT_SetColor(document, &color);
  TavrelGLT::GLT_GetColor(document, &color);
  for (const int32_t mode : {GLT_VIEW_ONE, GLT_VIEW_NONE, GLT_VIEW_ALL}) {
    TavrelGLT::GLT_SetViewMode(document, mode);
    for (const uint32_t code : {GLT_JUMP_NEXT, GLT_JUMP_PREV, GLT_JUMP_LAST, GLT_JUMP_FIRST})
      TavrelGLT::GLT_Jump(document, code);
  }
  TavrelGLT::GLT_SetPos(document, 1, 0, 1);
}

void useTheTable(RecordingHost &host) {
  TavrelGLT::GLT_RegisterHLL(host.doc, s_list, GLT_CHARACTER_OFFSETS, jumpProc, newProc, 1, nullptr);
  walk(host.doc);
  TavrelGLT::GLT_RegisterWordOffsetHLL(host.doc, s_list, jumpProc, newProc, 1, nullptr, 2);
  walk(host.doc);
  TavrelGLT::GLT_UnregisterHLL(host.doc, TavrelGLT::GLT_GetHLL(host.doc));
}

void buildLists(RecordingHost & /*host*/) {
  HLL *list = clientList();
  for (int32_t page = 0; page < 12; ++page)
    for (uint16_t pos = 0; pos < 20; ++pos)
      TavrelGLT::HLL_AddHL(list, page, pos, 1);
  TavrelGLT::HLL_SetData(list, &s_list);
  HLL *copy = TavrelGLT::GLT_CopyHLL(list);
  uint32_t pageIndex = 0;
  TavrelGLT::HLL_FindPagePos(copy, 11, &pageIndex);
  TavrelGLT::GLT_DeleteHLL(copy);
}

WordFinder s_finder;

/// Ten words on every page.
void withWords(RecordingHost &host) {
  s_finder = host.named(reinterpret_cast<WordFinder>(uintptr_t{0x3000}), "finder");
  host.answer(DocModel::WordFinderAcquirePage,
              std::function([](WordFinder, int32_t, Word **, Word **, Word **, int32_t *count) { *count = 10; }));
  host.answer(DocModel::WordFinderGetNthWord, std::function([](WordFinder, int32_t index) {
                return index < 10 ? reinterpret_cast<Word>(0x4000 + 8 * static_cast<uintptr_t>(index)) : nullptr;
              }));
  host.answer(DocModel::WordGetCharOffset, std::function([](Word word) {
                return static_cast<uint32_t>(100 + (reinterpret_cast<uintptr_t>(word) - 0x4000) / 8);
              }));
  host.answer(DocModel::WordGetLength, std::function([](Word) { return 2U; }));
  s_list = clientList();
  for (int32_t page = 0; page < 3; ++page)
    for (const uint16_t pos : {3, 7, 10, 12})
      HLL_AddHL(s_list, page, pos, 1);
}

/// Every entry is an unchanged word number, a translated one, or the value for a missing word.
void expectWordsOrCharacters(RecordingHost & /*host*/) {
  static const std::set<uint16_t> possible = {3, 7, 10, 12, 103, 107, 0};
  for (uint32_t page = 0; page < HLL_GetPageCount(s_list); ++page)
    for (uint16_t i = 0; i < s_list->pages[page].count; ++i)
      EXPECT_TRUE(possible.contains(s_list->pages[page].words[i].pos)) << s_list->pages[page].words[i].pos;
}

/// A table that a client gets has all its entries.
void expectCompleteOrNone(RecordingHost &host) {
  HFT table = nullptr;
  host.run([&] { table = GLTProvideHFT(gGLTHFTServer, tavrelGLTVersion); });
  EXPECT_TRUE(table == nullptr || host.exported.size() == TavrelGLT::selectorCount - 1) << "an incomplete table";
}

void expectNone(RecordingHost &host) {
  host.run([&] { EXPECT_EQ(GLTProvideHFT(gGLTHFTServer, tavrelGLTVersion), nullptr); });
}

} // namespace

std::vector<Scenario> clientScenarios() {
  return {
      {"ProvideTheTable",
       offered,
       [](RecordingHost &) { GLTProvideHFT(gGLTHFTServer, tavrelGLTVersion); },
       {},
       {},
       {},
       expectCompleteOrNone},
      {"DestroyTheTable", obtained, [](RecordingHost &) { GLTDestroyHFT(gGLTHFTServer); }, {}, {}, {}, expectNone},
      {"DestroyATableNeverBuilt", offered, [](RecordingHost &) { GLTDestroyHFT(gGLTHFTServer); }},
      {"UseTheTable",
       [](RecordingHost &host) {
         obtained(host);
         s_list = sixHighlights();
       },
       useTheTable},
      {"BuildLists", obtained, buildLists},
      {"ShowButtonsThroughTheTable", obtained, [](RecordingHost &) { TavrelGLT::GLT_ShowButtons(1, nullptr); }},
      {"Translate",
       withWords,
       [](RecordingHost &) { TranslateHLLWordToCharOffsets(nullptr, s_finder, s_list); },
       {},
       {},
       {},
       expectWordsOrCharacters,
       true},
  };
}

} // namespace torture
