// `tavrel view`: the viewer with its window, from the command line to its end.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "viewer/window/options.h"

namespace viewer {

enum class ViewEnd {
  closed,      ///< by the reader, or with the window around
  noDocument,  ///< none of those asked for could be opened
  hostFailure, ///< no display, no such window
};

struct ViewOptions {
  std::vector<std::string> documents; ///< files, perhaps with parameters behind a '#'
  std::string hits;                   ///< a highlight file for the first document; empty: none
  std::string note;                   ///< shown in a dialog from the start; empty: none
  std::string password;
  std::string into; ///< the number of a window to live in; empty: a window of one's own
  std::filesystem::path pluginsDirectory;
  std::filesystem::path testSocket; ///< where tests listen; empty: nobody does
  ToolkitOptions toolkit;
  /// Ends the program at once, where a thread of ours is still at work; without it, that is waited for.
  std::function<void(ViewEnd end)> leave;
};

/// Returns when the viewer is closed. Complaints go to standard error.
ViewEnd view(const ViewOptions &options);

} // namespace viewer
