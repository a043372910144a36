// The program `tavrel`; the commands are in a library, for tests.
#include "tools/commands.h"

int main(int argc, char **argv) { return tools::runCommands(argc, argv); }
