// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The order of unloading, a function of the uses of tables. The loader asks it before each plug-in that ends, because a
// plug-in may still get tables while others end.
#include "host/kernel/unloadorder.h"

#include <algorithm>
#include <vector>

namespace host {
namespace {

using Plugins = std::set<tavrel::ExtensionID>;
using Side = tavrel::ExtensionID TableUse::*;

// The plug-ins that are reached from one by following the uses from one side to the other, any number of times.
Plugins reachable(tavrel::ExtensionID start, std::span<const TableUse> uses, Side from, Side to) {
  Plugins reached;
  std::vector<tavrel::ExtensionID> pending = {start};
  while (!pending.empty()) {
    const tavrel::ExtensionID plugin = pending.back();
    pending.pop_back();
    for (const TableUse &use : uses)
      if (use.*from == plugin && reached.insert(use.*to).second) pending.push_back(use.*to);
  }
  return reached;
}

// Whether every client of the plug-in, direct or indirect, is also its provider, as in a circle.
bool mayEnd(tavrel::ExtensionID plugin, std::span<const TableUse> uses) {
  const Plugins clients = reachable(plugin, uses, &TableUse::provider, &TableUse::client);
  const Plugins providers = reachable(plugin, uses, &TableUse::client, &TableUse::provider);
  return std::includes(providers.begin(), providers.end(), clients.begin(), clients.end());
}

} // namespace

tavrel::ExtensionID nextToEnd(std::span<const tavrel::ExtensionID> running, const std::set<TableUse> &uses) {
  const auto runs = [&](tavrel::ExtensionID one) {
    return std::find(running.begin(), running.end(), one) != running.end();
  };
  std::vector<TableUse> left;
  std::copy_if(uses.begin(), uses.end(), std::back_inserter(left),
               [&](const TableUse &use) { return runs(use.client) && runs(use.provider); });
  // There is always one: circles taken as one, the uses that are left form no circle.
  return *std::find_if(running.rbegin(), running.rend(),
                       [&](tavrel::ExtensionID plugin) { return mayEnd(plugin, left); });
}

} // namespace host
