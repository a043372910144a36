// A plug-in that fails at its entry point.
#include "TestPlugin.h"

const TestPlugin testPlugin = {.name = "refuses", .mainResult = 0};
