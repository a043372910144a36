// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A viewer without a window: a session of 96 dots per inch, a test plug-in, and functions that make documents.
//
// The window is 400 by 300 pixels and the pages are 400 points wide: a page that fits the width has a pixel per point.
#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "TestDocuments.h"
#include "Until.h"
#include "host/kernel/TestPlugin.h"
#include "host/view/tables.h"
#include "viewer/model/session.h"

namespace test {

class Sessions : public testing::Test {
protected:
  static constexpr int width = 400, height = 300;

  Sessions() {
    host::addHostTables(runtime);
    session_.emplace(app);
    session().documents.screenDpi = 96;
    session().moving.setWindow(width, height, 0);
  }

  viewer::Session &session() { return *session_; }
  void endSession() { session_.reset(); }

  /// Collects results until the condition holds.
  bool until(const std::function<bool()> &done) {
    return test::until(session().descriptor(), [&] {
      session().arrivals.collect();
      return done();
    });
  }
  void open(const std::filesystem::path &file, const std::string &parameters = {}, const std::string &password = {}) {
    session().opener.open({file, parameters}, password);
    ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  }
  std::filesystem::path write(const std::string &name, const std::vector<PdfPage> &pages) {
    return folder.write(name, pdfOf(pages));
  }
  void openPages(const std::vector<PdfPage> &pages, const std::string &name = "paper.pdf") {
    ASSERT_NO_FATAL_FAILURE(open(write(name, pages)));
    ASSERT_NE(session().documents.front(), nullptr);
  }
  /// Draws until the page in front is rendered.
  bool draws() {
    return until([&] {
      session().screen.draw();
      return session().screen.shown().drawing && !session().screen.needsDrawing();
    });
  }
  const host::Drawing &drawing() { return *session().screen.shown().drawing; }
  /// The colour of a pixel of the window.
  uint32_t pixel(int x, int y) {
    const viewer::Shown &shown = session().screen.shown();
    return drawing().image.row(y + shown.scrollY - drawing().y)[x + shown.scrollX - drawing().x];
  }

  ScratchFolder folder;
  host::Runtime runtime;
  TestPlugin testPlugin{runtime};
  host::Application app{runtime};

private:
  std::optional<viewer::Session> session_;
};

} // namespace test
