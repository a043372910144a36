// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The host's tables and the plug-ins' servers. The runtime owns the only registry and fills it (addTable); RequestTable
// and the TavrelSupport table work on it.
#include "host/kernel/servers.h"

#include <algorithm>
#include <iterator>

#include "host/kernel/extensions.h"
#include "host/kernel/plugincall.h"
#include "host/kernel/table.h"

namespace host {
namespace {

// What is called in place of an operation of a table that has been destroyed or whose plug-in has ended. The arguments
// are those of the operation; they are not read, and nothing is returned.
void raiseRetired() {
  noteReason("an operation of a plug-in that has ended or taken its table back");
  raise(tavrel::errBadHandle);
}

} // namespace

void TableRegistry::add(tavrel::Atom name, uint32_t version, tavrel::HFT entries) {
  hostTables_[key(name, version)] = entries;
  hostNames_.push_back(name);
}

tavrel::HFT TableRegistry::request(tavrel::ExtensionID client, tavrel::Atom name, uint32_t version) {
  if (const auto found = hostTables_.find(key(name, version)); found != hostTables_.end()) return found->second;
  const auto found = serversByName_.find(name);
  if (found == serversByName_.end()) return nullptr;
  const tavrel::ExtensionID provider = found->second->extension;
  const tavrel::HFT table = callPlugin({provider, "the provide procedure"}, found->second->provide,
                                       serverHandles_.handle(found->second), version);
  if (table != nullptr && client != hostExtension && client != provider) uses_.insert({client, provider});
  return table;
}

tavrel::HFTServer TableRegistry::newServer(Atoms &atoms, const Server &server) {
  if (server.provide == nullptr) throw HostError(tavrel::errBadArgument, "a table server without a provide procedure");
  if (closed_.contains(server.extension))
    throw HostError(tavrel::errBadArgument, "a table server of a plug-in that is ending");
  const tavrel::Atom name = atoms.atom(server.name);
  if (serversByName_.contains(name) || std::find(hostNames_.begin(), hostNames_.end(), name) != hostNames_.end())
    throw HostError(tavrel::errBadArgument, "a second table named " + server.name);
  servers_.push_back(std::make_unique<Server>(server));
  serversByName_[name] = servers_.back().get();
  return serverHandles_.add(servers_.back().get());
}

tavrel::HFT TableRegistry::newTable(tavrel::HFTServer server, uint32_t selectors) {
  constexpr uint32_t largest = 0x10000;
  const Server &owner = serverHandles_.find(server);
  if (selectors == 0 || selectors > largest)
    throw HostError(tavrel::errBadArgument, "a table of " + std::to_string(selectors) + " selectors");
  if (selectors > mostSelectors - selectors_) throw HostError(tavrel::errNoMemory, "too many tables");
  std::vector<tavrel::Entry> entries(selectors);
  tavrel::HFT table = entries.data(); // moving a vector leaves its elements where they are
  tables_.emplace(table, Offered{owner.extension, std::move(entries)});
  selectors_ += selectors;
  return table;
}

TableRegistry::Offered &TableRegistry::find(tavrel::HFT table) {
  const auto found = tables_.find(table);
  if (found == tables_.end() || found->second.destroyed) throw HostError(tavrel::errBadHandle, "no such table");
  return found->second;
}

void TableRegistry::destroyTable(tavrel::HFT table) {
  if (table == nullptr) return;
  Offered &offered = find(table);
  offered.destroyed = true;
  std::fill(offered.entries.begin(), offered.entries.end(), raiseRetired);
}

void TableRegistry::replaceEntry(tavrel::HFT table, uint32_t selector, tavrel::Callback callback) {
  Offered &offered = find(table);
  if (selector >= offered.entries.size())
    throw HostError(tavrel::errBadArgument, "no selector " + std::to_string(selector) + " in the table");
  offered.entries[selector] = callback;
}

void TableRegistry::closeServers(tavrel::ExtensionID extension) {
  closed_.insert(extension);
  const auto isOwn = [=](const auto &server) { return server->extension == extension; };
  for (;;) {
    const auto newest = std::find_if(servers_.rbegin(), servers_.rend(), isOwn);
    if (newest == servers_.rend()) return;
    // Removed from every list before it is called: a destroy procedure may do anything with tables and servers.
    const auto forget = [this](Server *server) {
      serverHandles_.remove(server);
      delete server;
    };
    const std::unique_ptr<Server, decltype(forget)> server(newest->release(), forget);
    servers_.erase(std::next(newest).base());
    std::erase_if(serversByName_, [&](const auto &named) { return named.second == server.get(); });
    if (server->destroy != nullptr)
      callPlugin({extension, "the destroy procedure"}, server->destroy, serverHandles_.handle(server.get()));
  }
}

void TableRegistry::retire(tavrel::ExtensionID extension, const Callbacks &callbacks) noexcept {
  for (auto &[table, offered] : tables_)
    for (tavrel::Entry &entry : offered.entries)
      if (offered.extension == extension || callbacks.isOwnedBy(entry, extension)) entry = raiseRetired;
}

size_t TableRegistry::tableCount() const {
  return static_cast<size_t>(
      std::count_if(tables_.begin(), tables_.end(), [](const auto &table) { return !table.second.destroyed; }));
}

} // namespace host
