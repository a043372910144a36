// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The runtime of plug-ins: atoms, callbacks, frames, memory, tables. It knows no document and no window; the layers
// above register their tables here.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/kernel/atoms.h"
#include "host/kernel/callbacks.h"
#include "host/kernel/current.h"
#include "host/kernel/extensions.h"
#include "host/kernel/frames.h"
#include "host/kernel/memory.h"
#include "host/kernel/servers.h"

namespace host {

/// Notified of what happens to plug-ins, so that a layer above can restore what one leaves open.
class CallWatcher {
public:
  virtual ~CallWatcher() = default;
  virtual void beforeCall() = 0;
  virtual void afterCall() noexcept = 0;
  /// The plug-in is not called any more: what it registered is to be dropped.
  virtual void retired(tavrel::ExtensionID /*extension*/) {}
};

class Runtime : public Current<Runtime> {
public:
  /// Has the tables "Kernel", "TavrelSupport", "Cobble" and "TSExtra" from the start.
  Runtime();

  /// Registers one more table.
  void addTable(const char *name, uint32_t version, tavrel::HFT entries);

  /// One line about a plug-in's error; printed on standard error unless `reporter` is replaced.
  void report(const std::string &line) const { reporter(line); }
  std::function<void(const std::string &line)> reporter;

  void watch(CallWatcher *watcher);
  void unwatch(CallWatcher *watcher);

  /// From now on the plug-in is not called any more, its callbacks are unknown, and what it registered is dropped.
  void retire(tavrel::ExtensionID extension);

  /// The plug-in being called at present, or `hostExtension`.
  tavrel::ExtensionID running() const { return running_; }
  // For plugincall.cpp only. leave takes the result of enter.
  tavrel::ExtensionID enter(tavrel::ExtensionID extension);
  void leave(tavrel::ExtensionID caller) noexcept;

  Extensions extensions;
  Atoms atoms;
  Callbacks callbacks;
  FrameStack frames;
  Memory memory;
  TableRegistry tables;

private:
  std::vector<CallWatcher *> watchers_;
  tavrel::ExtensionID running_ = hostExtension;
};

/// The "Kernel" table, which the set-up record contains.
tavrel::HFT kernelTable();
/// The "TavrelSupport" table.
tavrel::HFT supportTable();

} // namespace host
