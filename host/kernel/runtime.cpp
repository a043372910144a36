// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Puts the kernel's parts together. Programs make one runtime before anything else of the host.
#include "host/kernel/runtime.h"

#include <cstdio>
#include <utility>

namespace host {
namespace {

void reportOnStandardError(const std::string &line) { std::fprintf(stderr, "tavrel: %s\n", line.c_str()); }

// Tables that plug-ins require and that have no operations; one empty entry, because the pointer must not be null.
tavrel::HFT emptyTable() {
  static tavrel::Entry none[1] = {};
  return none;
}

struct OwnTable {
  const char *name;
  uint32_t version;
  tavrel::HFT (*entries)();
};

constexpr OwnTable ownTables[] = {
    {"Kernel", 0x00020000, kernelTable},
    {"TavrelSupport", 0x00050000, supportTable},
    {"Cobble", 0x00050000, emptyTable},
    {"TSExtra", 0x00050000, emptyTable},
};

} // namespace

Runtime::Runtime() : reporter(reportOnStandardError) {
  for (const OwnTable &table : ownTables)
    addTable(table.name, table.version, table.entries());
}

void Runtime::addTable(const char *name, uint32_t version, tavrel::HFT entries) {
  tables.add(atoms.atom(name), version, entries);
}

void Runtime::watch(CallWatcher *watcher) { watchers_.push_back(watcher); }

void Runtime::unwatch(CallWatcher *watcher) { std::erase(watchers_, watcher); }

void Runtime::retire(tavrel::ExtensionID extension) {
  extensions.retire(extension);
  callbacks.retire(extension);
  for (CallWatcher *watcher : watchers_)
    watcher->retired(extension);
}

tavrel::ExtensionID Runtime::enter(tavrel::ExtensionID extension) {
  for (CallWatcher *watcher : watchers_)
    watcher->beforeCall();
  return std::exchange(running_, extension);
}

void Runtime::leave(tavrel::ExtensionID caller) noexcept {
  running_ = caller;
  for (CallWatcher *watcher : watchers_)
    watcher->afterCall();
}

} // namespace host
