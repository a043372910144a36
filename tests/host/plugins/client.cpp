// A plug-in that uses the table of "provider" to its end.
#include "TestPlugin.h"
#include "peer.h"

const TestPlugin testPlugin = {.name = "client", .importTables = [] { getTable("provider"); }, .unload = askPeer};
