// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Sizes of pages that come after the pages have been laid out.
#include <gtest/gtest.h>

#include "LateBackend.h"
#include "TestDocuments.h"
#include "viewer/model/session.h"

namespace viewer {
namespace {

bool asksForSizes(const host::Request &request) { return std::holds_alternative<host::SizesRequest>(request); }

// The window is 400 pixels wide, and the pages 800 points.
struct LateSizesTest : testing::Test {
  LateSizesTest() {
    std::vector<test::PdfPage> pages(100, {.width = 800, .height = 400});
    session.opener.open({folder.write("wide.pdf", test::pdfOf(pages)), {}});
    session.moving.setWindow(400, 300, 0);
    settle();
  }
  void settle() {
    for (int round = 0; round < 10; ++round) {
      session.arrivals.collect();
      session.screen.draw();
    }
  }
  test::ScratchFolder folder;
  bool released = false;
  host::Runtime runtime;
  host::Application app{runtime};
  Session session{
      app, [this](const std::filesystem::path &file) { return test::lateService(file, asksForSizes, released); }};
};

TEST_F(LateSizesTest, LayOutThePageThatIsShownWhenTheyCome) {
  session.moving.goToPage(70); // it is waited for
  session.moving.goToPage(72); // of the same run
  settle();
  ASSERT_GT(session.documents.window()->dpi(), 40) << "a letter page, so far";
  released = true;
  settle();
  EXPECT_EQ(session.documents.window()->dpi(), 36);
  ASSERT_TRUE(session.screen.shown().drawing);
  EXPECT_EQ(session.screen.shown().drawing->dpi, 36);
  EXPECT_EQ(session.tiles.error(), "");
}

} // namespace
} // namespace viewer
