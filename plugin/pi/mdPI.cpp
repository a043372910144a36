// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Negotiation, set-up and handshake, and the globals in which the host's tables are held for the plug-in's life.
#include "plugin/pi/mdPI.h"

#include "plugin/pi/miPI.h"
#include "tavrel/Desktop.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelSupport.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

ExtensionID gExtensionID = 0;
HFT gKernelHFT, gTavrelSupportHFT, gCobbleHFT, gDocModelHFT, gTavrelViewHFT, gDesktopHFT, gTSExtraHFT;
uint32_t gKernelVersion, gTavrelSupportVersion, gCobbleVersion, gDocModelVersion, gTavrelViewVersion, gDesktopVersion,
    gTSExtraVersion;

namespace {

/// A host table: where it is held, the version asked for first, and the lowest version accepted.
struct NeededTable {
  const char *name;
  HFT *table;
  uint32_t *version;
  uint32_t start, minimum;
};

/// In the order in which they are requested.
constexpr NeededTable neededTables[] = {
    {"TavrelSupport", &gTavrelSupportHFT, &gTavrelSupportVersion, 0x00050000, 0x00050000},
    {"Cobble", &gCobbleHFT, &gCobbleVersion, 0x00050000, 0x00050000},
    {"DocModel", &gDocModelHFT, &gDocModelVersion, 0x00050000, 0x00050000},
    {"TavrelView", &gTavrelViewHFT, &gTavrelViewVersion, 0x00050001, 0x00020002},
    {"Desktop", &gDesktopHFT, &gDesktopVersion, 0x00040000, 0x00020000},
    {"TSExtra", &gTSExtraHFT, &gTSExtraVersion, 0x00050000, 0x00050000},
};

bool acquire(const NeededTable &needed) {
  // Requests every version number from `start` down to `minimum`.
  for (*needed.version = needed.start; *needed.version >= needed.minimum; --*needed.version) {
    *needed.table = Kernel::RequestTable(Kernel::AtomFromString(needed.name), *needed.version);
    if (*needed.table != nullptr) return true;
  }
  return false;
}

} // namespace

uint32_t PINegotiate(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc) {
  *outVersion = hostVersion < handshakeVersion ? hostVersion : handshakeVersion;
  *outSetupProc = functionOf<void *>(entryOf(PISetupSDK));
  return 1;
}

uint32_t PISetupSDK(uint32_t version, SetupRecord *record) {
  if (version != handshakeVersion || record->handshakeVersion != version) return 0;
  gExtensionID = record->extension;
  gKernelVersion = record->handshakeVersion;
  gKernelHFT = record->kernel;
  for (const NeededTable &needed : neededTables)
    if (!acquire(needed)) return 0;
  record->handshake = Kernel::CreateCallback(gExtensionID, entryOf(PIHandshake));
  return 1;
}

uint32_t PIHandshake(uint32_t version, HandshakeRecord *record) {
  if (version != handshakeVersion) return 0;
  record->name = Kernel::AtomFromString("TavrelGLT");
  record->initialise = Kernel::CreateCallback(gExtensionID, entryOf(ExtensionInit));
  record->exportTables = Kernel::CreateCallback(gExtensionID, entryOf(ExtensionExportHFTs));
  record->unload = Kernel::CreateCallback(gExtensionID, entryOf(ExtensionTerm));
  return 1;
}
