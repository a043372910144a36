// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A real window with all plug-ins, whose usage of everything that can be exhausted is counted.
#pragma once

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/types.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "host/view/desktop.h"
#include "host/view/tables.h"
#include "support/pdf.h"
#include "tools/display.h"
#include "viewer/model/session.h"
#include "viewer/window/environment.h"
#include "viewer/window/mainwindow.h"

// Last: its macros conflict with the test library.
#include <X11/extensions/XRes.h>

namespace test {

namespace fs = std::filesystem;

struct Usage {
  long kilobytes = 0, descriptors = 0, processes = 0, serverResources = 0, hostBlocks = 0;
};

inline std::ostream &operator<<(std::ostream &out, const Usage &usage) {
  return out << usage.kilobytes << " KB, " << usage.descriptors << " descriptors, " << usage.processes << " processes, "
             << usage.serverResources << " resources of the X server, " << usage.hostBlocks << " blocks";
}

// What the process has allocated and not freed, in KB. The memory that it has from the system varies by chance. Freed
// blocks that threads cache count as allocated: GLIBC_TUNABLES is set so that they cache none.
inline long allocated() {
  const struct mallinfo2 all = mallinfo2();
  return static_cast<long>((all.uordblks + all.hblkhd) / 1024);
}

/// The name of a process that reads structure: the system keeps the first 15 characters.
inline const std::string structureName = std::string("tavrel-structure").substr(0, 15);

/// The processes of documents that have been started and not ended.
inline std::vector<pid_t> documentProcesses() {
  std::ifstream children("/proc/thread-self/children");
  std::vector<pid_t> result;
  for (pid_t child = 0; children >> child;) {
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(child) + "/comm"), name);
    if (name == "tavrel-document" || name == structureName) result.push_back(child);
  }
  return result;
}

inline long serverResources(::Display *display) {
  int count = 0;
  XResType *types = nullptr;
  long sum = 0;
  int clients = 0;
  XResClient *all = nullptr;
  XResQueryClients(display, &clients, &all);
  for (int i = 0; i < clients; ++i) {
    XResQueryClientResources(display, all[i].resource_base, &count, &types);
    for (int type = 0; type < count; ++type)
      sum += static_cast<long>(types[type].count);
    XFree(types);
  }
  XFree(all);
  return sum;
}

class Soak : public testing::Test {
protected:
  struct Started {
    tools::Display display;
    Started() {
      viewer::prepareEnvironment();
      display.await();
    }
  };

  Soak() {
    const char *tunables = std::getenv("GLIBC_TUNABLES");
    EXPECT_STREQ(tunables, "glibc.malloc.tcache_count=0") << "ctest sets it";
    host::addHostTables(runtime);
    plugins.load({TAVREL_PLUGINS});
    window.realize();
    window.map();
    std::vector<test::PdfPage> pages(700); // more than the cache holds
    for (test::PdfPage &page : pages)
      page.texts = {{40, 500, "words of page " + std::to_string(&page - pages.data()) + " for the soak test"}};
    file = folder.pdf(pages);
    std::ofstream(folder.path() / "hits.xml") << "<XML>\n<Body mode=active>\n<highlights>\n<loc pg=3 pos=0 len=1>\n"
                                                 "<loc pg=9 pos=2 len=2>\n</highlights>\n</Body>\n</XML>\n";
  }
  ~Soak() override { session.documents.closeAll(); }

  // Handles events and takes over what has been answered until the condition holds.
  void until(const std::function<bool()> &holds) {
    const XtIntervalId tick = XtAppAddTimeOut(toolkit.context(), 1, again, this);
    tick_ = tick;
    window.loop([&] {
      session.arrivals.collect();
      return holds();
    });
    XtRemoveTimeOut(tick_);
  }
  static void again(XtPointer self, XtIntervalId *) {
    auto &soak = *static_cast<Soak *>(self);
    soak.tick_ = XtAppAddTimeOut(soak.toolkit.context(), 1, again, self);
  }
  bool drawn() const { return session.screen.shown().drawing && !session.documents.view()->invalid(); }
  static long descriptors() {
    return static_cast<long>(std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
  }
  // Waits until the document's processes, for images, words and structure, have nothing to do and one more is there in
  // advance; without a document, that one alone.
  void rest() {
    const viewer::OpenDocument *document = session.documents.frontDocument();
    if (document == nullptr) return until([] { return documentProcesses().size() == 1; });
    // Images and words that are asked for at once take two, unless the first answer is there before the second request
    // is made.
    const host::PixelSize size = host::pixelSize(document->document->model->pageSize(0), 72);
    host::Ticket image, words, structure;
    int awaited = 0;
    const auto answered = [&awaited](host::Answer & /*answer*/) { --awaited; };
    until([&] {
      if (documentProcesses().size() == 4) return true;
      if (awaited > 0) return false;
      awaited = 3;
      image = document->service->ask(host::ImageRequest{0, 72, size}, host::Urgency::shown, answered);
      words = document->service->ask(host::WordsRequest{0}, host::Urgency::shown, answered);
      structure =
          document->service->ask(host::StructureRequest{session.documents.pageCount()}, host::Urgency::shown, answered);
      return false;
    });
  }
  // The least memory within some iterations: pages may be on their way into the cache or out of it, and a page is as
  // large as the growth that is tested for.
  Usage usage() {
    long least = allocated();
    int iterations = 0;
    until([&] {
      least = std::min(least, allocated());
      return ++iterations >= 100;
    });
    XSync(toolkit.display(), False);
    return {least, descriptors(), static_cast<long>(documentProcesses().size()), serverResources(toolkit.display()),
            static_cast<long>(runtime.memory.blocks())};
  }
  static void expectSame(const Usage &early, const Usage &late) {
    std::cout << "early: " << early << "\nlate:  " << late << "\n";
    EXPECT_EQ(late.descriptors, early.descriptors);
    EXPECT_EQ(late.processes, early.processes);
    EXPECT_EQ(late.serverResources, early.serverResources);
    EXPECT_EQ(late.hostBlocks, early.hostBlocks);
    EXPECT_LT(late.kilobytes, early.kilobytes + 4) << "less than 10 bytes a document, or half a byte a page";
  }

  Started started;
  test::ScratchFolder folder;
  fs::path file;
  host::Runtime runtime;
  host::Application app{runtime};
  viewer::Session session{app};
  viewer::Toolkit toolkit{{"", "260x340", {}}}; // a small window has small pages: their number counts
  host::WindowSystem windows{toolkit.shell()};
  host::PluginLoader plugins{runtime};
  viewer::MainWindow window{toolkit, session.model(), app, plugins};
  XtIntervalId tick_ = 0;
};

} // namespace test
