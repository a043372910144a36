// A plug-in that raises in its initialisation.
#include "TestPlugin.h"
#include "tavrel/Kernel.h"

const TestPlugin testPlugin = {.name = "raises", .initialise = [] { Kernel::RaiseError(tavrel::errDocument); }};
