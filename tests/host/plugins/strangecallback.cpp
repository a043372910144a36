// A plug-in that hands back a function that it did not make a callback.
#include "LoadedPlugin.h"

const LoadedPlugin loadedPlugin = {.name = "strangecallback", .strangeCallback = true};
