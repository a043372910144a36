// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in with three buttons: "buttons:Always" is shown in an embedded viewer, too, "buttons:OwnWindow" is not, and
// "buttons:Detach" removes the application's button NextPage from the tool bar.
#include <algorithm>

#include "tavrel/Kernel.h"
#include "tavrel/TavrelView.h"
#include "tavrel/plugin.h"

using namespace tavrel;

HFT gKernelHFT, gTavrelViewHFT;

namespace {

ExtensionID s_self;

template <typename Function> Callback callbackOf(Function function) {
  return Kernel::CreateCallback(s_self, entryOf(function));
}

void detachNextPage(ToolButton /*button*/, void * /*clientData*/) {
  const ToolButton next = TavrelView::ToolBarFindButton(TavrelView::GetToolBar(), Kernel::AtomFromString("NextPage"));
  if (next != nullptr) TavrelView::ToolButtonDetach(next);
}

void nothing(ToolButton /*button*/, void * /*clientData*/) {}

void addButton(const char *name, void (*action)(ToolButton, void *), ButtonAttribute attribute) {
  const ToolButton button = TavrelView::ToolButtonCreate(Kernel::AtomFromString(name), 0, 0, 0);
  TavrelView::ToolButtonAttachAction(button, callbackOf(action), nullptr);
  TavrelView::ToolButtonSetAttribute(button, attribute);
  TavrelView::ToolBarInsertButton(TavrelView::GetToolBar(), button, 0, nullptr);
}

uint32_t initialise() {
  addButton("buttons:Always", nothing, buttonAlsoInBrowser);
  addButton("buttons:OwnWindow", nothing, buttonInternal);
  addButton("buttons:Detach", detachNextPage, buttonInternal);
  return 1;
}

uint32_t shakeHands(uint32_t /*version*/, HandshakeRecord *record) {
  record->name = Kernel::AtomFromString("buttons");
  record->initialise = callbackOf(initialise);
  return 1;
}

uint32_t setUp(uint32_t /*version*/, SetupRecord *record) {
  s_self = record->extension;
  gKernelHFT = record->kernel;
  gTavrelViewHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelView"), tavrelViewVersion);
  if (gTavrelViewHFT == nullptr) return 0;
  record->handshake = callbackOf(shakeHands);
  return 1;
}

} // namespace

extern "C" [[gnu::visibility("protected")]] uint32_t buttonsMain(uint32_t hostVersion, uint32_t *outVersion,
                                                                 void **outSetupProc) __asm__("main");

extern "C" uint32_t buttonsMain(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc) {
  *outVersion = std::min(hostVersion, handshakeVersion);
  *outSetupProc = functionOf<void *>(entryOf(setUp));
  return 1;
}
