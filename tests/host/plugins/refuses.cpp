// A plug-in that fails at its entry point.
#include "LoadedPlugin.h"

const LoadedPlugin loadedPlugin = {.name = "refuses", .mainResult = 0};
