// A plug-in that does everything right.
#include "TestPlugin.h"

const TestPlugin testPlugin = {.name = "good"};
