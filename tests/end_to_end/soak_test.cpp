// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A soak test of one document: after 20,000 draws and 2,000 registrations nothing has grown.
#include <gtest/gtest.h>

#include <fstream>

#include "document/here.h"
#include "host/kernel/loader.h"
#include "host/view/application.h"
#include "host/view/desktop.h"
#include "host/view/tables.h"
#include "host/view/toplevel.h"
#include "tools/display.h"

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool countsMemory = false; // AddressSanitizer keeps freed memory for a while
#else
constexpr bool countsMemory = true;
#endif

/// The resources that must not grow.
struct Held {
  size_t hostBlocks, selections, openPages, callbacks, residentPages;
  bool operator==(const Held &) const = default;
};

void PrintTo(const Held &held, std::ostream *out) {
  *out << held.hostBlocks << " blocks of plug-ins, " << held.selections << " selections, " << held.openPages
       << " pages open, " << held.callbacks << " callbacks, " << held.residentPages << " pages resident";
}

Held heldNow(const host::Runtime &runtime, const host::Document &document) {
  size_t total = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return {runtime.memory.blocks(), document.selectionCount(), host::openObjects().pages, runtime.callbacks.size(),
          countsMemory ? resident : 0};
}

std::string highlightFile(const char *units) {
  std::string text = std::string("<XML>\n<Body Units=\"") + units + "\" mode=\"active\">\n<highlights>\n";
  for (int page = 0; page < 4; ++page)
    for (int i = 0; i < 10; ++i)
      text += "<loc pg=\"" + std::to_string(page) + "\" pos=\"" + std::to_string(20 * i) + "\" len=\"5\"/>\n";
  return text + "</highlights>\n</Body>\n</XML>\n";
}

TEST(Soak, DrawsAndRegistrationsLeakNothing) {
  tools::Display display;
  display.await();
  host::Runtime runtime;
  const host::TopLevel topLevel;
  host::WindowSystem windows(topLevel.widget());
  host::Application app(runtime);
  host::PluginLoader plugins(runtime);
  host::addHostTables(runtime);
  plugins.load({TAVREL_PLUGINS});

  host::ViewerDocument &document =
      app.open(document::openedHere(std::string(TEST_DOCUMENTS) + "/two-columns.pdf", ""), "two-columns.pdf", 10);
  const tavrel::Atom type = runtime.atoms.atom("tavrelglt");
  const std::string files[] = {highlightFile("characters"), highlightFile("words")};
  size_t marks = 0;
  const auto round = [&](int i) {
    ASSERT_TRUE(app.auxData.deliver(type, files[i % 2], app.documents().handle(&document)));
    for (int k = 0; k < 10; ++k) {
      document.view->showPage((i + k / 5) % 4);
      marks += app.draw(document)->marks;
    }
  };
  for (int i = 0; i < 100; ++i)
    round(i);
  const Held before = heldNow(runtime, *document.model);
  for (int i = 100; i < 2000; ++i)
    round(i);
  EXPECT_EQ(heldNow(runtime, *document.model), before);
  EXPECT_GT(marks, 100000U) << "the marks were really painted";
}

} // namespace
