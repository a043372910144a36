// The command line: which subcommands there are, and what their exit statuses mean.
#pragma once

namespace tools {

/// Runs the program; returns an ExitStatus.
int runCommands(int argc, char **argv);

} // namespace tools
