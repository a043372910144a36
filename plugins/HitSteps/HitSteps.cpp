// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// A plug-in that steps from hit to hit, where the highlight plug-in steps from page to page. It takes over that
// plug-in's two buttons, which keep their position, icons and tips, and gives them keys. The next hit on the page shown
// is scrolled to; only after the page's last one the highlight plug-in jumps to the next page with hits. The current
// hit is outlined, the status line shows its number ("hit 7 of 42, page 2 of 6") and says which one is the last, and a
// list beside the page has all hits. A view without a window, whose pages are drawn to files, has only the number.
//
// It uses only the interface in sdk/, and reads the hits through the table "TavrelGLT"; without that table it does
// nothing. Host calls may raise through any of its functions, so no object here has a destructor, and its memory is
// reached through static variables.
#include <algorithm>

#include "steps.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelGLT.h"
#include "tavrel/TavrelSupport.h"
#include "tavrel/TavrelView.h"
#include "tavrel/plugin.h"

using namespace tavrel;

HFT gKernelHFT, gTavrelSupportHFT, gDocModelHFT, gTavrelViewHFT, gTavrelGLTHFT;

namespace {

ExtensionID s_self;

template <typename Function> Callback callbackOf(Function function) {
  return Kernel::CreateCallback(s_self, entryOf(function));
}

/// A button of the highlight plug-in.
struct Button {
  const char *name;
  int direction;
  GLTJumpCode withShift; ///< only notifies those who have registered the hits
  const char *key, *label;
};
constexpr Button buttons[] = {{"TavrelGLT:Prev", -1, GLT_JUMP_PREV_BEYOND, "Shift<Key>F3", "Previous Hit"},
                              {"TavrelGLT:Next", 1, GLT_JUMP_NEXT_BEYOND, "<Key>F3", "Next Hit"}};

const Button &buttonOf(const void *clientData) { return *static_cast<const Button *>(clientData); }

void pressed(ToolButton /*button*/, void *clientData) {
  Doc document = TavrelView::GetFrontDoc();
  if (document == nullptr) return;
  if ((TavrelView::GetModifierKeyState() & modifierShift) != 0)
    TavrelGLT::GLT_Jump(document, buttonOf(clientData).withShift);
  else
    step(document, buttonOf(clientData).direction);
}

Bool16 isEnabled(ToolButton /*button*/, void *clientData) {
  return canStep(TavrelView::GetFrontDoc(), buttonOf(clientData).direction) ? 1 : 0;
}

/// Hiding the buttons through the table leaves them on the tool bar, so what they call is replaced.
void takeOverButtons() {
  ToolBar bar = TavrelView::GetToolBar();
  for (const Button &one : buttons) {
    ToolButton button = TavrelView::ToolBarFindButton(bar, Kernel::AtomFromString(one.name));
    if (button == nullptr) continue;
    auto *clientData = const_cast<Button *>(&one);
    TavrelView::ToolButtonAttachAction(button, callbackOf(pressed), clientData);
    TavrelView::ToolButtonAttachEnabledTest(button, callbackOf(isEnabled), clientData);
    TavrelView::ToolButtonAttachKey(button, one.key);
    TavrelView::ToolButtonAttachLabel(button, one.label);
  }
}

void pageDrawn(PageView view, void * /*clientData*/) { showCurrentHit(view); }

/// Draw procedures are called in order of registration, and the highlight plug-in's one paints the marks. When the
/// first document opens, all plug-ins have registered theirs and made their buttons, so this one runs last. A repeated
/// registration has no effect.
void documentOpened(Doc document, void * /*clientData*/) {
  TavrelView::RegisterPageDrawProc(callbackOf(pageDrawn), nullptr);
  if (!TavrelView::PageViewIsInWindow(TavrelView::DocGetPageView(document))) return;
  takeOverButtons();
  goToFirstHitOfPage(document); // hits that the document was opened with
}

void markedPageChosen(Doc document, void * /*clientData*/) { goToFirstHitOfPage(document); }

void pageAwaited(Doc document, void * /*clientData*/) { showNumber(document); }

void documentClosed(Doc document, void * /*clientData*/) { forgetHits(document); }

uint32_t importTables() {
  gTavrelGLTHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelGLT"), tavrelGLTVersion);
  return 1;
}

uint32_t initialise() {
  if (gTavrelGLTHFT == nullptr) return 1;
  startSteps(s_self, callbackOf(writeRow), callbackOf(goToRow));
  TavrelView::RegisterNotification(notifyDocDidOpen, s_self, callbackOf(documentOpened), nullptr);
  TavrelView::RegisterNotification(notifyDocDidClose, s_self, callbackOf(documentClosed), nullptr);
  TavrelView::RegisterNotification(notifyPageAwaited, s_self, callbackOf(pageAwaited), nullptr);
  TavrelView::RegisterNotification(notifyMarkedPageChosen, s_self, callbackOf(markedPageChosen), nullptr);
  return 1;
}

uint32_t unload() {
  endSteps();
  return 1;
}

uint32_t shakeHands(uint32_t /*version*/, HandshakeRecord *record) {
  record->name = Kernel::AtomFromString("HitSteps");
  record->importTables = callbackOf(importTables);
  record->initialise = callbackOf(initialise);
  record->unload = callbackOf(unload);
  return 1;
}

uint32_t setUp(uint32_t version, SetupRecord *record) {
  if (version != handshakeVersion) return 0;
  s_self = record->extension;
  gKernelHFT = record->kernel;
  gTavrelSupportHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelSupport"), 0x00050000);
  gDocModelHFT = Kernel::RequestTable(Kernel::AtomFromString("DocModel"), docModelVersion);
  gTavrelViewHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelView"), tavrelViewVersion);
  if (gTavrelSupportHFT == nullptr || gDocModelHFT == nullptr || gTavrelViewHFT == nullptr) return 0;
  record->handshake = callbackOf(shakeHands);
  return 1;
}

} // namespace

TAVREL_PLUGIN_VERSION("2.0");

// The exported `main`. It has another name in the source because it has three arguments. Its visibility is protected:
// otherwise the `main` of the program would be used instead.
extern "C" [[gnu::visibility("protected")]] uint32_t hitStepsMain(uint32_t hostVersion, uint32_t *outVersion,
                                                                  void **outSetupProc) __asm__("main");

extern "C" uint32_t hitStepsMain(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc) {
  *outVersion = std::min(hostVersion, handshakeVersion);
  *outSetupProc = functionOf<void *>(entryOf(setUp));
  return 1;
}
