// A plug-in that returns a function that it did not make a callback.
#include "LoadedPlugin.h"

const LoadedPlugin loadedPlugin = {.name = "unknowncallback", .unknownCallback = true};
