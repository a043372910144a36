// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What is to be opened: a file, and the parameters after its name.
#pragma once

#include <filesystem>
#include <string>

namespace viewer {

struct Target {
  std::filesystem::path file;
  std::string parameters; ///< "page=3&xml=hits.xml"; plug-ins interpret them
  bool operator==(const Target &) const = default;
};

/// "paper.pdf#page=3": the name ends at the first '#', unless a file exists with a '#' in its name.
Target targetOf(const std::string &argument);

/// Adds a parameter; its value is percent-encoded, so that it may contain any byte.
void addParameter(Target &target, const std::string &name, const std::string &value);

} // namespace viewer
