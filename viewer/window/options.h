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

/// All resources that a user can change, with their defaults: the text of share/Tavrel.ad. The keys of the page are in
/// it as a comment, because a user's translations add to the program's (actions.h).
const char *defaultResources();

} // namespace viewer
