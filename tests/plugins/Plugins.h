// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The real host with the built plug-ins, and documents for them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "document/here.h"
#include "host/kernel/loader.h"
#include "host/view/application.h"
#include "host/view/desktop.h"
#include "host/view/tables.h"
#include "host/view/toplevel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelGLT.h"
#include "tavrel/TavrelView.h"
#include "tests/support/pdf.h"
#include "tools/display.h"

namespace test {

/// A document of four pages, each "alpha beta gamma delta".
inline std::unique_ptr<host::Document> fourPages(const ScratchFolder &scratch) {
  const PdfPage page = {.texts = {{20, 100, "alpha beta gamma delta"}}, .width = 200, .height = 200};
  return document::openedHere(scratch.pdf({4, page}), "");
}

/// A host with the plug-ins of a directory.
struct PluginHost {
  explicit PluginHost(const std::filesystem::path &folder) {
    runtime.reporter = [this](const std::string &line) { reports.push_back(line); };
    host::addHostTables(runtime);
    plugins.load({folder});
    gTavrelGLTHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelGLT"), tavrel::tavrelGLTVersion);
  }

  host::Runtime runtime;
  host::Application app{runtime};
  host::PluginLoader plugins{runtime};
  std::vector<std::string> reports;
};

struct AwaitedDisplay : tools::Display {
  AwaitedDisplay() { await(); }
};

/// All plug-ins, in one host for the program: a table is not offered again after its server is unloaded.
inline PluginHost &builtPlugins() {
  static const AwaitedDisplay display;
  static const host::TopLevel topLevel;
  static const host::WindowSystem windows(topLevel.widget());
  static PluginHost host(TAVREL_PLUGINS);
  return host;
}

/// That host, and a front document of four pages.
class Plugins : public testing::Test {
protected:
  Plugins() { open(); }
  ~Plugins() override {
    while (host::ViewerDocument *front = app.front())
      app.close(*front);
    reports.clear();
  }

  /// Opens the document again, as the front document.
  void open(const std::string &parameters = {}) {
    document = &app.open(fourPages(scratch), scratch.path() / "test.pdf", 72, parameters);
    doc = app.documents().handle(document);
  }

  PluginHost &host_ = builtPlugins();
  host::Application &app = host_.app;
  const std::vector<host::Plugin> &plugins = host_.plugins.plugins();
  std::vector<std::string> &reports = host_.reports;
  const ScratchFolder scratch;
  host::ViewerDocument *document = nullptr;
  tavrel::Doc doc = nullptr;
};

} // namespace test
