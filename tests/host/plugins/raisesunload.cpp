// A plug-in that raises in its unload callback.
#include "TestPlugin.h"
#include "tavrel/Kernel.h"

const TestPlugin testPlugin = {.name = "raisesunload", .unload = [] { Kernel::RaiseError(tavrel::errGeneric); }};
