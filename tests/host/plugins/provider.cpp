// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that offers a table.
#include "LoadedPlugin.h"
#include "peer.h"

const LoadedPlugin loadedPlugin = {.name = "provider", .exportTables = offerTable};
