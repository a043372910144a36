// A plug-in that hands back a function that it did not make a callback.
#include "TestPlugin.h"

const TestPlugin testPlugin = {.name = "strangecallback", .strangeCallback = true};
