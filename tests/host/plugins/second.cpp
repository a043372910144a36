// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that does everything right, too.
#include "LoadedPlugin.h"
#include "tavrel/plugin.h"

const LoadedPlugin loadedPlugin = {.name = "second"};

TAVREL_PLUGIN_VERSION("1.2.3");
