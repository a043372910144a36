// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Test access to the plug-in's internals: resetting it to the state at load, and the names of its functions and objects
// that it passes to a host.
#pragma once

#include <map>
#include <string>

#include "tavrel/types.h"

/// Frees the plug-in's memory and clears its globals and caches.
void resetPlugin();

/// The functions that the plug-in passes to a host, by name.
const std::map<std::string, tavrel::Entry> &pluginFunctions();

/// The objects whose address it passes to a host, by name.
const std::map<std::string, const void *> &pluginObjects();
