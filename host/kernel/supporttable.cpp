// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The "TavrelSupport" table: memory, servers and fixed-point geometry, by way of the runtime.
#include "tavrel/TavrelSupport.h"

#include "host/kernel/geometry.h"
#include "host/kernel/runtime.h"
#include "host/kernel/table.h"

namespace host {
namespace {

using namespace tavrel;

void *allocate(uint32_t size) {
  Runtime *runtime = Runtime::find();
  return runtime == nullptr ? nullptr : runtime->memory.allocate(runtime->running(), size);
}

void *resize(void *block, uint32_t size) { return Runtime::current().memory.resize(block, size); }

void release(void *block) { Runtime::current().memory.release(block); }

HFTServer newServer(const char *name, ProvideProc provide, DestroyProc destroy, void *clientData) {
  if (name == nullptr) throw HostError(errBadArgument, "a table server without a name");
  Runtime &runtime = Runtime::current();
  return runtime.tables.newServer(runtime.atoms, {name, runtime.running(), provide, destroy, clientData});
}

HFT newTable(HFTServer server, uint32_t selectors) { return Runtime::current().tables.newTable(server, selectors); }

void destroyTable(HFT table) { Runtime::current().tables.destroyTable(table); }

void replaceEntry(HFT table, uint32_t selector, Callback callback, uint32_t flags) {
  Runtime &runtime = Runtime::current();
  runtime.callbacks.owner(callback); // throws for an unknown callback
  if (flags != 0) throw HostError(errBadArgument, "flags of a table entry other than 0");
  runtime.tables.replaceEntry(table, selector, callback);
}

void transformRect(FixedRect *out, const FixedMatrix *matrix, const FixedRect *in) {
  if (out == nullptr || matrix == nullptr || in == nullptr)
    throw HostError(errBadArgument, "a transformation without a rectangle or a matrix");
  *out = transform(*matrix, *in);
}

Table build() {
  Table table("TavrelSupport", ::TavrelSupport::operations);
  table.provideBare<allocate>(::TavrelSupport::Malloc);
  table.provide<resize>(::TavrelSupport::Realloc);
  table.provide<release>(::TavrelSupport::Free);
  table.provide<newServer>(::TavrelSupport::NewHFTServer);
  table.provide<newTable>(::TavrelSupport::NewHFT);
  table.provide<destroyTable>(::TavrelSupport::DestroyHFT);
  table.provide<replaceEntry>(::TavrelSupport::ReplaceHFTEntry);
  table.provide<transformRect>(::TavrelSupport::TransformFixedRect);
  return table;
}

} // namespace

HFT supportTable() {
  static Table table = build();
  return table.entries();
}

} // namespace host
