// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The order of files that are opened at once, when a later one is there first.
#include <gmock/gmock.h>

#include "LateBackend.h"
#include "TestDocuments.h"
#include "viewer/model/session.h"

namespace viewer {
namespace {

using testing::ElementsAre;

struct OpeningOrder : testing::Test {
  OpeningOrder() {
    for (const char *name : {"a.pdf", "late.pdf", "c.pdf"})
      targets.push_back({folder.write(name, test::pdfOf(test::numberedPages(1))), {}});
  }
  void openAll() {
    session.opener.openAll(targets, {});
    settle();
    ASSERT_EQ(session.documents.all().size(), 2U);
    release();
  }
  void release() {
    released = true;
    settle();
  }
  void settle() {
    for (int round = 0; round < 10; ++round)
      session.arrivals.collect();
  }
  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const host::ViewerDocument *document : session.documents.all())
      all.push_back(document->file.filename());
    return all;
  }
  std::string front() const { return session.documents.front()->file.filename(); }

  test::ScratchFolder folder;
  std::vector<Target> targets;
  bool released = false;
  host::Runtime runtime;
  host::Application app{runtime};
  Session session{app, [this](const std::filesystem::path &file) {
                    const bool late = file.filename() == "late.pdf";
                    return test::lateService(
                        file, [late](const host::Request &) { return late; }, released);
                  }};
};

TEST_F(OpeningOrder, IsThatOfTheRequestsAndTheLastOneStaysInFront) {
  openAll();
  EXPECT_THAT(names(), ElementsAre("a.pdf", "late.pdf", "c.pdf"));
  EXPECT_EQ(front(), "c.pdf");
}

TEST_F(OpeningOrder, ALateFileWithHitsComesToTheFront) {
  targets[1].parameters = "xml=a.xml";
  openAll();
  EXPECT_THAT(names(), ElementsAre("a.pdf", "late.pdf", "c.pdf"));
  EXPECT_EQ(front(), "late.pdf");
}

TEST_F(OpeningOrder, ALateFileThatIsChosenMeanwhileComesToTheFront) {
  session.opener.openAll(targets, {});
  settle();
  session.opener.open(targets[1]);
  release();
  EXPECT_THAT(names(), ElementsAre("a.pdf", "late.pdf", "c.pdf"));
  EXPECT_EQ(front(), "late.pdf");
}

TEST(OpeningManyFiles, TakesFewProcessesAtATime) {
  const test::ScratchFolder folder;
  std::vector<Target> targets;
  for (int i = 0; i < 10; ++i)
    targets.push_back({folder.write(std::to_string(i) + ".pdf", test::pdfOf(test::numberedPages(1))), {}});
  bool released = false;
  int64_t asked = 0;
  host::Runtime runtime;
  host::Application app(runtime);
  Session session(app, [&](const std::filesystem::path &file) {
    ++asked;
    return test::lateService(
        file, [](const host::Request &) { return true; }, released);
  });
  session.opener.openAll(targets, {});
  session.arrivals.collect();
  EXPECT_EQ(asked, Opening::atOnce);
  released = true;
  session.arrivals.collect();
  EXPECT_EQ(asked, 2 * Opening::atOnce) << "those that follow";
  for (int round = 0; round < 20; ++round)
    session.arrivals.collect();
  EXPECT_EQ(session.documents.all().size(), targets.size());
  EXPECT_EQ(session.documents.front()->file.filename(), "9.pdf");
}

} // namespace
} // namespace viewer
