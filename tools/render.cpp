// `tavrel render DOC HITS`: from a PDF and a highlight file to marked pages, on the road that a viewer takes: plug-ins
// are loaded, the document is opened, the file is delivered as auxiliary data, and what is then shown is drawn.
#include "tools/render.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>

#include "host/kernel/loader.h"
#include "host/view/application.h"
#include "host/view/desktop.h"
#include "tools/display.h"
#include "tools/failure.h"
#include "tools/output.h"
#include "tools/png.h"
#include "tools/progress.h"
#include "tools/walk.h"

namespace tools {
namespace {

namespace fs = std::filesystem;

constexpr const char *highlightType = "tavrelglt"; // of auxiliary data

std::string counted(size_t count, const char *noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string nameOf(const std::string &hits) { return hits == "-" ? "standard input" : hits; }

std::string readAll(const std::string &hits) {
  struct Close {
    void operator()(FILE *stream) const {
      if (stream != stdin) std::fclose(stream);
    }
  };
  errno = 0;
  const std::unique_ptr<FILE, Close> stream(hits == "-" ? stdin : std::fopen(hits.c_str(), "rb"));
  std::string bytes;
  char part[1 << 16];
  if (stream)
    while (const size_t count = std::fread(part, 1, sizeof part, stream.get()))
      bytes.append(part, count);
  if (!stream || std::ferror(stream.get()) != 0)
    throw CommandFailure(exitHighlightFile, nameOf(hits) + ": " + std::strerror(errno));
  if (bytes.size() > std::numeric_limits<uint32_t>::max())
    throw CommandFailure(exitHighlightFile, nameOf(hits) + ": is larger than four gigabytes");
  return bytes;
}

std::string joined(const std::vector<fs::path> &directories) {
  std::string names;
  for (const fs::path &directory : directories)
    names += (names.empty() ? "" : ", ") + directory.string();
  return names;
}

// Writes pages and counts.
class PageWriter {
public:
  PageWriter(const RenderOptions &options, int32_t pageCount)
      : options_(options), pageCount_(pageCount), progress_(stdout) {}

  /// `status` is what plug-ins say of the page.
  void write(const host::Drawing &drawing, const std::string &status) {
    char name[32];
    std::snprintf(name, sizeof name, "page-%04d.png", drawing.page + 1);
    const fs::path place = options_.out / name;
    OutputFile file(place);
    if (!writePng(file.stream(), drawing.image, options_.dpi))
      throw CommandFailure(exitOutput, place.string() + ": cannot be written as PNG");
    file.commit();
    pages_ += drawing.marks > 0 ? 1 : 0;
    hits_ += drawing.marks;
    progress_.say("page " + std::to_string(drawing.page + 1) + " of " + std::to_string(pageCount_) + ": " +
                  counted(drawing.marks, "hit") + " -> " + place.string() +
                  (status.empty() ? "" : " (" + status + ")"));
    progress_.show(drawing.page + 1, pageCount_);
  }

  void clear() { progress_.clear(); }
  size_t hits() const { return hits_; }
  std::string summary() const { return counted(pages_, "page") + " marked, " + counted(hits_, "hit"); }

private:
  const RenderOptions &options_;
  int32_t pageCount_;
  Progress progress_;
  size_t pages_ = 0, hits_ = 0;
};

// What the program is made of while it runs, in the order in which one stands on the other.
struct Viewer {
  host::Runtime runtime;
  host::TopLevel topLevel;
  host::WindowSystem windows{topLevel.widget()};
  host::Application app{runtime};
  host::PluginLoader plugins{runtime};
};

void deliver(Viewer &viewer, const RenderOptions &options, host::ViewerDocument &document, const std::string &bytes) {
  const std::vector<fs::path> directories = host::pluginDirectories(options.pluginsDirectory);
  const tavrel::Atom type = viewer.runtime.atoms.atom(highlightType);
  if (!viewer.app.auxData.has(type))
    throw CommandFailure(exitHostFailure,
                         "plug-ins directory " + joined(directories) + ": has no plug-in that takes highlight files");
  viewer.app.auxData.deliver(type, bytes, viewer.app.documents().handle(&document));
}

// What the host says about a page does not name the document.
ExitStatus statusOf(const host::HostError &error) {
  switch (error.code) {
  case tavrel::errDocument:
    return exitDocument;
  case tavrel::errBadArgument: // so many dots per inch that no image can hold the page
    return exitUsage;
  default:
    return exitHostFailure;
  }
}

void walk(Viewer &viewer, const RenderOptions &options, host::ViewerDocument &document, size_t bytes,
          PageWriter &writer) {
  const auto sink = [&](const host::Drawing &drawing) { writer.write(drawing, viewer.app.statusText()); };
  try {
    if (options.pages == "all")
      walkAllPages(viewer.app, document, sink);
    else // a press can be in vain once for each page that the file names, and it names no more than it has bytes
      walkMarkedPages(viewer.app, document, bytes, sink);
  } catch (const host::HostError &error) {
    throw CommandFailure(statusOf(error), options.document.string() + ": " + error.what());
  }
}

ExitStatus renderPages(const RenderOptions &options) {
  Display display; // starts while the files are read
  const std::string bytes = readAll(options.hits);
  std::unique_ptr<host::Document> model = host::Document::open(options.document, options.password);
  display.await();

  Viewer viewer;
  host::addHostTables(viewer.runtime);
  viewer.app.alert = host::answerAlerts(options.answer == "yes");
  viewer.plugins.load(host::pluginDirectories(options.pluginsDirectory));

  PageWriter writer(options, model->pageCount());
  host::ViewerDocument &document = viewer.app.open(std::move(model), options.document, options.dpi);
  deliver(viewer, options, document, bytes);
  walk(viewer, options, document, bytes.size(), writer);
  writer.clear();
  viewer.app.close(document); // while the plug-ins still hear of it

  if (writer.hits() == 0)
    throw CommandFailure(exitNothingMarked, nameOf(options.hits) + ": marks nothing in " + options.document.string());
  std::printf("%s\n", writer.summary().c_str());
  return exitDone;
}

int failed(ExitStatus status, const char *reason) {
  std::fflush(stdout);
  std::fprintf(stderr, "tavrel: %s\n", reason);
  return status;
}

} // namespace

int render(const RenderOptions &options) {
  try {
    const ExitStatus status = renderPages(options);
    if (std::fflush(stdout) != 0)
      throw CommandFailure(exitOutput, std::string("standard output: ") + std::strerror(errno));
    return status;
  } catch (const CommandFailure &failure) {
    return failed(failure.status, failure.what());
  } catch (const host::DocumentError &error) {
    const bool password = error.reason == host::DocumentError::wrongPassword;
    return failed(password ? exitPassword : exitDocument, error.what());
  } catch (const host::HostError &error) {
    return failed(exitHostFailure, error.what());
  } catch (const std::bad_alloc &) {
    return failed(exitHostFailure, (options.document.string() + ": memory is exhausted").c_str());
  } catch (const std::exception &error) {
    return failed(exitHostFailure, error.what());
  }
}

void addRenderCommand(CLI::App &app, int &status) {
  const auto options = std::make_shared<RenderOptions>();
  CLI::App *command =
      app.add_subcommand("render", "Draw the pages of a document with the hits of a highlight file marked");
  command->add_option("DOC", options->document, "The PDF")->required();
  command->add_option("HITS", options->hits, "The highlight file; - is standard input")->required();
  command->add_option("--out", options->out, "Directory for the pages, page-0001.png and so on")->capture_default_str();
  command->add_option("--dpi", options->dpi, "Dots per inch")->check(CLI::Range(8.0, 1200.0))->capture_default_str();
  command->add_option("--pages", options->pages, "Write every page, or those with hits")
      ->check(CLI::IsMember({"all", "hits"}))
      ->capture_default_str();
  command->add_option("--password", options->password, "The document's password");
  command->add_option("--answer", options->answer, "What plug-ins are told when they ask")
      ->check(CLI::IsMember({"yes", "no"}))
      ->capture_default_str();
  command->add_option("--plugins-dir", options->pluginsDirectory,
                      "Where plug-ins are, besides TAVREL_PLUGIN_PATH, ~/.local/lib/tavrel/plugins and the system's");
  command->callback([options, &status] { status = render(*options); });
}

} // namespace tools
