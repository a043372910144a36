// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The command line of `tavrel view`. It is part of the program, not of the library of commands, so that the library
// needs no window toolkit.
#include "tools/view.h"

#include <CLI/CLI.hpp>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <regex>

#include "host/document/documenterror.h"
#include "plugins/BRZ/content.h"
#include "plugins/BRZ/parameters.h"
#include "tools/exit.h"
#include "tools/failure.h"
#include "tools/highlightfile.h"
#include "tools/options.h"
#include "viewer/model/target.h"
#include "viewer/window/view.h"

namespace tools {
namespace {

struct ViewArguments {
  std::vector<std::string> documents;
  std::string hits; ///< a highlight file for the first document; empty: none
  unsigned hitsLimit = brz::usualLimit;
};

ExitStatus statusOf(viewer::ViewEnd end) {
  switch (end) {
  case viewer::ViewEnd::closed:
    return exitDone;
  case viewer::ViewEnd::noDocument:
    return exitDocument;
  case viewer::ViewEnd::hostFailure:
    return exitHostFailure;
  }
  return exitHostFailure;
}

// The number of an X window as xwininfo prints it: decimal, or hexadecimal after 0x.
CLI::Validator windowNumber() {
  return {[](std::string &text) -> std::string {
            const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
            const char *begin = text.data() + (hexadecimal ? 2 : 0), *end = text.data() + text.size();
            uint32_t number = 0;
            const auto [rest, error] = std::from_chars(begin, end, number, hexadecimal ? 16 : 10);
            if (error == std::errc() && rest == end && number != 0) return {};
            return "\"" + text + "\" is not the number of a window";
          },
          "a window"};
}

// A geometry of X; the size and the position are each optional. The X protocol holds numbers up to 32767.
CLI::Validator geometry() {
  return {[](std::string &text) -> std::string {
            static const std::regex pattern("=?([1-9][0-9]{0,4}x[1-9][0-9]{0,4})?([+-]-?[0-9]{1,5}[+-]-?[0-9]{1,5})?");
            constexpr unsigned long largest = 32767;
            bool fits = !text.empty() && std::regex_match(text, pattern);
            for (size_t i = 0; fits && (i = text.find_first_of("0123456789", i)) != std::string::npos;) {
              size_t digits = 0;
              fits = std::stoul(text.substr(i), &digits) <= largest;
              i += digits;
            }
            return fits ? "" : "\"" + text + "\" is no size and position such as 900x1000+10+10";
          },
          "a size and position"};
}

std::string explanation(const std::filesystem::path &hits) {
  return host::nameInMessage(hits.filename()) +
         " holds the hits of a search in a document, and no document of that name is beside it.\n\n"
         "To see them, open their document with it:\ntavrel view DOCUMENT.pdf --hits " +
         host::nameInMessage(hits) + "\n\n";
}

// A highlight file may be opened like a document, for instance by a desktop: its document is opened then. If there is
// none in its directory, the window shows an explanation.
void addDocument(const viewer::Target &target, viewer::ViewOptions &options) {
  if (!isHighlightFile(target.file)) {
    options.documents.push_back(target);
    return;
  }
  if (viewer::Target marked{documentOfHits(target.file), {}}; !marked.file.empty()) {
    viewer::addParameter(marked, brz::hitsParameter, std::filesystem::absolute(target.file));
    options.documents.push_back(marked);
    return;
  }
  std::fprintf(stderr, "tavrel: %s: this is a highlight file, and its document is not beside it\n",
               host::nameInMessage(target.file).c_str());
  options.note += explanation(target.file);
}

// The highlight file of --hits. If it cannot be read from a pipe, the document is shown without it.
void addHits(const std::string &hits, unsigned megabytes, viewer::Target &target, viewer::ViewOptions &options) {
  try {
    viewer::addParameter(target, brz::hitsParameter, std::filesystem::absolute(rereadable(hits, megabytes)));
  } catch (const CommandFailure &failure) {
    std::fprintf(stderr, "tavrel: %s\n", failure.what());
    options.note += std::string(failure.what()) + "\n\n";
  }
}

void addDocuments(const ViewArguments &arguments, viewer::ViewOptions &options) {
  for (const std::string &argument : arguments.documents)
    try {
      const size_t before = options.documents.size();
      addDocument(viewer::targetOf(argument), options);
      const bool isFirst = &argument == &arguments.documents.front() && options.documents.size() > before;
      if (isFirst && !arguments.hits.empty())
        addHits(arguments.hits, arguments.hitsLimit, options.documents.front(), options);
    } catch (const host::DocumentError &error) {
      options.refused.emplace_back(error.what());
    }
}

} // namespace

void addViewCommand(CLI::App &app, int &status) {
  const auto options = std::make_shared<viewer::ViewOptions>();
  const auto arguments = std::make_shared<ViewArguments>();
  CLI::App *command = app.add_subcommand("view", "Show documents in a window");
  CLI::Option *documents =
      command->add_option("DOC", arguments->documents,
                          "PDFs or their file:// addresses, each optionally with #page=N or #xml=HITS after its name");
  command->add_option("--hits", arguments->hits, "A highlight file for the first document; - is standard input")
      ->needs(documents);
  addPasswordOptions(*command, options->password);
  addHitsLimitOption(*command, arguments->hitsLimit);
  addProcessOptions(*command, options->processes);
  command->add_option("--into", options->into, "The number of the window in which to be embedded")
      ->type_name("NUMBER")
      ->check(windowNumber());
  command->add_option("--plugins-dir", options->pluginsDirectory,
                      "Where plug-ins are, besides TAVREL_PLUGIN_PATH, ~/.local/lib/tavrel/plugins and the system's");
  command->add_option("--display", options->toolkit.display, "The X display");
  command->add_option("--geometry", options->toolkit.geometry, "Size and position of the window: 900x1000+10+10")
      ->type_name("WIDTHxHEIGHT+X+Y")
      ->check(geometry());
  command->add_option("--xrm", options->toolkit.resources, "A resource: 'Tavrel*page.background: grey'")
      ->allow_extra_args(false);
  command->add_option("--test-socket", options->testSocket, "Reports every change on this socket, for tests");
  command->add_flag_callback(
      "--print-resources",
      [] {
        std::fputs(viewer::defaultResources(), stdout);
        throw CLI::Success();
      },
      "Prints the resources that can be changed, with their defaults");
  command->callback([options, arguments, &status] {
    setenv(brz::limitVariable, std::to_string(arguments->hitsLimit).c_str(),
           1); // for the plug-in that reads highlight files
    addDocuments(*arguments, *options);
    status = statusOf(viewer::view(*options));
  });
}

} // namespace tools
