// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// `tavrel view`: the viewer with its window, from the command line to its end.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/document/processes.h"
#include "viewer/model/target.h"
#include "viewer/window/options.h"

namespace viewer {

enum class ViewEnd {
  closed,      ///< by the user, or with the outer window
  noDocument,  ///< likewise, and no document was ever open, though some were requested
  hostFailure, ///< no display, no such window
};

struct ViewOptions {
  std::vector<Target> documents;
  std::vector<std::string> refused; ///< for each further document that was requested: why it cannot be opened
  std::string note;                 ///< shown in a dialog from the start; empty: none
  std::string password;
  std::string into; ///< the number of the window in which to be embedded; empty: a separate window
  std::filesystem::path pluginsDirectory;
  std::filesystem::path testSocket; ///< the socket on which a test listens; empty: none
  ToolkitOptions toolkit;
  host::ProcessOptions processes;
};

/// Returns when the viewer is closed. Errors are printed to standard error.
ViewEnd view(const ViewOptions &options);

} // namespace viewer
