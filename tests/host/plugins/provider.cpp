// A plug-in that offers a table.
#include "TestPlugin.h"
#include "peer.h"

const TestPlugin testPlugin = {.name = "provider", .exportTables = offerTable};
