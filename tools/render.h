// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// `tavrel render`: draws the pages of a document with the hits of a highlight file marked.
#pragma once

#include <filesystem>
#include <string>

#include "host/document/processes.h"

namespace CLI {
class App;
}

namespace tools {

struct RenderOptions {
  std::filesystem::path document;
  std::string hits; ///< a highlight file; "-" is standard input
  std::filesystem::path out = "out";
  double dpi = 100;
  unsigned hitsLimit = 64;    ///< of the highlight file, in megabytes
  std::string pages = "hits"; ///< or "all"
  std::string password;
  std::string answer = "no";              ///< the answer to questions of plug-ins; or "yes"
  std::filesystem::path pluginsDirectory; ///< searched besides the others; may be empty
  host::ProcessOptions processes;         ///< how many there are is up to render()
};

/// Draws and writes the pages. Prints a line for each page on standard output, reports errors on standard error, and
/// returns an ExitStatus.
int render(const RenderOptions &options);

/// Adds the subcommand; when it is called it sets `status` to an ExitStatus. Both live as long as the parser.
void addRenderCommand(CLI::App &app, int &status);

} // namespace tools
