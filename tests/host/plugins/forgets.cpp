// A plug-in that leaves an exception frame open.
#include "TestPlugin.h"
#include "tavrel/Kernel.h"

static tavrel::ExceptionFrame forgotten;

const TestPlugin testPlugin = {
    .name = "forgets", .initialise = [] { Kernel::PushExceptionFrame(&forgotten, [](tavrel::ExceptionFrame *) {}); }};
