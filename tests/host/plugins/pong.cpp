// A plug-in that uses the table of "ping", which uses its own, and leaves its table behind.
#include "TestPlugin.h"
#include "peer.h"

const TestPlugin testPlugin = {
    .name = "pong", .exportTables = offerTableForEver, .importTables = [] { getTable("ping"); }, .unload = askPeer};
