// A plug-in that speaks a handshake version that there is not.
#include "TestPlugin.h"

const TestPlugin testPlugin = {.name = "otherversion", .version = 0x00030000};
