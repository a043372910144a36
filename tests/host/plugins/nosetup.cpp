// A plug-in that fails at its set-up.
#include "LoadedPlugin.h"

const LoadedPlugin loadedPlugin = {.name = "nosetup", .setupResult = 0};
