// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The command line: the subcommands, and the meaning of their exit statuses.
#pragma once

#include <initializer_list>

namespace CLI {
class App;
}

namespace tools {

/// Adds a subcommand to the parser. The subcommand sets the status when it is called.
using AddCommand = void (*)(CLI::App &app, int &status);

/// Runs the program, with these subcommands besides its own; returns an ExitStatus.
int runCommands(int argc, char **argv, std::initializer_list<AddCommand> more = {});

} // namespace tools
