// A plug-in that does everything right, too.
#include "TestPlugin.h"

const TestPlugin testPlugin = {.name = "second"};
