// The command line of `tavrel view`. It stands in the program, not in the library of commands: what draws pages into
// files needs no window toolkit.
#include "tools/view.h"

#include <CLI/CLI.hpp>
#include <unistd.h>

#include <cstdio>
#include <memory>

#include "tools/exit.h"
#include "viewer/window/view.h"

namespace tools {
namespace {

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

} // namespace

void addViewCommand(CLI::App &app, int &status) {
  const auto options = std::make_shared<viewer::ViewOptions>();
  CLI::App *command = app.add_subcommand("view", "Show documents in a window");
  CLI::Option *documents =
      command->add_option("DOC", options->documents, "PDFs, each perhaps with #page=N or #xml=HITS behind its name");
  command->add_option("--hits", options->hits, "A highlight file for the first document")->needs(documents);
  command->add_option("--password", options->password, "The documents' password");
  command->add_option("--into", options->into, "The number of a window to live in");
  command->add_option("--plugins-dir", options->pluginsDirectory,
                      "Where plug-ins are, besides TAVREL_PLUGIN_PATH, ~/.local/lib/tavrel/plugins and the system's");
  command->add_option("--display", options->toolkit.display, "The X display");
  command->add_option("--geometry", options->toolkit.geometry, "Size and place of the window: 900x1000+10+10");
  command->add_option("--xrm", options->toolkit.resources, "A resource: 'Tavrel*ground: grey'")
      ->allow_extra_args(false);
  command->add_option("--test-socket", options->testSocket, "Tells every change to a test that listens there");
  command->add_flag_callback(
      "--print-resources",
      [] {
        std::fputs(viewer::defaultResources(), stdout);
        throw CLI::Success();
      },
      "Prints the resources that can be changed, with their defaults");
  options->leave = [](viewer::ViewEnd end) {
    std::fflush(nullptr);
    _exit(statusOf(end));
  };
  command->callback([options, &status] { status = statusOf(viewer::view(*options)); });
}

} // namespace tools
