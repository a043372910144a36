// A plug-in that uses the table of "ping", which uses its own, and does not destroy its table.
#include "LoadedPlugin.h"
#include "peer.h"

const LoadedPlugin loadedPlugin = {
    .name = "pong", .exportTables = offerTableForEver, .importTables = [] { getTable("ping"); }, .unload = askPeer};
