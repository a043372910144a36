// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Reloading documents: their pages, passwords and places.
#include <gmock/gmock.h>
#include <poll.h>

#include <stdexcept>

#include "SessionTest.h"

namespace viewer {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

TEST_F(SessionTest, ReloadingShowsTheCurrentFileOnTheSamePage) {
  openPages(test::numberedPages(4));
  session().moving.goToPage(2);
  write("paper.pdf", test::numberedPages(6));
  session().opener.reload();
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  EXPECT_EQ(session().documents.pageCount(), 6);
  EXPECT_EQ(session().documents.page(), 2);
}

TEST_F(SessionTest, ReloadingAShorterFileShowsItsLastPage) {
  openPages(test::numberedPages(4));
  session().moving.goToPage(3);
  write("paper.pdf", test::numberedPages(2));
  session().opener.reload();
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  EXPECT_EQ(session().documents.page(), 1);
}

TEST_F(SessionTest, ReloadingKeepsPasswordAndParameters) {
  open(secret(), "xml=h.xml", "user");
  session().opener.reload();
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  ASSERT_NE(session().documents.front(), nullptr) << session().status.message();
  EXPECT_EQ(session().documents.front()->parameters, "xml=h.xml");
}

struct ReloadingSecretTest : SessionTest {
  ReloadingSecretTest() { session().opener.questions = &asked; }
  ~ReloadingSecretTest() override { session().opener.questions = nullptr; }
  // Encrypts the file with the password "user".
  void encrypt(const std::filesystem::path &file) { std::filesystem::rename(secret(), file); }
  void settle() {
    ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  }
  void answer(const std::string &password) {
    const auto last = asked.answers.back();
    last(password);
    settle();
  }
  Asked asked;
};

TEST_F(ReloadingSecretTest, TriesTheKnownPasswordWithoutAQuestion) {
  open(secret(), {}, "user");
  session().opener.reload();
  settle();
  EXPECT_THAT(asked.files, IsEmpty());
  EXPECT_EQ(session().documents.all().size(), 1U);
}

TEST_F(ReloadingSecretTest, AsksForThePasswordOfAFileThatIsEncryptedNow) {
  const auto file = write("a.pdf", test::numberedPages(4));
  open(file);
  session().moving.goToPage(1);
  encrypt(file);
  session().opener.reload();
  settle();
  EXPECT_THAT(asked.agains, ElementsAre(false));
  EXPECT_EQ(session().documents.pageCount(), 4) << "the old state is shown until the new one is open";
  answer("user");
  EXPECT_EQ(session().documents.pageCount(), 2);
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_THAT(names(), ElementsAre("a.pdf"));
  session().opener.reload();
  settle();
  EXPECT_THAT(asked.agains, SizeIs(1)) << "the password is known now";
}

TEST_F(ReloadingSecretTest, AsksAgainAfterAWrongAnswerOnly) {
  const auto file = secret();
  open(file, {}, "user");
  const std::string command = std::string(QPDF) + " --encrypt other owner 256 -- " +
                              write("b.pdf", test::numberedPages(3)).string() + " " + file.string();
  ASSERT_EQ(std::system(command.c_str()), 0); // NOLINT(cert-env33-c): a test's own command
  session().opener.reload();
  settle();
  answer("user");
  answer("other");
  EXPECT_THAT(asked.agains, ElementsAre(false, true));
  EXPECT_EQ(session().documents.pageCount(), 3);
}

TEST_F(ReloadingSecretTest, AnAnswerAfterTheDocumentWasClosedOpensNothing) {
  const auto file = write("a.pdf", test::numberedPages(4));
  open(file);
  encrypt(file);
  session().opener.reload();
  settle();
  session().documents.closeFront();
  answer("user");
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(ReloadingSecretTest, ReloadingAgainAsksNothingWhileThePasswordIsAwaited) {
  const auto file = write("a.pdf", test::numberedPages(4));
  open(file);
  encrypt(file);
  const auto reload = [&] {
    session().opener.reload();
    settle();
  };
  reload();
  reload();
  EXPECT_THAT(asked.agains, ElementsAre(false));
  asked.answers.clear(); // the question was cancelled
  reload();
  EXPECT_THAT(asked.agains, ElementsAre(false, false));
}

TEST_F(ReloadingSecretTest, AfterAnAnswerThatDidNotHelpItCanBeReloadedAgain) {
  const auto file = write("a.pdf", test::numberedPages(4));
  open(file);
  encrypt(file);
  session().opener.reload();
  settle();
  std::filesystem::remove(file);
  testing::internal::CaptureStderr();
  answer("user");
  testing::internal::GetCapturedStderr();
  write("a.pdf", test::numberedPages(3));
  session().opener.reload();
  settle();
  EXPECT_EQ(session().documents.pageCount(), 3);
}

TEST_F(SessionTest, ClosingADocumentDuringItsReloadOrAfterItClosesTheFile) {
  const auto file = write("paper.pdf", test::numberedPages(1));
  for (const bool isOpened : {false, true}) {
    open(file);
    session().opener.reload();
    pollfd opened{session().descriptor(), POLLIN, 0};
    ASSERT_TRUE(!isOpened || poll(&opened, 1, 60'000) == 1); // but it is not taken over yet
    session().documents.closeFront();
    openPages(test::numberedPages(1), "other.pdf");
    ASSERT_TRUE(draws());
    EXPECT_FALSE(test::hasOpen(file)) << isOpened;
    session().documents.closeAll();
  }
}

TEST_F(SessionTest, AReloadedDocumentStaysBehindWhatHasComeToFrontMeanwhile) {
  const auto file = write("a.pdf", test::numberedPages(4));
  open(file);
  session().moving.goToPage(2);
  openPages(test::numberedPages(3), "b.pdf");
  session().documents.bringToFront(0);
  write("a.pdf", test::numberedPages(5));
  session().opener.reload();
  session().documents.bringToFront(1);
  session().moving.goToPage(1);
  session().status.set("of b.pdf");
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  EXPECT_THAT(names(), ElementsAre("a.pdf", "b.pdf"));
  EXPECT_EQ(frontName(), "b.pdf");
  EXPECT_EQ(session().documents.page(), 1);
  EXPECT_EQ(session().status.message(), "of b.pdf");
  session().documents.bringToFront(0);
  EXPECT_EQ(session().documents.pageCount(), 5);
  EXPECT_EQ(session().documents.page(), 2);
}

TEST_F(SessionTest, AReloadedDocumentIsClosedAlsoIfAKeeperFails) {
  struct : DocumentKeeper {
    void replaces(const OpenDocument & /*before*/, const OpenDocument & /*now*/) override {
      throw std::runtime_error("a keeper fails");
    }
  } failing;
  openPages(test::numberedPages(4));
  session().moving.goToPage(2);
  const auto keepers = session().documents.keepers;
  session().documents.keepers.insert(session().documents.keepers.begin(), &failing);
  session().opener.reload();
  EXPECT_THROW(until([&] { return !session().opener.opening(); }), std::runtime_error);
  session().documents.keepers = keepers;
  EXPECT_THAT(session().documents.all(), SizeIs(1));
  EXPECT_THAT(session().documents.services(), SizeIs(1)) << "the document before is closed";
  EXPECT_EQ(session().documents.page(), 2) << "the other keepers are notified";
}

TEST_F(SessionTest, ReloadingReportsParametersThatNoPlugInReads) {
  testing::internal::CaptureStderr();
  open(write("a.pdf", test::numberedPages(1)), "page=1");
  session().status.set("");
  session().opener.reload();
  EXPECT_TRUE(until([&] { return !session().opener.opening(); }));
  testing::internal::GetCapturedStderr();
  EXPECT_THAT(session().status.message(), HasSubstr("no plug-in is loaded that handles #page=1"));
}

TEST_F(SessionTest, ReloadingDrawsTheCurrentFile) {
  openPages({test::pageWith("page")});
  ASSERT_TRUE(draws());
  EXPECT_EQ(pixel(20, 20), 0xFFFFFFFF);
  write("paper.pdf", {{.drawing = "1 0 0 rg 0 0 400 600 re f"}});
  session().opener.reload();
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  ASSERT_TRUE(draws());
  EXPECT_EQ(pixel(20, 20), 0xFFFF0000);
}

} // namespace
} // namespace viewer
