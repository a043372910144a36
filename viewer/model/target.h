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

/// Whether it begins as the address of a file does: "file:".
bool isAddress(const std::string &argument);

/// "paper.pdf#page=3": the name ends at the first '#', unless a file exists with a '#' in its name. An address such as
/// "file:///home/me/my%20paper.pdf#page=3", unless it is the name of a file, is decoded. Throws host::DocumentError
/// with one clear line for an address of another machine's file, or of none.
Target targetOf(const std::string &argument);

/// Whether the parameters name a highlight file: "xml=hits.xml".
bool hasHighlightFile(const Target &target);

/// Adds a parameter; its value is percent-encoded, so that it may contain any byte.
void addParameter(Target &target, const std::string &name, const std::string &value);

} // namespace viewer
