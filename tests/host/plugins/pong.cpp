// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that uses the table of "ping", which uses its own, and does not destroy its table.
#include "LoadedPlugin.h"
#include "peer.h"

const LoadedPlugin loadedPlugin = {
    .name = "pong", .exportTables = offerTableForEver, .importTables = [] { getTable("ping"); }, .unload = askPeer};
