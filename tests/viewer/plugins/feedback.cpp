// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in with a button for each operation whose effect on the screen is tested: highlights, registrations, drawings.
// Its hits are the first word of the first page, in green.
#include <algorithm>

#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelGLT.h"
#include "tavrel/TavrelView.h"
#include "tavrel/plugin.h"

using namespace tavrel;

HFT gKernelHFT, gTavrelViewHFT, gTavrelGLTHFT, gDocModelHFT;

namespace {

ExtensionID s_self;

template <typename Function> Callback callbackOf(Function function) {
  return Kernel::CreateCallback(s_self, entryOf(function));
}

PageView frontView() { return TavrelView::DocGetPageView(TavrelView::GetFrontDoc()); }

void highlight(ToolButton /*button*/, void * /*clientData*/) {
  const ModelDoc model = TavrelView::DocGetModelDoc(TavrelView::GetFrontDoc());
  const Page page = DocModel::DocOpenPage(model, 0);
  const TextRange word = {0, 1};
  const TextSelection selection = DocModel::SelectionFromWordRanges(page, &word, 1, 2);
  DocModel::PageClose(page);
  TavrelView::PageViewHighlightText(frontView(), selection);
}

// The plug-in does not return during the alert, so nothing is drawn meanwhile.
void ask() { TavrelView::Alert(alertQuestion, "Highlighted", "OK", nullptr, nullptr, 0); }

void highlightAndAsk(ToolButton button, void *clientData) {
  highlight(button, clientData);
  ask();
}

void registerHits(ToolButton /*button*/, void * /*clientData*/) {
  constexpr ColorValue green = {colorSpaceRGB, {0, fixedOne, 0, 0}};
  HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
  TavrelGLT::HLL_AddHL(list, 0, 0, 1);
  TavrelGLT::GLT_RegisterWordOffsetHLL(TavrelView::GetFrontDoc(), list, nullptr, nullptr, 0, &green, 2);
  TavrelGLT::GLT_DeleteHLL(list);
}

void registerHitsAndAsk(ToolButton button, void *clientData) {
  registerHits(button, clientData);
  ask();
}

void unregisterHits(ToolButton /*button*/, void * /*clientData*/) {
  const Doc document = TavrelView::GetFrontDoc();
  TavrelGLT::GLT_UnregisterHLL(document, TavrelGLT::GLT_GetHLL(document));
}

constexpr int16_t scrolls = 4, scrolledBy = 10;
int16_t s_scrolled = scrolls;

// In each of the first drawings after the button has been pressed.
void scrollALittle(PageView view, void * /*clientData*/) {
  if (s_scrolled == scrolls) return;
  ++s_scrolled;
  TavrelView::PageViewScrollToPoint(view, 0, static_cast<int16_t>(s_scrolled * scrolledBy));
}

void scrollWhileDrawing(ToolButton /*button*/, void * /*clientData*/) {
  s_scrolled = 0;
  TavrelView::PageViewRefreshArea(frontView(), nullptr);
}

void redraw(ToolButton /*button*/, void * /*clientData*/) { TavrelView::PageViewRefreshArea(frontView(), nullptr); }

uint32_t importTables() {
  gTavrelGLTHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelGLT"), tavrelGLTVersion);
  return 1;
}

uint32_t initialise() {
  // The names are short, or the buttons would need a second row. Two buttons have the same action, so that a test can
  // click it twice without a double click.
  constexpr struct {
    const char *name;
    ButtonActionProc action;
  } buttons[] = {{"f:H", highlight},    {"f:I", highlight},          {"f:A", highlightAndAsk},
                 {"f:R", registerHits}, {"f:Q", registerHitsAndAsk}, {"f:U", unregisterHits},
                 {"f:D", redraw},       {"f:S", scrollWhileDrawing}};
  TavrelView::RegisterPageDrawProc(callbackOf(scrollALittle), nullptr);
  for (const auto &[name, action] : buttons) {
    const ToolButton button = TavrelView::ToolButtonCreate(Kernel::AtomFromString(name), 0, 0, 0);
    TavrelView::ToolButtonAttachAction(button, callbackOf(action), nullptr);
    TavrelView::ToolBarInsertButton(TavrelView::GetToolBar(), button, 0, nullptr);
  }
  return 1;
}

uint32_t shakeHands(uint32_t /*version*/, HandshakeRecord *record) {
  record->name = Kernel::AtomFromString("feedback");
  record->importTables = callbackOf(importTables);
  record->initialise = callbackOf(initialise);
  return 1;
}

uint32_t setUp(uint32_t /*version*/, SetupRecord *record) {
  s_self = record->extension;
  gKernelHFT = record->kernel;
  gTavrelViewHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelView"), tavrelViewStatusVersion);
  gDocModelHFT = Kernel::RequestTable(Kernel::AtomFromString("DocModel"), 0x00050000);
  if (gTavrelViewHFT == nullptr || gDocModelHFT == nullptr) return 0;
  record->handshake = callbackOf(shakeHands);
  return 1;
}

} // namespace

extern "C" [[gnu::visibility("protected")]] uint32_t feedbackMain(uint32_t hostVersion, uint32_t *outVersion,
                                                                  void **outSetupProc) __asm__("main");

extern "C" uint32_t feedbackMain(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc) {
  *outVersion = std::min(hostVersion, handshakeVersion);
  *outSetupProc = functionOf<void *>(entryOf(setUp));
  return 1;
}
