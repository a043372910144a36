// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that uses the highlight plug-in's table in its unload callback: it shows the buttons on the tool bar and
// updates their states, which calls their enabled tests. By its name it is loaded before the highlight plug-in.
#include "tavrel/Kernel.h"
#include "tavrel/TavrelGLT.h"
#include "tavrel/TavrelView.h"
#include "tavrel/plugin.h"

using namespace tavrel;

HFT gKernelHFT, gTavrelViewHFT, gTavrelGLTHFT;

namespace {

ExtensionID s_self;

Callback callbackOf(LifecycleProc function) { return Kernel::CreateCallback(s_self, entryOf(function)); }

uint32_t importTables() {
  gTavrelGLTHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelGLT"), tavrelGLTVersion);
  return gTavrelGLTHFT != nullptr;
}

uint32_t unload() {
  const Bool16 shown = TavrelGLT::GLT_ShowButtons(1, nullptr);
  TavrelView::ToolBarUpdateButtonStates(TavrelView::GetToolBar());
  return shown;
}

uint32_t shakeHands(uint32_t /*version*/, HandshakeRecord *record) {
  record->name = Kernel::AtomFromString("Client");
  record->importTables = callbackOf(importTables);
  record->unload = callbackOf(unload);
  return 1;
}

uint32_t setUp(uint32_t /*version*/, SetupRecord *record) {
  s_self = record->extension;
  gKernelHFT = record->kernel;
  gTavrelViewHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelView"), tavrelViewVersion);
  record->handshake = Kernel::CreateCallback(s_self, entryOf(shakeHands));
  return gTavrelViewHFT != nullptr;
}

} // namespace

extern "C" [[gnu::visibility("protected")]] uint32_t clientMain(uint32_t hostVersion, uint32_t *outVersion,
                                                                void **outSetupProc) __asm__("main");

extern "C" uint32_t clientMain(uint32_t /*hostVersion*/, uint32_t *outVersion, void **outSetupProc) {
  *outVersion = handshakeVersion;
  *outSetupProc = functionOf<void *>(entryOf(setUp));
  return 1;
}
