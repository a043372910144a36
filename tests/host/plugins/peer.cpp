// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// One table offered, one used. Every call is noted in the journal.
#include "peer.h"

#include "LoadedPlugin.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelSupport.h"

tavrel::HFT gTavrelSupportHFT;
static tavrel::HFT gPeerHFT;

namespace {

constexpr uint32_t version = 1;
constexpr tavrel::Operation<gPeerHFT, 0, void()> ask{"ask"};

tavrel::HFT offered;

void answer() { noteCall("is asked"); }

tavrel::HFT provide(tavrel::HFTServer server, uint32_t) {
  noteCall("provides");
  if (offered == nullptr) {
    offered = TavrelSupport::NewHFT(server, 1);
    TavrelSupport::ReplaceHFTEntry(offered, 0, Kernel::CreateCallback(self, tavrel::entryOf(answer)), 0);
  }
  return offered;
}

void destroy(tavrel::HFTServer) {
  noteCall("destroys");
  TavrelSupport::DestroyHFT(offered);
}

// A library stays loaded from one test to the next: what an earlier host gave is forgotten.
void makeServer(tavrel::DestroyProc destroyProc) {
  offered = nullptr;
  gTavrelSupportHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelSupport"), 0x00050000);
  TavrelSupport::NewHFTServer(loadedPlugin.name, provide, destroyProc, nullptr);
}

} // namespace

void offerTable() { makeServer(destroy); }

void offerTableForEver() { makeServer(nullptr); }

void getTable(const char *plugin) { gPeerHFT = Kernel::RequestTable(Kernel::AtomFromString(plugin), version); }

void askPeer() { ask(); }
