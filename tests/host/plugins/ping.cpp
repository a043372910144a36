// A plug-in that uses the table of "pong", which uses its own.
#include "LoadedPlugin.h"
#include "peer.h"

const LoadedPlugin loadedPlugin = {
    .name = "ping", .exportTables = offerTable, .importTables = [] { getTable("pong"); }, .unload = askPeer};
