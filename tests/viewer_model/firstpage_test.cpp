// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The first page, which is drawn before its document is taken over.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <fstream>
#include <functional>

#include "LateBackend.h"
#include "Sessions.h"
#include "TestDocuments.h"
#include "viewer/model/session.h"

namespace viewer {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// The window is 800 pixels wide, and the pages 400 points.
struct FirstPageTest : testing::Test {
  FirstPageTest() { session.moving.setWindow(800, 300, 0); }
  void settle() {
    for (int round = 0; round < 10; ++round) {
      session.arrivals.collect();
      session.screen.draw();
    }
  }
  // Notes the images that are asked for.
  bool isLate(const host::Request &request) {
    if (const auto *image = std::get_if<host::ImageRequest>(&request)) asked.emplace_back(image->page, image->dpi);
    return false;
  }

  test::ScratchFolder folder;
  const std::filesystem::path file = folder.write("paper.pdf", test::pdfOf(test::numberedPages(1)));
  bool released = true;
  std::vector<std::pair<int32_t, double>> asked;
  host::Runtime runtime;
  host::Application app{runtime};
  Session session{app, [this](const std::filesystem::path &name) {
                    return test::lateService(
                        name, [this](const host::Request &request) { return isLate(request); }, released);
                  }};
};

TEST_F(FirstPageTest, IsDrawnOnceBeforeTheDocumentIsTakenOver) {
  session.opener.open({file, {}});
  session.drawAhead();
  EXPECT_THAT(asked, ElementsAre(std::pair(0, 144.0)));
  EXPECT_TRUE(session.documents.all().empty());
  pollfd ready{session.descriptor(), POLLIN, 0};
  EXPECT_EQ(poll(&ready, 1, 0), 1) << "it is to be taken over";
  settle();
  ASSERT_TRUE(session.screen.shown().drawing);
  EXPECT_EQ(session.screen.shown().drawing->dpi, 144);
  EXPECT_THAT(asked, ElementsAre(std::pair(0, 144.0)));
}

TEST_F(FirstPageTest, IsNotDrawnAheadForATargetThatMayBeOnAnotherPage) {
  session.opener.open({file, "page=1"});
  session.drawAhead();
  EXPECT_THAT(asked, IsEmpty());
}

TEST_F(FirstPageTest, IsNotDrawnAheadOfOneOfSeveralFiles) {
  session.opener.openAll({{file, {}}, {folder.write("other.pdf", test::pdfOf(test::numberedPages(1))), {}}}, "");
  session.drawAhead();
  EXPECT_THAT(asked, IsEmpty());
}

TEST_F(FirstPageTest, ThatCannotBeDrawnIsAnErrorWhenTheDocumentIsOpen) {
  session.opener.open({folder.write("damaged.pdf", test::allDamaged()), {}});
  session.drawAhead();
  settle();
  EXPECT_THAT(session.tiles.error(), HasSubstr("damaged.pdf: page 1"));
  EXPECT_EQ(asked.size(), 2U) << "once more, for the document";
}

struct FirstPageOfAFile : test::Sessions {
  // Hands over what has been answered until the condition holds; the document is not taken over.
  bool untilAnswered(const std::function<bool()> &done) {
    Services services;
    session().opener.addServices(services);
    return test::until(session().descriptor(), [&] {
      for (const auto &service : services)
        service->collect();
      return done();
    });
  }
};

TEST_F(FirstPageOfAFile, ThatHasChangedIsDrawnAgainAndTheChangeReported) {
  const auto file = write("paper.pdf", test::numberedPages(1));
  session().opener.open({file, {}});
  ASSERT_TRUE(untilAnswered([&] { return session().opener.hasOpened(); }));
  std::ofstream(file, std::ios::app) << "more";
  testing::internal::CaptureStderr();
  session().drawAhead();
  bool isNextDrawn = false; // after the first page, by the same process
  const host::Ticket next = session().opener.onlyOpened()->service->ask(
      host::ImageRequest{0, 72, {400, 600}}, host::Urgency::ahead, [&](host::Answer &) { isNextDrawn = true; });
  ASSERT_TRUE(untilAnswered([&] { return isNextDrawn; }));
  EXPECT_TRUE(session().documents.all().empty());
  ASSERT_TRUE(draws());
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("has changed; Reload shows it"));
  EXPECT_THAT(session().status.message(), HasSubstr("paper.pdf: has changed"));
}

} // namespace
} // namespace viewer
