// A plug-in that raises in its initialisation.
#include "LoadedPlugin.h"
#include "tavrel/Kernel.h"

const LoadedPlugin loadedPlugin = {.name = "raises", .initialise = [] { Kernel::RaiseError(tavrel::errDocument); }};
