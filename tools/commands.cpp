// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The command line of `tavrel`. Each subcommand has a separate source.
#include "tools/commands.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "tools/exit.h"
#include "tools/hits.h"
#include "tools/render.h"

namespace tools {
namespace {

struct StatusLine {
  ExitStatus status;
  const char *meaning;
};

constexpr StatusLine statusLines[] = {
    {exitDone, "done"},
    {exitHostFailure, "no display, a plug-in is missing, or memory is exhausted"},
    {exitUsage, "invalid arguments"},
    {exitDocument, "the document cannot be read"},
    {exitPassword, "the document is encrypted: a password is needed, or another one"},
    {exitNothingMarked, "no hits: nothing found, or nothing marked"},
    {exitHighlightFile, "the highlight file cannot be read"},
    {exitOutput, "an output cannot be written"},
    {exitDamagedPages, "done, but some pages of the document are damaged and left out"},
};

std::string footer() {
  std::string text = "Exit status:\n";
  for (const StatusLine &line : statusLines)
    text += "  " + std::to_string(line.status) + "  " + line.meaning + "\n";
  return text;
}

// Whether the first argument is to be viewed: "tavrel paper.pdf". A mistyped command is no document.
bool isDocument(const CLI::App &app, const std::string &argument) {
  const auto called = [](const std::string &name) {
    return [name](const CLI::App *command) { return command->get_name() == name; };
  };
  if (argument.empty() || argument[0] == '-' || !app.get_subcommands(called(argument)).empty()) return false;
  std::error_code unknown;
  return !app.get_subcommands(called("view")).empty() &&
         (argument.find_first_of("./:#") != std::string::npos || std::filesystem::exists(argument, unknown));
}

} // namespace

int runCommands(int argc, char **argv, std::initializer_list<AddCommand> more) {
  int status = exitDone;
  CLI::App app("Shows search hits in PDF documents. `tavrel DOC` is `tavrel view DOC`.", "tavrel");
  app.set_version_flag("--version", "tavrel " TAVREL_VERSION);
  app.require_subcommand(0, 1); // checked below, so that the error names an unknown command
  app.footer(footer());
  app.failure_message([](const CLI::App *, const CLI::Error &error) {
    return std::string("tavrel: ") + error.what() + " (see tavrel --help)\n";
  });
  for (const AddCommand add : more)
    add(app, status);
  addRenderCommand(app, status);
  addHitsCommand(app, status);
  try {
    std::vector<const char *> arguments(argv, argv + argc);
    if (argc > 1 && isDocument(app, argv[1])) arguments.insert(arguments.begin() + 1, "view");
    app.parse(static_cast<int>(arguments.size()), arguments.data());
    if (app.get_subcommands().empty()) throw CLI::RequiredError("A command");
  } catch (const CLI::ParseError &error) {
    return app.exit(error, std::cout, std::cerr) == 0 ? exitDone : exitUsage;
  }
  return status;
}

} // namespace tools
