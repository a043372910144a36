// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// `tavrel render DOC HITS`: from a PDF and a highlight file to marked pages, in the same way as the viewer: plug-ins
// are loaded, the document is opened, the file is delivered as auxiliary data, and the pages that are shown are drawn.
#include "tools/render.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>

#include "host/kernel/loader.h"
#include "host/view/application.h"
#include "host/view/desktop.h"
#include "host/view/tables.h"
#include "host/view/toplevel.h"
#include "plugins/BRZ/content.h"
#include "tavrel/TavrelGLT.h"
#include "tools/ahead.h"
#include "tools/display.h"
#include "tools/failure.h"
#include "tools/highlightfile.h"
#include "tools/leftout.h"
#include "tools/options.h"
#include "tools/pagewriter.h"
#include "tools/reading.h"
#include "tools/walk.h"
#include "tools/workers.h"

namespace tools {
namespace {

namespace fs = std::filesystem;

std::string joined(const std::vector<fs::path> &directories) {
  std::string names;
  for (const fs::path &directory : directories)
    names += (names.empty() ? "" : ", ") + directory.string();
  return names;
}

// The objects of the program. Each member uses those before it.
struct Viewer {
  host::Runtime runtime;
  host::TopLevel topLevel;
  host::WindowSystem windows{topLevel.widget()};
  host::Application app{runtime};
  host::PluginLoader plugins{runtime};
};

void deliver(Viewer &viewer, const RenderOptions &options, host::ViewerDocument &document, const std::string &bytes) {
  const std::vector<fs::path> directories = host::pluginDirectories(options.pluginsDirectory);
  const tavrel::Atom type = viewer.runtime.atoms.atom(tavrel::gltAuxDataType);
  if (!viewer.app.auxData.has(type))
    throw CommandFailure(exitHostFailure, "plug-ins directory " + joined(directories) +
                                              ": there is no plug-in that takes highlight files");
  viewer.app.auxData.deliver(type, bytes, viewer.app.documents().handle(&document));
}

ExitStatus statusOf(const host::HostError &error) {
  switch (error.code) {
  case tavrel::errDocument:
    return exitDocument;
  case tavrel::errBadArgument: // more dots per inch than an image can hold
    return exitUsage;
  default:
    return exitHostFailure;
  }
}

// The document that is rendered, and the service that answers for it.
struct Source {
  std::shared_ptr<host::Service> service;
  host::Document &document;
};

// Makes a view take its pages from those rendered ahead, until this object is destroyed.
class RenderedAhead {
public:
  /// For each processor: with fewer than about six, processes wait while this one paints and writes.
  static constexpr size_t pagesAhead = 8;
  RenderedAhead(host::PageView &view, const Source &source) : view_(view) {
    host::Document &document = source.document;
    const double dpi = view.dpi();
    const auto sizeOf = [&document, dpi](int32_t page) { return host::pixelSize(document.pageSize(page), dpi); };
    const auto pixelsOf = [sizeOf](int32_t page) {
      const host::PixelSize size = sizeOf(page);
      return static_cast<double>(size.width) * size.height;
    };
    images_.emplace(
        *source.service, document.pageCount(),
        [sizeOf, dpi](int32_t page) {
          return host::ImageRequest{page, dpi, sizeOf(page)};
        },
        PagesAhead<host::PageImage>::Reach{pagesAhead * usableProcessors(), mostPixelsWaiting, pixelsOf});
    view.setSource([this, &document, dpi](int32_t page, double wanted) -> host::SourceImage {
      return wanted == dpi ? images_->take(page).image : document.render(page, wanted);
    });
  }
  RenderedAhead(const RenderedAhead &) = delete;
  RenderedAhead &operator=(const RenderedAhead &) = delete;
  ~RenderedAhead() { view_.setSource({}); }

private:
  host::PageView &view_;
  std::optional<PagesAhead<host::PageImage>> images_;
};

// Lets the writer encode pages on other threads while `walk` draws the next ones.
void writeDuring(PageWriter &writer, int32_t pageCount, const std::function<void()> &walk) {
  Workers workers(Workers::worthHaving(pageCount));
  if (workers.threads() == 0) return walk();
  writer.setWorkers(&workers);
  try {
    walk();
  } catch (...) {
    writer.finish(); // writes the pages before the one that failed
    throw;
  }
  writer.finish();
}

/// The fewest bytes of a highlight file that name a page: <loc pg=1 pos=1>
constexpr size_t bytesOfAPage = 16;

PagesLeftOut walk(Viewer &viewer, const RenderOptions &options, const std::shared_ptr<host::Service> &service,
                  host::ViewerDocument &document, size_t bytes, PageWriter &writer) {
  const bool all = options.pages == "all";
  PagesLeftOut leftOut;
  const auto drawn = [&](host::Drawing &&drawing) {
    service->collect(); // so that the processes go on while the page is written
    if (all || drawing.marks > 0)
      writer.write(std::move(drawing), viewer.app.statusText());
    else
      writer.reportOffPage(drawing);
  };
  const PageSink sink{drawn, [&](int32_t page, const host::DocumentError &error) { leftOut.add(page, error.reason); }};
  try {
    writeDuring(writer, document.model->pageCount(), [&] {
      // A press without a new page is possible for each page that the file names.
      if (!all) return walkMarkedPages(viewer.app, document, bytes / bytesOfAPage, sink);
      const RenderedAhead ahead(*document.view, {service, *document.model});
      walkAllPages(viewer.app, document, sink);
    });
  } catch (const host::HostError &error) { // its text names the document
    throw CommandFailure(statusOf(error), error.what());
  }
  return leftOut;
}

ExitStatus renderPages(const RenderOptions &options) {
  Display display; // starts while the files are read
  const std::string bytes = readHits(options.hits, options.hitsLimit);
  host::ProcessOptions processes = options.processes;
  processes.imageProcesses = usableProcessors();
  const OpenedDocument opened = openDocument(options.document, options.password, processes);
  constexpr auto noLimit = std::chrono::hours(24 * 365); // a page's processes have theirs
  std::unique_ptr<host::Document> model = host::Document::of({opened.service, noLimit}, opened.opened);
  const int32_t pageCount = model->pageCount();
  display.await();

  Viewer viewer;
  host::addHostTables(viewer.runtime);
  viewer.app.alert = host::answerAlerts(options.answer == "yes");
  viewer.plugins.load(host::pluginDirectories(options.pluginsDirectory));

  PageWriter writer(options.out, options.dpi, pageCount);
  host::ViewerDocument &document = viewer.app.open(std::move(model), options.document, options.dpi);
  deliver(viewer, options, document, bytes);
  const PagesLeftOut leftOut = walk(viewer, options, opened.service, document, bytes.size(), writer);
  writer.clear();
  viewer.app.close(document); // while the plug-ins are still loaded, so that they are notified
  using Processed = PagesLeftOut::Processed;
  const Processed processed = options.pages == "all" ? Processed::allPages : Processed::somePages;
  leftOut.report(std::cerr, options.document.string(), pageCount, processed, options.processes);

  if (writer.hits() == 0)
    throw CommandFailure(exitNothingMarked, nameOfHits(options.hits) +
                                                (brz::isTruncated(bytes) ? ": the file is truncated and" : ": it") +
                                                " marks nothing" + leftOut.otherPages() +
                                                (leftOut.none() ? " in " : " of ") + options.document.string());
  std::printf("%s\n", writer.summary().c_str());
  return leftOut.none() ? exitDone : exitPagesLeftOut;
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
  command->add_option("--dpi", options->dpi, "Dots per inch")
      ->type_name("NUMBER")
      ->check(number(8, 1200))
      ->capture_default_str();
  command->add_option("--pages", options->pages, "Write every page, or those with hits")
      ->check(oneOf({"all", "hits"}))
      ->capture_default_str();
  addPasswordOptions(*command, options->password);
  addHitsLimitOption(*command, options->hitsLimit);
  addProcessOptions(*command, options->processes);
  command->add_option("--answer", options->answer, "The answer to questions of plug-ins")
      ->check(oneOf({"yes", "no"}))
      ->capture_default_str();
  command->add_option("--plugins-dir", options->pluginsDirectory,
                      "Where plug-ins are, besides TAVREL_PLUGIN_PATH, ~/.local/lib/tavrel/plugins and the system's");
  command->callback([options, &status] { status = render(*options); });
}

} // namespace tools
