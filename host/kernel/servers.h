// Tables by name and version: the host's own, and those that plug-ins offer through servers.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/kernel/atoms.h"
#include "host/kernel/handles.h"
#include "tavrel/TavrelSupport.h"

namespace host {

/// A plug-in's offer of a table.
struct Server {
  std::string name;
  tavrel::ExtensionID extension;
  tavrel::ProvideProc provide;
  tavrel::DestroyProc destroy;
  void *clientData;
};

class TableRegistry {
public:
  /// Makes a table of the host's own known at exactly this version. The entries live as long as the registry.
  void add(tavrel::Atom name, uint32_t version, tavrel::HFT entries);
  /// The host's table, or what a plug-in's server gives for that version, or null.
  tavrel::HFT request(tavrel::Atom name, uint32_t version);

  /// Throws errBadArgument without a provide procedure and for a name that is taken.
  tavrel::HFTServer newServer(Atoms &atoms, const Server &server);
  /// A table of empty selectors; throws errBadHandle for an unknown server, errBadArgument for no selectors at all.
  tavrel::HFT newTable(tavrel::HFTServer server, uint32_t selectors);
  /// Throws errBadHandle for a table that newTable did not give; null is let pass.
  void destroyTable(tavrel::HFT table);
  /// Throws errBadHandle for such a table and errBadArgument for a selector beyond its end.
  void replaceEntry(tavrel::HFT table, uint32_t selector, tavrel::Callback callback);

  /// Calls the destroy procedures, the newest server first; the servers are gone then.
  void destroyServers();

  size_t tableCount() const { return tables_.size(); }

private:
  static uint64_t key(tavrel::Atom name, uint32_t version) { return uint64_t{name} << 32U | version; }

  std::unordered_map<uint64_t, tavrel::HFT> hostTables_;
  std::unordered_map<tavrel::Atom, Server *> serversByName_;
  std::vector<tavrel::Atom> hostNames_;
  std::vector<std::unique_ptr<Server>> servers_;
  Handles<tavrel::HFTServer, Server> serverHandles_{"table server"};
  std::unordered_map<tavrel::HFT, std::vector<tavrel::Entry>> tables_; ///< by the address of their entries
};

} // namespace host
