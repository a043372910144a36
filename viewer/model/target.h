// What is to be opened: a file, and what stands behind its name.
#pragma once

#include <filesystem>
#include <string>

namespace viewer {

struct Target {
  std::filesystem::path file;
  std::string parameters; ///< "page=3&xml=hits.xml"; what they mean is plug-ins' business
  bool operator==(const Target &) const = default;
};

/// "paper.pdf#page=3": the name ends at the first '#', unless there is a file with one in its name.
Target targetOf(const std::string &argument);

/// Adds a parameter; its value is encoded so that it may hold anything.
void addParameter(Target &target, const std::string &name, const std::string &value);

} // namespace viewer
