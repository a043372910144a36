// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that uses the table of "provider" to its end.
#include "LoadedPlugin.h"
#include "peer.h"

const LoadedPlugin loadedPlugin = {.name = "client", .importTables = [] { getTable("provider"); }, .unload = askPeer};
