// A plug-in that uses the table of "pong", which uses its own.
#include "TestPlugin.h"
#include "peer.h"

const TestPlugin testPlugin = {
    .name = "ping", .exportTables = offerTable, .importTables = [] { getTable("pong"); }, .unload = askPeer};
