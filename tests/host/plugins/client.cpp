// A plug-in that uses the table of "provider" to its end.
#include "LoadedPlugin.h"
#include "peer.h"

const LoadedPlugin loadedPlugin = {.name = "client", .importTables = [] { getTable("provider"); }, .unload = askPeer};
