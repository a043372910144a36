// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// In which order plug-ins end: the clients of a table before the plug-in that offers it.
#pragma once

#include <set>
#include <span>

#include "tavrel/types.h"

namespace host {

/// A plug-in, the client, got a table from a server of another one, the provider.
struct TableUse {
  tavrel::ExtensionID client, provider;
  bool operator==(const TableUse &) const = default;
  bool operator<(const TableUse &other) const {
    return client != other.client ? client < other.client : provider < other.provider;
  }
};

/// Which of the plug-ins that still run, given in order of loading and at least one, ends next: the one loaded last of
/// those without a client among them. Where plug-ins are clients of each other in a circle, the circle counts as one:
/// the one loaded last in it is first, after all clients from outside of the circle.
tavrel::ExtensionID nextToEnd(std::span<const tavrel::ExtensionID> running, const std::set<TableUse> &uses);

} // namespace host
