// What tests know of the plug-in's insides: how to bring it back to the state at load, and the names of its functions
// and objects that hosts get to see.
#pragma once

#include <map>
#include <string>

#include "tavrel/types.h"

/// Frees what the plug-in holds and clears its globals and caches.
void resetPlugin();

/// The functions that the plug-in gives to a host, by name.
const std::map<std::string, tavrel::Entry> &pluginFunctions();

/// Objects whose address it gives to a host, by name.
const std::map<std::string, const void *> &pluginObjects();
