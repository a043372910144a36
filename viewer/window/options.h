// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The command line's options for the display, and the default resources. Includes no X header: their macros conflict
// with other headers.
#pragma once

#include <string>
#include <vector>

namespace viewer {

struct ToolkitOptions {
  std::string display;                ///< empty: DISPLAY of the environment
  std::string geometry;               ///< in X's syntax: "900x1000+10+10"; empty: as large as a page
  std::vector<std::string> resources; ///< lines such as "Tavrel*page.background: grey"
};

/// All resources that a user can change, with their defaults: the text of share/Tavrel.ad. It lists the keys of the
/// page in a comment, because a user's translations are merged with the program's (actions.h).
const char *defaultResources();

} // namespace viewer
