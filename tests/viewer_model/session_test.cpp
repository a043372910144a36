// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Documents of a session: opening, closing, and which is in front.
#include "viewer/model/session.h"

#include <gmock/gmock.h>

#include <fstream>

#include "SessionTest.h"

namespace viewer {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

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

// ---- what the window shows of documents ----

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
