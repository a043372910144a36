// A plug-in that fails at its set-up.
#include "TestPlugin.h"

const TestPlugin testPlugin = {.name = "nosetup", .setupResult = 0};
