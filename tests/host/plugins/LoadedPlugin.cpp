// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The common part of every plug-in of the loader's tests: it records each call in the journal and behaves as its
// LoadedPlugin specifies.
#include "LoadedPlugin.h"

#include <cstdio>

#include "journal.h"
#include "tavrel/Kernel.h"

tavrel::HFT gKernelHFT, gJournalHFT;

tavrel::ExtensionID self;

void noteCall(const char *what) {
  char line[64];
  std::snprintf(line, sizeof line, "%s %s", loadedPlugin.name, what);
  if (gJournalHFT != nullptr) test::note(line);
}

namespace {

tavrel::Callback callback(tavrel::LifecycleProc function) {
  return Kernel::CreateCallback(self, tavrel::entryOf(function));
}

uint32_t exportTables() {
  noteCall("export");
  if (loadedPlugin.exportTables != nullptr) loadedPlugin.exportTables();
  return 1;
}

uint32_t importTables() {
  loadedPlugin.importTables();
  return 1;
}

uint32_t initialise() {
  noteCall("initialise");
  if (loadedPlugin.initialise != nullptr) loadedPlugin.initialise();
  return 1;
}

uint32_t unload() {
  noteCall("unload");
  if (loadedPlugin.unload != nullptr) loadedPlugin.unload();
  return 1;
}

uint32_t handshake(uint32_t, tavrel::HandshakeRecord *record) {
  noteCall("handshake");
  record->name = Kernel::AtomFromString(loadedPlugin.name);
  record->exportTables = loadedPlugin.unknownCallback ? tavrel::entryOf(exportTables) : callback(exportTables);
  if (loadedPlugin.importTables != nullptr) record->importTables = callback(importTables);
  record->initialise = callback(initialise);
  record->unload = callback(unload);
  return 1;
}

uint32_t setUp(uint32_t, tavrel::SetupRecord *record) {
  self = record->extension;
  gKernelHFT = record->kernel;
  gJournalHFT = Kernel::RequestTable(Kernel::AtomFromString(test::journalName), test::journalVersion);
  noteCall("set up");
  if (!loadedPlugin.noHandshake) record->handshake = Kernel::CreateCallback(self, tavrel::entryOf(handshake));
  return loadedPlugin.setupResult;
}

} // namespace

extern "C" __attribute__((visibility("protected"))) uint32_t loadedPluginMain(uint32_t, uint32_t *version,
                                                                              void **setup) __asm__("main");
uint32_t loadedPluginMain(uint32_t, uint32_t *version, void **setup) {
  *version = loadedPlugin.version;
  *setup = reinterpret_cast<void *>(setUp);
  return loadedPlugin.mainResult;
}
