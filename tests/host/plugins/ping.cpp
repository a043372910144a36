// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that uses the table of "pong", which uses its own.
#include "LoadedPlugin.h"
#include "peer.h"

const LoadedPlugin loadedPlugin = {
    .name = "ping", .exportTables = offerTable, .importTables = [] { getTable("pong"); }, .unload = askPeer};
