// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The program `tavrel`. The commands without a window are in a library, which tests link.
#include <csignal>

#include "tools/commands.h"
#include "tools/view.h"

int main(int argc, char **argv) {
  std::signal(SIGCHLD, SIG_DFL); // if it is ignored, as the caller may have done, nobody learns how a process has ended
  return tools::runCommands(argc, argv, {tools::addViewCommand});
}
