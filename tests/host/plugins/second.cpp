// A plug-in that does everything right, too.
#include "TestPlugin.h"
#include "tavrel/plugin.h"

const TestPlugin testPlugin = {.name = "second"};

TAVREL_PLUGIN_VERSION("1.2.3");
