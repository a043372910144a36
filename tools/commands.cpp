// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The command line of `tavrel`. Each subcommand has a separate source.
#include "tools/commands.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "host/document/process.h"
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
    {exitHostFailure, "no display, a plug-in is missing, memory is exhausted, or a process cannot be started"},
    {exitUsage, "invalid arguments"},
    {exitDocument, "the document cannot be read"},
    {exitPassword, "the document is encrypted: a password is needed, or another one"},
    {exitNothingMarked, "no hits: nothing found, or nothing marked"},
    {exitHighlightFile, "the highlight file cannot be read"},
    {exitOutput, "an output cannot be written"},
    {exitPagesLeftOut, "done, but some pages of the document cannot be read and are left out"},
};

std::string footer() {
  std::string text = "Exit status:\n";
  for (const StatusLine &line : statusLines)
    text += "  " + std::to_string(line.status) + "  " + line.meaning + "\n";
  return text;
}

bool hasView(const CLI::App &app) {
  return !app.get_subcommands([](const CLI::App *command) { return command->get_name() == "view"; }).empty();
}

// Whether the first argument is to be viewed: "tavrel paper.pdf". A mistyped command is no document.
bool isDocument(const CLI::App &app, const std::string &argument) {
  const auto called = [](const std::string &name) {
    return [name](const CLI::App *command) { return command->get_name() == name; };
  };
  if (argument.empty() || argument[0] == '-' || !app.get_subcommands(called(argument)).empty()) return false;
  std::error_code unknown;
  return hasView(app) &&
         (argument.find_first_of("./:#") != std::string::npos || std::filesystem::exists(argument, unknown));
}

// What is wrong with the arguments, without the words of the library for its own parts. An unknown option is reported
// first: it is why others are missing.
std::string reasonOf(const CLI::App &app, const CLI::ParseError &error) {
  std::string text = error.what();
  const std::string option = text.substr(0, text.find(':'));
  const std::vector<std::string> others = app.remaining(true);
  const auto unknown = std::find_if(others.begin(), others.end(),
                                    [](const std::string &one) { return one.size() > 1 && one[0] == '-'; });
  if (unknown != others.end()) return "there is no option " + *unknown;
  if (!others.empty() && app.get_subcommands().empty())
    return "\"" + others.front() + "\" is neither a command nor a document";
  if (!others.empty()) return "\"" + others.front() + "\" is one argument too many";
  if (dynamic_cast<const CLI::ArgumentMismatch *>(&error) != nullptr)
    return option + (text.ends_with("missing") ? " has no value" : " is given more than once");
  if (const size_t excludes = text.find(" excludes "); excludes != std::string::npos)
    return text.substr(0, excludes) + " cannot be given together with " +
           text.substr(excludes + sizeof " excludes " - 1);
  return text;
}

std::string lineOf(const CLI::App &app, const CLI::ParseError &error) {
  const std::vector<CLI::App *> commands = app.get_subcommands();
  return reasonOf(app, error) + " (see tavrel " + (commands.empty() ? "" : commands.front()->get_name() + " ") +
         "--help)";
}

// What the programs that read documents say of themselves.
int reportConfinement() {
  int result = exitDone;
  for (const std::string program : {host::documentProgram(), host::structureProgram()}) {
    std::cout << program << ":\n" << std::flush;
    std::string name = program, option = host::confinementOption;
    char *const arguments[] = {name.data(), option.data(), nullptr};
    pid_t id = 0;
    if (const int error = posix_spawn(&id, program.c_str(), nullptr, nullptr, arguments, environ); error != 0) {
      std::cerr << "tavrel: " << program << ": " << std::strerror(error) << "\n";
      result = exitHostFailure;
      continue;
    }
    int status = 0;
    while (waitpid(id, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
      std::cerr << "tavrel: " << program << ": cannot report what confines it\n";
      result = exitHostFailure;
    }
  }
  return result;
}

} // namespace

int runCommands(int argc, char **argv, std::initializer_list<AddCommand> more) {
  int status = exitDone;
  CLI::App app("Shows search hits in PDF documents. `tavrel DOC` is `tavrel view DOC`.", "tavrel");
  app.set_version_flag("--version", "tavrel " TAVREL_VERSION,
                       "The version; with --verbose, also what confines the processes that read documents");
  app.add_flag("--verbose")->description("See --version");
  app.require_subcommand(0, 1); // checked below, so that the error names an unknown command
  app.footer(footer());
  for (const AddCommand add : more)
    add(app, status);
  addRenderCommand(app, status);
  addHitsCommand(app, status);
  try {
    std::vector<const char *> arguments(argv, argv + argc);
    const bool views = argc > 1 ? isDocument(app, argv[1]) : hasView(app);
    if (views) arguments.insert(arguments.begin() + 1, "view");
    app.parse(static_cast<int>(arguments.size()), arguments.data());
    if (app.get_subcommands().empty()) throw CLI::RequiredError("A command");
  } catch (const CLI::ParseError &error) {
    if (error.get_exit_code() == 0) { // help
      const bool verbose =
          std::any_of(argv, argv + argc, [](const char *one) { return std::string(one) == "--verbose"; });
      const int exit = app.exit(error, std::cout, std::cerr);
      return verbose && error.get_name() == "CallForVersion" ? reportConfinement() : exit;
    }
    std::cerr << "tavrel: " << lineOf(app, error) << "\n";
    return exitUsage;
  }
  return status;
}

} // namespace tools
