// A plug-in that offers a table.
#include "LoadedPlugin.h"
#include "peer.h"

const LoadedPlugin loadedPlugin = {.name = "provider", .exportTables = offerTable};
