// A plug-in that uses the table of "ping", which uses its own.
#include "TestPlugin.h"
#include "peer.h"

const TestPlugin testPlugin = {
    .name = "pong", .exportTables = offerTable, .importTables = [] { getTable("ping"); }, .unload = askPeer};
