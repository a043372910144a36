// A plug-in that does everything right.
#include "LoadedPlugin.h"

const LoadedPlugin loadedPlugin = {.name = "good"};
