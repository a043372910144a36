// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Tables by name and version: the host's own, and those that plug-ins offer through servers.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/kernel/atoms.h"
#include "host/kernel/callbacks.h"
#include "host/kernel/handles.h"
#include "host/kernel/unloadorder.h"
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

// A table is named by its address, because plug-ins call through it. The address never names another table: the memory
// of a destroyed table stays reserved, and its entries raise errBadHandle, so that a plug-in that still holds the table
// fails instead of calling a function that may not be called any more. `mostSelectors` bounds what is reserved.
class TableRegistry {
public:
  /// Selectors that plug-ins' tables may have together, those destroyed included.
  static constexpr size_t mostSelectors = 1U << 20U;

  /// Registers a table of the host at exactly this version. The entries live as long as the registry.
  void add(tavrel::Atom name, uint32_t version, tavrel::HFT entries);
  /// The host's table, or what a plug-in's server gives for that version, or null. Remembers that the client, if it is
  /// a plug-in, uses the server's.
  tavrel::HFT request(tavrel::ExtensionID client, tavrel::Atom name, uint32_t version);
  /// Which plug-ins got tables of others.
  const std::set<TableUse> &uses() const { return uses_; }

  /// Throws errBadArgument without a provide procedure, for a name that is taken, and for a plug-in whose servers were
  /// closed.
  tavrel::HFTServer newServer(Atoms &atoms, const Server &server);
  /// A table of empty selectors; throws errBadHandle for an unknown server, errBadArgument for no selectors at all,
  /// errNoMemory beyond `mostSelectors`.
  tavrel::HFT newTable(tavrel::HFTServer server, uint32_t selectors);
  /// Throws errBadHandle for a table that newTable did not give or that is destroyed already; null is ignored.
  void destroyTable(tavrel::HFT table);
  /// Throws errBadHandle for a table that is unknown or destroyed and errBadArgument for a selector beyond its end.
  void replaceEntry(tavrel::HFT table, uint32_t selector, tavrel::Callback callback);

  /// Removes a plug-in's servers and calls their destroy procedures, each once, the newest server first. A server can
  /// not be requested any more when its procedure is called. From now on the plug-in makes no new server.
  void closeServers(tavrel::ExtensionID extension);
  /// Makes the entries of a plug-in raise errBadHandle: all of its own tables, and its callbacks in others.
  void retire(tavrel::ExtensionID extension, const Callbacks &callbacks) noexcept;

  /// Tables of plug-ins that are not destroyed.
  size_t tableCount() const;

private:
  struct Offered {
    tavrel::ExtensionID extension;
    std::vector<tavrel::Entry> entries; // never grows: a table is their address
    bool destroyed = false;
  };
  Offered &find(tavrel::HFT table);
  static uint64_t key(tavrel::Atom name, uint32_t version) { return uint64_t{name} << 32U | version; }

  std::unordered_map<uint64_t, tavrel::HFT> hostTables_;
  std::unordered_map<tavrel::Atom, Server *> serversByName_;
  std::vector<tavrel::Atom> hostNames_;
  std::vector<std::unique_ptr<Server>> servers_;
  Handles<tavrel::HFTServer, Server> serverHandles_{"table server"};
  std::unordered_map<tavrel::HFT, Offered> tables_; ///< by the address of their entries
  size_t selectors_ = 0;                            ///< of all of `tables_`
  std::set<TableUse> uses_;
  std::set<tavrel::ExtensionID> closed_;
};

} // namespace host
