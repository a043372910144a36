// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The white page that is shown for an image that failed.
#include <gtest/gtest.h>

#include "host/document/FakeBackend.h"
#include "viewer/model/session.h"

namespace viewer {
namespace {

TEST(WhitePage, IsBoundedWhereThePageTurnsOutToBeHuge) {
  test::Backstage backstage;
  host::Runtime runtime;
  host::Application app{runtime};
  Session session{app, [&](const std::filesystem::path &file) {
                    return std::make_shared<host::Service>(file, std::make_unique<test::FakeBackend>(backstage));
                  }};
  session.moving.setWindow(400, 300, 0);
  session.opener.open({"/paper.pdf", {}});
  backstage.answer(host::Opened{1, {}});
  session.arrivals.collect();
  session.screen.draw(); // waits in vain for the size, and asks for the image of a letter page
  backstage.answer(host::Sizes{0, {{14'000, 14'000}}});
  backstage.answer(host::Failure{tavrel::errDocument, "injected"});
  testing::internal::CaptureStderr();
  session.arrivals.collect();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tavrel: injected\n");
  ASSERT_EQ(session.tiles.cache().size(), 1U);
  EXPECT_LE(session.tiles.cache().bytes(), PageWindow::largestImage * sizeof(uint32_t));
}

} // namespace
} // namespace viewer
