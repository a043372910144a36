// The host's tables and the plug-ins' servers. The runtime owns the one registry; RequestTable and the TavrelSupport
// table work on it, and whoever builds the application fills it.
#include "host/kernel/servers.h"

#include <algorithm>

#include "host/kernel/plugincall.h"

namespace host {

void TableRegistry::add(tavrel::Atom name, uint32_t version, tavrel::HFT entries) {
  hostTables_[key(name, version)] = entries;
  hostNames_.push_back(name);
}

tavrel::HFT TableRegistry::request(tavrel::Atom name, uint32_t version) {
  if (const auto found = hostTables_.find(key(name, version)); found != hostTables_.end()) return found->second;
  const auto found = serversByName_.find(name);
  if (found == serversByName_.end()) return nullptr;
  const Server &server = *found->second;
  return callPlugin({server.extension, "the provide procedure"}, server.provide, serverHandles_.handle(found->second),
                    version);
}

tavrel::HFTServer TableRegistry::newServer(Atoms &atoms, const Server &server) {
  if (server.provide == nullptr) throw HostError(tavrel::errBadArgument, "a table server without a provide procedure");
  const tavrel::Atom name = atoms.atom(server.name);
  if (serversByName_.contains(name) || std::find(hostNames_.begin(), hostNames_.end(), name) != hostNames_.end())
    throw HostError(tavrel::errBadArgument, "a second table named " + server.name);
  servers_.push_back(std::make_unique<Server>(server));
  serversByName_[name] = servers_.back().get();
  return serverHandles_.add(servers_.back().get());
}

tavrel::HFT TableRegistry::newTable(tavrel::HFTServer server, uint32_t selectors) {
  constexpr uint32_t maxSelectors = 0x10000;
  serverHandles_.find(server);
  if (selectors == 0 || selectors > maxSelectors)
    throw HostError(tavrel::errBadArgument, "a table of " + std::to_string(selectors) + " selectors");
  std::vector<tavrel::Entry> entries(selectors);
  tavrel::HFT table = entries.data(); // moving a vector leaves its elements where they are
  tables_.emplace(table, std::move(entries));
  return table;
}

void TableRegistry::destroyTable(tavrel::HFT table) {
  if (table != nullptr && tables_.erase(table) == 0) throw HostError(tavrel::errBadHandle, "no such table");
}

void TableRegistry::replaceEntry(tavrel::HFT table, uint32_t selector, tavrel::Callback callback) {
  const auto found = tables_.find(table);
  if (found == tables_.end()) throw HostError(tavrel::errBadHandle, "no such table");
  if (selector >= found->second.size())
    throw HostError(tavrel::errBadArgument, "no selector " + std::to_string(selector) + " in the table");
  found->second[selector] = callback;
}

void TableRegistry::destroyServers() {
  while (!servers_.empty()) {
    Server &server = *servers_.back();
    if (server.destroy != nullptr)
      callPlugin({server.extension, "the destroy procedure"}, server.destroy, serverHandles_.handle(&server));
    serverHandles_.remove(&server);
    std::erase_if(serversByName_, [&](const auto &named) { return named.second == &server; });
    servers_.pop_back();
  }
}

} // namespace host
