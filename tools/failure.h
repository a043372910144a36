// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// An error that ends a command: the line that it prints, and its exit status.
#pragma once

#include <stdexcept>
#include <string>

#include "tools/exit.h"

namespace tools {

struct CommandFailure : std::runtime_error {
  CommandFailure(ExitStatus exitStatus, const std::string &line) : std::runtime_error(line), status(exitStatus) {}
  ExitStatus status;
};

} // namespace tools
