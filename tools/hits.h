// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// `tavrel hits`: searches a document for a phrase and writes a highlight file of what it finds.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "host/document/processes.h"
#include "tools/search.h"

namespace CLI {
class App;
}

namespace tools {

struct HitsOptions {
  std::filesystem::path document;
  std::vector<std::string> words;
  std::string password;
  std::string units = "characters"; ///< or "words"
  std::string color;                ///< six hexadecimal digits, with or without '#'; empty: the file names none
  std::string mode;                 ///< empty: the file names none
  std::string output = "-";         ///< a file; "-" is standard output
  bool progress = false;            ///< show on `err` which page is being searched
  host::ProcessOptions processes;   ///< how many there are is up to writeHits()
};

/// Searches and writes; returns an ExitStatus. `out` is standard output; errors are reported on `err`.
int writeHits(const HitsOptions &options, std::ostream &out, std::ostream &err);

/// The hits of a page.
struct PageHits {
  int32_t page = 0;
  std::vector<Hit> hits;
};

/// Removes the hits that start after offset (or word) 65534, the last one that a highlight file can hold; returns how
/// many.
size_t dropUnplaceable(std::vector<Hit> &hits, bool inWords);

/// A highlight file. `color` is empty or "#RRGGBB".
std::string highlightFile(std::span<const PageHits> pages, const std::string &units, const std::string &color,
                          const std::string &mode);

/// Adds the subcommand; when it is called it sets `status` to an ExitStatus. Both live as long as the parser.
void addHitsCommand(CLI::App &app, int &status);

} // namespace tools
