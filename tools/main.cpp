// The program `tavrel`; the commands without a window are in a library, for tests.
#include "tools/commands.h"
#include "tools/view.h"

int main(int argc, char **argv) { return tools::runCommands(argc, argv, {tools::addViewCommand}); }
