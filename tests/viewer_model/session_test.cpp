// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Documents of a session: opening, closing, reloading, and which is in front.
#include "viewer/model/session.h"

#include <gmock/gmock.h>

#include <fstream>

#include "Sessions.h"

namespace viewer {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

struct Asked : Questions {
  void askPassword(const Target &target, bool again, const Answer &answer) override {
    files.push_back(target);
    agains.push_back(again);
    answers.push_back(answer);
  }
  std::vector<Target> files;
  std::vector<bool> agains;
  std::vector<Answer> answers;
};

struct SessionTest : test::Sessions {
  // The names of the open documents, in their order.
  std::vector<std::string> names() {
    std::vector<std::string> result;
    for (const host::ViewerDocument *document : session().documents.all())
      result.push_back(document->file.filename());
    return result;
  }
  std::string frontName() {
    return session().documents.front() == nullptr ? "" : session().documents.front()->file.filename().string();
  }
  // What is printed to standard error until all files are open or refused.
  std::string errorsOf(const std::filesystem::path &file) {
    testing::internal::CaptureStderr();
    open(file);
    return testing::internal::GetCapturedStderr();
  }
  std::filesystem::path secret() { return test::locked(write("secret.pdf", test::numberedPages(2))); }
};

// ---- opening ----

TEST_F(SessionTest, WithoutDocumentsThereIsNothing) {
  EXPECT_EQ(session().documents.front(), nullptr);
  EXPECT_EQ(session().documents.view(), nullptr);
  EXPECT_EQ(session().documents.title(), "Tavrel");
  EXPECT_EQ(session().documents.pageCount(), 0);
  EXPECT_FALSE(session().screen.draw());
}

TEST_F(SessionTest, ActionsWithoutADocumentDoNothing) {
  session().documents.closeFront();
  session().opener.reload();
  session().documents.bringToFront(0);
  session().moving.goToPage(3);
  session().moving.scroll(0, 10);
  session().moving.setSlider(1, 1);
  session().moving.zoomBy(1);
  session().moving.setZoom(2);
  session().finding.find({"lamp", {}}, false);
  session().finding.end();
  EXPECT_FALSE(session().finding.searching());
  EXPECT_THAT(session().status.message(), IsEmpty());
}

TEST_F(SessionTest, AnOpenedFileIsInFront) {
  openPages(test::numberedPages(3));
  EXPECT_EQ(frontName(), "paper.pdf");
  EXPECT_EQ(session().documents.pageCount(), 3);
  EXPECT_EQ(session().documents.title(), "paper.pdf - Tavrel");
}

TEST_F(SessionTest, OpeningIsShownUntilTheFileIsOpen) {
  session().opener.open({write("paper.pdf", test::numberedPages(1)), {}});
  EXPECT_TRUE(session().opener.opening());
  EXPECT_EQ(session().status.message(), "Opening paper.pdf");
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  EXPECT_THAT(session().status.message(), IsEmpty());
}

TEST_F(SessionTest, APluginThatIsNotifiedOfADocumentAsksForItsParameters) {
  static std::string *s_heard;
  std::string heard = "not notified";
  s_heard = &heard;
  const tavrel::DocNotifyProc ask = [](tavrel::Doc document, void *) {
    const char *parameters = TavrelView::DocGetOpenParameters(document);
    *s_heard = parameters == nullptr ? "none" : parameters;
  };
  app.registerNotification(tavrel::notifyDocDidOpen, {testPlugin.callback(ask), nullptr, testPlugin.id});
  open(write("paper.pdf", test::numberedPages(1)), "page=3&xml=h.xml");
  EXPECT_EQ(heard, "page=3&xml=h.xml");
}

TEST_F(SessionTest, DifferentPathsOfAFileAreRecognised) {
  const auto file = write("paper.pdf", test::numberedPages(1));
  open(file);
  open(std::filesystem::relative(file));
  EXPECT_THAT(session().documents.all(), SizeIs(1));
}

TEST_F(SessionTest, AnOpenFileComesToFrontInsteadOfOpeningTwice) {
  const auto file = write("a.pdf", test::numberedPages(1));
  open(file, "page=1");
  openPages(test::numberedPages(1), "b.pdf");
  open(file);
  EXPECT_THAT(names(), ElementsAre("a.pdf", "b.pdf"));
  EXPECT_EQ(frontName(), "a.pdf");
}

TEST_F(SessionTest, OtherParametersOpenTheFileOnceMore) {
  const auto file = write("a.pdf", test::numberedPages(1));
  open(file, "page=1");
  open(file, "page=2");
  EXPECT_THAT(session().documents.all(), SizeIs(2));
  open(file, "page=1");
  EXPECT_THAT(session().documents.all(), SizeIs(2));
  EXPECT_EQ(session().documents.frontIndex(), 0U);
}

TEST_F(SessionTest, AFileThatIsStillBeingOpenedIsNotOpenedTwice) {
  const auto file = write("a.pdf", test::numberedPages(1));
  session().opener.open({file, {}});
  session().opener.open({file, {}});
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  EXPECT_THAT(session().documents.all(), SizeIs(1));
}

TEST_F(SessionTest, FilesOpenedAtOnceKeepTheirOrder) {
  std::vector<Target> targets;
  for (const char *name : {"a.pdf", "b.pdf", "c.pdf"})
    targets.push_back({write(name, test::numberedPages(1)), {}});
  session().opener.openAll(targets, {});
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  EXPECT_THAT(names(), ElementsAre("a.pdf", "b.pdf", "c.pdf"));
  EXPECT_EQ(session().documents.frontIndex(), 2U);
}

TEST_F(SessionTest, OfFilesOpenedTogetherTheOneWithAHighlightFileIsInFront) {
  const auto openAll = [this](const std::vector<std::string> &parameters) {
    session().documents.closeAll();
    std::vector<Target> targets;
    for (size_t i = 0; i < parameters.size(); ++i)
      targets.push_back({write(std::to_string(i) + ".pdf", test::numberedPages(1)), parameters[i]});
    session().opener.openAll(targets, {});
    ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
    EXPECT_EQ(session().documents.all().size(), targets.size());
  };
  openAll({"xml=a.xml", "", ""});
  EXPECT_EQ(frontName(), "0.pdf");
  openAll({"", "page=1&XML=a.xml", "page=1"});
  EXPECT_EQ(frontName(), "1.pdf");
  openAll({"xml=a.xml", "xml=b.xml", ""});
  EXPECT_EQ(frontName(), "1.pdf");
}

TEST_F(SessionTest, AFileWithHitsThatCannotBeOpenedLeavesTheOthers) {
  testing::internal::CaptureStderr();
  session().opener.openAll({{"/nowhere/a.pdf", "xml=a.xml"}, {write("b.pdf", test::numberedPages(1)), {}}}, {});
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("No such file"));
  EXPECT_EQ(frontName(), "b.pdf");
  EXPECT_THAT(session().status.message(), HasSubstr("No such file"));
}

TEST_F(SessionTest, OfFilesOpenedTogetherTheLastOneThatCanBeOpenedIsInFront) {
  testing::internal::CaptureStderr();
  const auto frontOf = [this](const std::string &firstParameters, const std::string &missingParameters) {
    session().documents.closeAll();
    session().opener.openAll({{write("a.pdf", test::numberedPages(1)), firstParameters},
                              {write("b.pdf", test::numberedPages(1)), {}},
                              {"/nowhere/c.pdf", missingParameters}},
                             {});
    EXPECT_TRUE(until([&] { return !session().opener.opening(); }));
    return frontName();
  };
  EXPECT_EQ(frontOf("", ""), "b.pdf");
  EXPECT_EQ(frontOf("xml=a.xml", "xml=c.xml"), "a.pdf");
  testing::internal::GetCapturedStderr();
}

TEST_F(SessionTest, EndsWhileFilesAreBeingOpened) {
  openPages(test::numberedPages(1));
  for (const char *name : {"a.pdf", "b.pdf", "c.pdf"})
    session().opener.open({write(name, test::numberedPages(1)), {}});
  endSession();
  EXPECT_EQ(app.front(), nullptr);
}

// ---- what becomes of a file ----

struct OutcomeTest : SessionTest {
  // What was called back for a file, and how many documents were open then.
  std::vector<std::string> outcomesOf(const std::filesystem::path &file, int requests = 1) {
    std::vector<std::string> outcomes;
    for (int i = 0; i < requests; ++i)
      session().opener.open({file, {}}, {}, [&](const std::string &failure) {
        outcomes.push_back(failure.empty() ? "open, documents: " + std::to_string(session().documents.all().size())
                                           : failure);
      });
    EXPECT_TRUE(until([&] { return !session().opener.opening(); }));
    return outcomes;
  }
};

TEST_F(OutcomeTest, IsToldOnceTheDocumentIsThere) {
  const auto file = write("a.pdf", test::numberedPages(1));
  EXPECT_THAT(outcomesOf(file), ElementsAre("open, documents: 1"));
  EXPECT_THAT(outcomesOf(file), ElementsAre("open, documents: 1")) << "it is open already";
}

TEST_F(OutcomeTest, OfAFileThatCannotBeOpenedIsTheReason) {
  const auto file = folder.write("letter.pdf", "Dear reader");
  testing::internal::CaptureStderr();
  EXPECT_THAT(outcomesOf(file), ElementsAre(file.string() + ": this is not a PDF"));
  testing::internal::GetCapturedStderr();
}

TEST_F(OutcomeTest, OfAFileThatIsRequestedAgainMeanwhileIsToldForEachRequest) {
  const auto file = write("a.pdf", test::numberedPages(1));
  EXPECT_THAT(outcomesOf(file, 2), ElementsAre("open, documents: 1", "open, documents: 1"));
  const auto letter = folder.write("letter.pdf", "Dear reader");
  testing::internal::CaptureStderr();
  EXPECT_THAT(outcomesOf(letter, 2), testing::Each(letter.string() + ": this is not a PDF"));
  testing::internal::GetCapturedStderr();
}

TEST_F(OutcomeTest, OfADocumentThatCannotBeTakenOverIsTheReason) {
  const auto file = write("a.pdf", test::numberedPages(1));
  app.prepare = [](host::ViewerDocument &) { throw std::bad_alloc(); };
  testing::internal::CaptureStderr();
  EXPECT_THAT(outcomesOf(file), ElementsAre(file.string() + ": memory is exhausted"));
  testing::internal::GetCapturedStderr();
}

TEST_F(SessionTest, ParametersThatNoPlugInReadsAreReported) {
  const auto file = write("a.pdf", test::numberedPages(1));
  testing::internal::CaptureStderr();
  open(file, "page=1");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tavrel: " + file.string() + ": no plug-in is loaded that handles #page=1\n");
}

// ---- files that cannot be opened ----

TEST_F(SessionTest, ADamagedFileIsReportedOnce) {
  const auto file = folder.write("truncated.pdf", test::pdfOf(test::numberedPages(1)).substr(0, 60));
  EXPECT_EQ(errorsOf(file), "tavrel: " + file.string() + ": the file is damaged\n");
  EXPECT_EQ(session().status.message(), file.string() + ": the file is damaged");
  EXPECT_EQ(session().documents.front(), nullptr);
}

TEST_F(SessionTest, AMissingFileDoesNotAffectTheOthers) {
  openPages(test::numberedPages(1), "a.pdf");
  EXPECT_THAT(errorsOf("/nowhere/b.pdf"), HasSubstr("No such file"));
  EXPECT_THAT(names(), ElementsAre("a.pdf"));
  EXPECT_EQ(frontName(), "a.pdf");
}

TEST_F(SessionTest, ADocumentWhoseFirstPageIsDamagedIsOpenedAndReported) {
  open(folder.write("bad.pdf", test::allDamaged()));
  testing::internal::CaptureStderr();
  ASSERT_TRUE(draws());
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("page 1 is damaged"));
  EXPECT_THAT(session().tiles.error(), HasSubstr("page 1 is damaged"));
  session().documents.closeFront();
  EXPECT_EQ(session().documents.front(), nullptr);
}

// ---- passwords ----

TEST_F(SessionTest, AnEncryptedFileAsksForItsPassword) {
  Asked asked;
  session().opener.questions = &asked;
  const auto file = secret();
  EXPECT_THAT(errorsOf(file), IsEmpty());
  EXPECT_THAT(asked.files, ElementsAre(Target{file, ""}));
  EXPECT_THAT(asked.agains, ElementsAre(false));
  EXPECT_TRUE(session().opener.asksPassword());
  session().opener.questions = nullptr;
}

TEST_F(SessionTest, AWrongPasswordAsksAgain) {
  Asked asked;
  session().opener.questions = &asked;
  open(secret(), "page=2", "wrong");
  EXPECT_THAT(asked.agains, ElementsAre(true));
  EXPECT_EQ(asked.files.at(0).parameters, "page=2");
  session().opener.questions = nullptr;
}

TEST_F(SessionTest, ThePasswordOpensTheFile) {
  Asked asked;
  session().opener.questions = &asked;
  open(secret());
  asked.answers.at(0)("user");
  ASSERT_TRUE(until([&] { return !session().opener.opening(); }));
  ASSERT_TRUE(draws());
  EXPECT_EQ(frontName(), "secret.pdf.locked.pdf");
  session().opener.questions = nullptr;
}

TEST_F(SessionTest, WithoutQuestionsAnEncryptedFileIsRefused) {
  EXPECT_THAT(errorsOf(secret()), EndsWith("is encrypted: a password is needed\n"));
  EXPECT_FALSE(session().opener.asksPassword());
}

// ---- closing ----

TEST_F(SessionTest, AfterClosingThePreviousDocumentIsInFront) {
  openPages(test::numberedPages(1), "a.pdf");
  openPages(test::numberedPages(1), "b.pdf");
  session().documents.closeFront();
  EXPECT_THAT(names(), ElementsAre("a.pdf"));
  EXPECT_EQ(frontName(), "a.pdf");
  EXPECT_TRUE(session().screen.needsDrawing());
}

TEST_F(SessionTest, AClosedDocumentsPagesAreDropped) {
  openPages(test::numberedPages(1));
  ASSERT_TRUE(draws());
  EXPECT_EQ(session().tiles.cache().size(), 1U);
  session().documents.closeFront();
  EXPECT_EQ(session().tiles.cache().size(), 0U);
}

TEST_F(SessionTest, PagesThatArriveForAClosedDocumentAreDropped) {
  openPages({test::slowPage()}, "a.pdf");
  session().screen.draw();
  session().documents.closeFront();
  openPages(test::numberedPages(1), "b.pdf");
  ASSERT_TRUE(draws());
  EXPECT_EQ(session().tiles.cache().size(), 1U);
}

TEST_F(SessionTest, TheLastDocumentLeavesAnEmptyWindow) {
  openPages(test::numberedPages(1));
  ASSERT_TRUE(draws());
  session().documents.closeFront();
  EXPECT_TRUE(session().screen.needsDrawing());
  EXPECT_TRUE(session().screen.draw());
  EXPECT_FALSE(session().screen.shown().document);
  EXPECT_FALSE(session().screen.draw());
}

TEST_F(SessionTest, ADocumentThatWasNotInFrontFitsTheCurrentWindow) {
  openPages(test::numberedPages(1), "a.pdf");
  openPages(test::numberedPages(1), "b.pdf");
  session().moving.setWindow(200, 150, 5);
  session().documents.closeFront();
  EXPECT_EQ(session().documents.window()->pageWidth(), 200);
}

TEST_F(SessionTest, ADocumentBroughtToFrontFitsTheCurrentWindow) {
  openPages(test::numberedPages(1), "a.pdf");
  openPages(test::numberedPages(1), "b.pdf");
  session().moving.setWindow(200, 150, 5);
  session().documents.bringToFront(0);
  EXPECT_EQ(session().documents.window()->pageWidth(), 200);
}

TEST_F(SessionTest, ClosingAllLeavesNone) {
  openPages(test::numberedPages(1), "a.pdf");
  openPages(test::numberedPages(1), "b.pdf");
  session().documents.closeAll();
  EXPECT_THAT(session().documents.all(), IsEmpty());
  EXPECT_EQ(session().documents.front(), nullptr);
}

// ---- bringing to front ----

TEST_F(SessionTest, BringingToFrontKeepsTheOrder) {
  openPages(test::numberedPages(1), "a.pdf");
  openPages(test::numberedPages(1), "b.pdf");
  openPages(test::numberedPages(1), "c.pdf");
  session().documents.bringToFront(0);
  EXPECT_THAT(names(), ElementsAre("a.pdf", "b.pdf", "c.pdf"));
  EXPECT_EQ(session().documents.frontIndex(), 0U);
  EXPECT_THAT(session().documents.title(), testing::StartsWith("a.pdf"));
}

TEST_F(SessionTest, AnUnknownIndexBringsNothingToFront) {
  openPages(test::numberedPages(1), "a.pdf");
  session().documents.bringToFront(1);
  EXPECT_EQ(frontName(), "a.pdf");
}

TEST_F(SessionTest, EveryDocumentStaysOnItsPage) {
  openPages(test::numberedPages(4), "a.pdf");
  session().moving.goToPage(3);
  openPages(test::numberedPages(4), "b.pdf");
  EXPECT_EQ(session().documents.page(), 0);
  session().documents.bringToFront(0);
  EXPECT_EQ(session().documents.page(), 3);
}

// ---- reloading ----

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

// The thread closes documents before it renders: once another file's page is rendered, closed documents are closed.
TEST_F(SessionTest, ClosingADocumentAfterItsReloadClosesTheFile) {
  const auto file = write("paper.pdf", test::numberedPages(1));
  open(file);
  const size_t before = waker.wakes();
  session().opener.reload();
  ASSERT_TRUE(waker.until([&] { return waker.wakes() > before; })); // opened, but not taken over yet
  session().documents.closeFront();
  openPages(test::numberedPages(1), "other.pdf");
  ASSERT_TRUE(draws());
  EXPECT_FALSE(test::hasOpen(file));
}

TEST_F(SessionTest, ClosingADocumentDuringItsReloadClosesTheFile) {
  const auto file = write("paper.pdf", test::numberedPages(1));
  open(file);
  session().opener.reload();
  session().documents.closeFront();
  openPages(test::numberedPages(1), "other.pdf");
  ASSERT_TRUE(draws());
  EXPECT_FALSE(test::hasOpen(file));
}

TEST_F(SessionTest, WithoutMemoryForADocumentItsFileIsClosedAndNamed) {
  const auto file = write("paper.pdf", test::numberedPages(1));
  const auto prepare = std::exchange(app.prepare, [](host::ViewerDocument &) { throw std::bad_alloc(); });
  EXPECT_EQ(errorsOf(file), "tavrel: " + file.string() + ": memory is exhausted\n");
  EXPECT_EQ(app.front(), nullptr);
  app.prepare = prepare;
  openPages(test::numberedPages(1), "other.pdf");
  ASSERT_TRUE(draws());
  EXPECT_FALSE(test::hasOpen(file));
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

TEST_F(SessionTest, AChangedFileIsReported) {
  const auto file = write("paper.pdf", test::numberedPages(3));
  open(file);
  std::ofstream(file, std::ios::app) << "more";
  testing::internal::CaptureStderr();
  ASSERT_TRUE(draws());
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("has changed; Reload shows it"));
  EXPECT_THAT(session().status.message(), HasSubstr("paper.pdf: has changed"));
}

TEST_F(SessionTest, MarkedPagesOfAllPluginsAreOneList) {
  openPages(test::numberedPages(5));
  const int32_t first[] = {3, 1}, second[] = {1, 4};
  app.markPages(1, *session().documents.front(), first);
  app.markPages(2, *session().documents.front(), second);
  EXPECT_THAT(session().documents.markedPages(), ElementsAre(1, 3, 4));
}

TEST_F(SessionTest, StatusTextsOfPluginsCountAsChanges) {
  session().changes.take();
  app.setStatusText(testPlugin.id, "3 hits");
  EXPECT_NE(session().changes.take() & viewer::partStatus, 0U);
  EXPECT_EQ(session().changes.take(), 0U);
}

} // namespace
} // namespace viewer
