// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The "Kernel" table: each operation calls the part of the runtime that implements it.
#include "tavrel/Kernel.h"

#include "host/kernel/runtime.h"
#include "host/kernel/table.h"

namespace host {
namespace {

using namespace tavrel;

// Bare: the jump skips no object with a destructor, and nothing throws.
void raiseError(int32_t code) {
  noteReason("raised by the plug-in");
  raise(code);
}

int32_t getExceptionCode() {
  const Runtime *runtime = Runtime::find();
  return runtime == nullptr ? errNone : runtime->frames.code();
}

void pushExceptionFrame(ExceptionFrame *frame, RestoreProc restore) { Runtime::current().frames.push(frame, restore); }

void popExceptionFrame() { Runtime::current().frames.pop(); }

Atom atomFromString(const char *name) {
  if (name == nullptr) throw HostError(errBadArgument, "an atom without a name");
  return Runtime::current().atoms.atom(name);
}

Callback createCallback(ExtensionID extension, Entry function) {
  Runtime &runtime = Runtime::current();
  runtime.extensions.require(extension);
  return runtime.callbacks.create(extension, function);
}

HFT requestTable(Atom name, uint32_t version) {
  Runtime &runtime = Runtime::current();
  return runtime.tables.request(runtime.running(), name, version);
}

Table build() {
  Table table("Kernel", ::Kernel::operations);
  table.provideBare<raiseError>(::Kernel::RaiseError);
  table.provide<pushExceptionFrame>(::Kernel::PushExceptionFrame);
  table.provide<popExceptionFrame>(::Kernel::PopExceptionFrame);
  table.provideBare<getExceptionCode>(::Kernel::GetExceptionCode);
  table.provide<atomFromString>(::Kernel::AtomFromString);
  table.provide<createCallback>(::Kernel::CreateCallback);
  table.provide<requestTable>(::Kernel::RequestTable);
  return table;
}

} // namespace

HFT kernelTable() {
  static Table table = build();
  return table.entries();
}

} // namespace host
