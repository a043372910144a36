// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that puts a hit on each of the first three pages of every document and shows the code of each jump that it
// is notified of on the status line.
#include <algorithm>
#include <cstdio>

#include "tavrel/Kernel.h"
#include "tavrel/TavrelGLT.h"
#include "tavrel/TavrelView.h"
#include "tavrel/plugin.h"

using namespace tavrel;

HFT gKernelHFT, gTavrelViewHFT, gTavrelGLTHFT;

namespace {

ExtensionID s_self;

template <typename Function> Callback callbackOf(Function function) {
  return Kernel::CreateCallback(s_self, entryOf(function));
}

void jumped(Doc /*document*/, HLL * /*list*/, uint32_t code, void * /*userData*/) {
  char text[32];
  std::snprintf(text, sizeof text, "jump %u", code);
  TavrelView::SetStatusText(s_self, text);
}

void documentOpened(Doc document, void * /*clientData*/) {
  HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
  for (int32_t page = 0; page < 3; ++page)
    TavrelGLT::HLL_AddHL(list, page, 0, 4);
  TavrelGLT::GLT_RegisterHLL(document, list, GLT_CHARACTER_OFFSETS, jumped, nullptr, 1, nullptr);
  TavrelGLT::GLT_DeleteHLL(list);
}

uint32_t importTables() {
  gTavrelGLTHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelGLT"), tavrelGLTVersion);
  return 1;
}

uint32_t initialise() {
  TavrelView::RegisterNotification(notifyDocDidOpen, s_self, callbackOf(documentOpened), nullptr);
  return 1;
}

uint32_t shakeHands(uint32_t /*version*/, HandshakeRecord *record) {
  record->name = Kernel::AtomFromString("jumps");
  record->importTables = callbackOf(importTables);
  record->initialise = callbackOf(initialise);
  return 1;
}

uint32_t setUp(uint32_t /*version*/, SetupRecord *record) {
  s_self = record->extension;
  gKernelHFT = record->kernel;
  gTavrelViewHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelView"), tavrelViewStatusVersion);
  if (gTavrelViewHFT == nullptr) return 0;
  record->handshake = callbackOf(shakeHands);
  return 1;
}

} // namespace

extern "C" [[gnu::visibility("protected")]] uint32_t jumpsMain(uint32_t hostVersion, uint32_t *outVersion,
                                                               void **outSetupProc) __asm__("main");

extern "C" uint32_t jumpsMain(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc) {
  *outVersion = std::min(hostVersion, handshakeVersion);
  *outSetupProc = functionOf<void *>(entryOf(setUp));
  return 1;
}
