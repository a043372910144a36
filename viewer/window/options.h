// What the display is told from the command line, and what can be changed there. Includes no X header, whose macros get
// in the way of others.
#pragma once

#include <string>
#include <vector>

namespace viewer {

struct ToolkitOptions {
  std::string display;                ///< empty: that of the environment
  std::string geometry;               ///< as X has it: "900x1000+10+10"; empty: as large as a page
  std::vector<std::string> resources; ///< lines such as "Tavrel*ground: grey"
};

/// The resources that hold where nobody says otherwise: an app-defaults file. Keys are not in it (actions.h).
const char *defaultResources();
/// The same with the keys: all that a user can change.
std::string allResources();

} // namespace viewer
