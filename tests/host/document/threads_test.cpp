// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The threads: files, pages, and requests that take long.
#include "host/document/threads.h"

#include <gmock/gmock.h>

#include <fstream>
#include <optional>

#include "host/document/sources.h"
#include "viewer_model/TestDocuments.h"
#include "viewer_model/Waker.h"

namespace host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Rendering it takes about a second.
test::PdfPage verySlowPage() {
  test::PdfPage page = test::slowPage();
  for (int times = 0; times < 2; ++times)
    page.drawing += page.drawing;
  return page;
}

struct ThreadsTest : testing::Test {
  ThreadsTest() {
    threads.emplace([this] {
      const auto action = onThread; // a copy: the action may replace itself
      if (action) action();
      waker.wake();
    });
  }
  // A document that is open. Its answers are noted as they come.
  struct Document {
    std::shared_ptr<Service> service;
    Ticket opening;
    Answer opened;
    bool isOver = false;
    std::vector<Ticket> tickets;
  };
  Document &request(const std::filesystem::path &file, const std::string &password = {}) {
    Document &document = *documents.emplace_back(std::make_unique<Document>());
    document.service = std::make_shared<Service>(file, threads->backend(file));
    document.opening = document.service->ask(OpenRequest{file, password}, Urgency::shown, [&document](Answer &answer) {
      document.opened = std::move(answer);
      document.isOver = true;
    });
    return document;
  }
  // The wake-up is awaited, too: after it the thread looks at `onThread` no more.
  Document &open(const std::filesystem::path &file, const std::string &password = {}) {
    const size_t before = waker.wakes();
    Document &document = request(file, password);
    EXPECT_TRUE(until([&] { return document.isOver && waker.wakes() > before; }));
    return document;
  }
  bool until(const std::function<bool()> &done) {
    return waker.until([&] {
      for (const auto &document : documents)
        document->service->collect();
      return done();
    });
  }
  void want(Document &document, int32_t page, Urgency urgency = Urgency::shown, double dpi = 72) {
    document.tickets.push_back(document.service->ask(ImageRequest{page, dpi}, urgency, [&, page](Answer &answer) {
      pages.push_back(page);
      if (answer.fileChanged) ++changes;
      images.push_back(std::move(answer));
    }));
  }
  bool renders(size_t count) {
    return until([&] { return pages.size() >= count; });
  }
  Failure failure(const Answer &answer) {
    const auto *failed = std::get_if<Failure>(&answer.value);
    return failed == nullptr ? Failure{} : *failed;
  }
  const Image &image(size_t index) { return std::get<PageImage>(images.at(index).value).image; }

  test::ScratchFolder folder;
  test::Waker waker;
  std::function<void()> onThread; ///< called before the waker, on the thread
  std::optional<Threads> threads;
  std::vector<std::unique_ptr<Document>> documents;
  std::vector<int32_t> pages; ///< as they were answered
  std::vector<Answer> images;
  int changes = 0;
};

// ---- files ----

TEST_F(ThreadsTest, OpensAFile) {
  const Answer &opened = open(folder.pdf(test::numberedPages(3))).opened;
  ASSERT_TRUE(std::holds_alternative<Opened>(opened.value)) << failure(opened).line;
  EXPECT_EQ(std::get<Opened>(opened.value).pageCount, 3);
  EXPECT_THAT(std::get<Opened>(opened.value).sizes, SizeIs(3));
}

TEST_F(ThreadsTest, AMissingFileIsNamed) {
  const Failure failed = failure(open("/nowhere/missing.pdf").opened);
  EXPECT_EQ(failed.line, "/nowhere/missing.pdf: No such file or directory");
  EXPECT_FALSE(failed.needsPassword);
}

TEST_F(ThreadsTest, AnEncryptedFileNeedsAPassword) {
  const Failure failed = failure(open(test::locked(folder.pdf(test::numberedPages(1)))).opened);
  EXPECT_TRUE(failed.needsPassword);
  EXPECT_THAT(failed.line, HasSubstr("is encrypted: a password is needed"));
}

TEST_F(ThreadsTest, AnotherPasswordIsNeededAfterAWrongOne) {
  EXPECT_TRUE(failure(open(test::locked(folder.pdf(test::numberedPages(1))), "wrong").opened).needsPassword);
}

TEST_F(ThreadsTest, ThePasswordOpensItsPages) {
  Document &document = open(test::locked(folder.pdf(test::numberedPages(1))), "user");
  want(document, 0);
  ASSERT_TRUE(renders(1));
  EXPECT_EQ(image(0).width, 400);
}

TEST_F(ThreadsTest, FilesAreOpenedInTheOrderOfTheRequests) {
  std::vector<std::string> order;
  for (const char *name : {"a.pdf", "b.pdf", "c.pdf"}) {
    Document &document = *documents.emplace_back(std::make_unique<Document>());
    const auto file = folder.write(name, test::pdfOf(test::numberedPages(1)));
    document.service = std::make_shared<Service>(file, threads->backend(file));
    document.opening =
        document.service->ask(OpenRequest{file, {}}, Urgency::shown, [&, name](Answer &) { order.push_back(name); });
  }
  ASSERT_TRUE(until([&] { return order.size() == 3; }));
  EXPECT_THAT(order, ElementsAre("a.pdf", "b.pdf", "c.pdf"));
}

TEST_F(ThreadsTest, AClosedDocumentsFileIsClosed) {
  const auto first = folder.write("a.pdf", test::pdfOf(test::numberedPages(1)));
  open(first);
  Document &second = open(folder.pdf(test::numberedPages(1)));
  EXPECT_TRUE(test::hasOpen(first));
  std::swap(documents[0], documents[1]);
  documents.pop_back();
  want(second, 0);
  ASSERT_TRUE(renders(1));
  EXPECT_FALSE(test::hasOpen(first));
}

TEST_F(ThreadsTest, AFileThatIsClosedBeforeItIsOpenIsNotKeptOpen) {
  const auto file = folder.write("a.pdf", test::pdfOf(test::numberedPages(1)));
  Document &other = open(folder.pdf(test::numberedPages(1)));
  request(file);
  documents.pop_back();
  want(other, 0);
  ASSERT_TRUE(renders(1));
  want(other, 0);
  ASSERT_TRUE(renders(2));
  EXPECT_FALSE(test::hasOpen(file));
}

// ---- what is answered ----

TEST_F(ThreadsTest, RendersAtTheRequestedSize) {
  want(open(folder.pdf(test::numberedPages(2))), 1, Urgency::shown, 36);
  ASSERT_TRUE(renders(1));
  EXPECT_EQ(image(0).width, 200);
  EXPECT_EQ(image(0).height, 300);
}

TEST_F(ThreadsTest, AnswersEveryKindOfRequest) {
  Document &document = open(folder.pdf({test::pageWith("one two"), test::pageWith("three")}));
  std::vector<Answer> answers;
  std::vector<Ticket> tickets;
  for (const Request &asked : std::vector<Request>{SizesRequest{0, 2}, WordsRequest{0, true}, ImageRequest{1, 72},
                                                   MatchesRequest{1, "THREE", {}}})
    tickets.push_back(
        document.service->ask(asked, Urgency::shown, [&](Answer &answer) { answers.push_back(std::move(answer)); }));
  ASSERT_TRUE(until([&] { return answers.size() == 4; }));
  EXPECT_EQ(std::get<Sizes>(answers[0].value).sizes.at(1).width, 400);
  EXPECT_EQ(std::get<PageWords>(answers[1].value).text.text(), U"one two");
  EXPECT_THAT(std::get<PageWords>(answers[1].value).order, ElementsAre(0, 1));
  EXPECT_EQ(std::get<PageImage>(answers[2].value).page, 1);
  EXPECT_THAT(std::get<PageMatches>(answers[3].value).found, SizeIs(1));
}

TEST_F(ThreadsTest, APageThatCannotBeRenderedIsAFailure) {
  Document &document = open(folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(1), 1)));
  want(document, 1);
  want(document, 0);
  ASSERT_TRUE(renders(2));
  EXPECT_THAT(failure(images[0]).line, HasSubstr("page 2 is damaged"));
  EXPECT_EQ(failure(images[0]).code, tavrel::errDocument);
  EXPECT_EQ(image(1).width, 400);
}

TEST_F(ThreadsTest, AnImageBeyondAllBoundsIsAFailure) {
  want(open(folder.pdf(test::numberedPages(1))), 0, Urgency::shown, 1e6);
  ASSERT_TRUE(renders(1));
  EXPECT_THAT(failure(images[0]).line, HasSubstr("no image of a usable size"));
}

TEST_F(ThreadsTest, ATextThatIsNoUtf8IsAFailure) {
  Document &document = open(folder.pdf(test::numberedPages(1)));
  Answer got;
  const Ticket ticket = document.service->ask(MatchesRequest{0, "\xC3(", {}}, Urgency::searched,
                                              [&](Answer &answer) { got = std::move(answer); });
  ASSERT_TRUE(document.service->await(ticket, std::chrono::steady_clock::now() + std::chrono::minutes(1)));
  EXPECT_EQ(failure(got).code, tavrel::errBadArgument);
  EXPECT_THAT(failure(got).line, HasSubstr("UTF-8"));
}

// ---- requests under way, and waiting ----

TEST_F(ThreadsTest, ARequestIsUnderWayUntilItIsAnswered) {
  Document &document = open(folder.pdf({test::slowPage(), test::pageWith("next")}));
  want(document, 0);
  want(document, 1);
  ASSERT_TRUE(waker.until([&] {
    waker.wake();
    return document.tickets[0].underWay();
  }));
  EXPECT_FALSE(document.tickets[1].underWay());
  ASSERT_TRUE(renders(2));
  EXPECT_FALSE(document.tickets[0].underWay());
}

TEST_F(ThreadsTest, WaitingHandsOverThatAnswerAlone) {
  Document &document = open(folder.pdf(test::numberedPages(3)));
  want(document, 0);
  want(document, 1);
  bool there = false;
  const Ticket words =
      document.service->ask(WordsRequest{2}, Urgency::ahead, [&](Answer & /*answer*/) { there = true; });
  EXPECT_TRUE(document.service->await(words, std::chrono::steady_clock::now() + std::chrono::minutes(1)));
  EXPECT_TRUE(there);
  EXPECT_THAT(pages, IsEmpty());
  ASSERT_TRUE(renders(2));
}

TEST_F(ThreadsTest, WaitingEndsAtTheDeadlineAndTheAnswerComesLater) {
  Document &document = open(folder.pdf({verySlowPage()}));
  want(document, 0);
  EXPECT_FALSE(document.service->await(document.tickets[0], std::chrono::steady_clock::now()));
  ASSERT_TRUE(renders(1));
}

// ---- requests that take long ----

TEST_F(ThreadsTest, ASlowPageDoesNotDelayOthers) {
  Document &document = open(folder.pdf({verySlowPage(), test::pageWith("next"), test::pageWith("last")}));
  want(document, 0);
  want(document, 1);
  want(document, 2, Urgency::ahead);
  ASSERT_TRUE(renders(3));
  EXPECT_THAT(pages, ElementsAre(1, 2, 0));
}

TEST_F(ThreadsTest, TwoSlowPagesDoNotDelayOthers) {
  Document &document = open(folder.pdf({verySlowPage(), verySlowPage(), test::pageWith("last")}));
  want(document, 0);
  want(document, 1);
  want(document, 2, Urgency::ahead);
  ASSERT_TRUE(renders(3));
  EXPECT_EQ(pages[0], 2);
}

TEST_F(ThreadsTest, ASlowPageDoesNotDelayAnotherDocument) {
  want(open(folder.write("slow.pdf", test::pdfOf({verySlowPage()}))), 0);
  want(open(folder.write("other.pdf", test::pdfOf({test::pageWith("first"), test::pageWith("second")}))), 1);
  ASSERT_TRUE(renders(2));
  EXPECT_THAT(pages, ElementsAre(1, 0));
}

TEST_F(ThreadsTest, SlowPagesOfOneDocumentDoNotDelayAnotherDocument) {
  const std::vector<test::PdfPage> slow(mostThreads, verySlowPage());
  Document &document = open(folder.write("slow.pdf", test::pdfOf(slow)));
  Document &other = open(folder.write("other.pdf", test::pdfOf(test::numberedPages(mostThreads + 1))));
  for (size_t page = 0; page < slow.size(); ++page)
    want(document, static_cast<int32_t>(page));
  want(other, mostThreads);
  ASSERT_TRUE(renders(slow.size() + 1));
  EXPECT_EQ(pages[0], static_cast<int32_t>(mostThreads));
}

// Each of these documents keeps a thread busy; then one is left.
struct SlowDocuments : ThreadsTest {
  SlowDocuments() {
    const auto file = folder.write("slow.pdf", test::pdfOf({verySlowPage()}));
    for (size_t i = 0; i < mostThreads - 1; ++i)
      open(file);
    Document &other = open(folder.write("other.pdf", test::pdfOf(test::numberedPages(2))));
    for (size_t i = 0; i < mostThreads - 1; ++i)
      want(*documents[i], 0);
    want(other, 1, Urgency::ahead);
  }
  const Ticket &ahead() { return documents.back()->tickets.back(); }
  bool othersAreBusy() const {
    return std::all_of(documents.begin(), documents.end() - 1,
                       [](const auto &document) { return document->tickets[0].underWay(); });
  }
  bool untilOthersAreBusy() {
    return waker.until([&] {
      waker.wake();
      return othersAreBusy();
    });
  }
};

TEST_F(SlowDocuments, TheLastFreeThreadDoesNothingAhead) {
  ASSERT_TRUE(renders(mostThreads));
  EXPECT_EQ(pages[0], 0);
}

TEST_F(SlowDocuments, TheLastFreeThreadBeginsWhatBecomesUrgent) {
  ASSERT_TRUE(untilOthersAreBusy());
  ahead().raise(Urgency::shown);
  ASSERT_TRUE(renders(mostThreads));
  EXPECT_EQ(pages[0], 1);
}

TEST_F(SlowDocuments, TheLastFreeThreadBeginsWhatIsAwaited) {
  ASSERT_TRUE(untilOthersAreBusy());
  EXPECT_TRUE(documents.back()->service->await(ahead(), std::chrono::steady_clock::now() + std::chrono::minutes(1)));
  EXPECT_TRUE(othersAreBusy());
}

// Another thread has an instance of its own for that time.
TEST_F(ThreadsTest, OneInstanceOfADocumentIsOpenUnlessAPageIsSlow) {
  const auto file = folder.pdf({verySlowPage(), test::pageWith("next")});
  const auto instances = [&] {
    size_t count = 0;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd"))
      if (std::error_code gone; std::filesystem::read_symlink(entry, gone) == file) ++count;
    return count;
  };
  std::vector<size_t> counts;
  Document &document = open(file);
  onThread = [&] { counts.push_back(instances()); };
  want(document, 1);
  ASSERT_TRUE(renders(1));
  want(document, 0);
  want(document, 1);
  ASSERT_TRUE(renders(3));
  EXPECT_THAT(counts, ElementsAre(1, 2, 1));
}

// It cannot be opened once more: what waits is answered by the instance that there is.
TEST_F(ThreadsTest, PagesOfARemovedFileAreAnsweredAfterTheSlowOne) {
  const auto file = folder.pdf({verySlowPage(), test::pageWith("next")});
  Document &document = open(file);
  std::filesystem::remove(file);
  want(document, 0);
  want(document, 1);
  ASSERT_TRUE(renders(2));
  EXPECT_THAT(pages, ElementsAre(0, 1));
  EXPECT_EQ(failure(images[1]).line, "");
}

// ---- changes of a file while it is open ----

TEST_F(ThreadsTest, AnUnchangedFileIsNotReported) {
  want(open(folder.pdf(test::numberedPages(1))), 0);
  ASSERT_TRUE(renders(1));
  EXPECT_EQ(changes, 0);
}

struct Change {
  const char *name;
  void (*happens)(const std::filesystem::path &file);
};

struct ChangedFile : ThreadsTest, testing::WithParamInterface<Change> {};

TEST_P(ChangedFile, IsReportedWithEachPageAndAllHaveAnswers) {
  const auto file = folder.pdf(test::numberedPages(3));
  Document &document = open(file);
  GetParam().happens(file);
  for (int32_t page = 0; page < 3; ++page)
    want(document, page);
  ASSERT_TRUE(renders(3));
  EXPECT_EQ(changes, 3);
}

INSTANTIATE_TEST_SUITE_P(
    Threads, ChangedFile,
    testing::Values(
        Change{"IsRemoved", [](const std::filesystem::path &file) { std::filesystem::remove(file); }},
        Change{"IsTruncated", [](const std::filesystem::path &file) { std::filesystem::resize_file(file, 100); }},
        Change{"IsEmptied", [](const std::filesystem::path &file) { std::filesystem::resize_file(file, 0); }},
        Change{"Grows", [](const std::filesystem::path &file) { std::ofstream(file, std::ios::app) << "more"; }},
        Change{"IsReplaced",
               [](const std::filesystem::path &file) {
                 const std::filesystem::path other = file.parent_path() / "other.pdf";
                 std::ofstream(other) << test::pdfOf(test::numberedPages(1));
                 std::filesystem::rename(other, file);
               }}),
    [](const auto &change) { return change.param.name; });

// ---- the end ----

TEST_F(ThreadsTest, EndsWhileItIsBusy) {
  Document &document = open(folder.pdf({test::slowPage(), test::slowPage(), test::slowPage()}));
  for (int32_t page = 0; page < 3; ++page)
    want(document, page);
  ASSERT_TRUE(renders(1));
  const size_t wakes = waker.wakes();
  threads.reset();
  EXPECT_LE(waker.wakes(), wakes + 2); // the pages being rendered
}

TEST_F(ThreadsTest, EndsWithFilesToOpen) {
  const auto file = folder.pdf(test::numberedPages(1));
  for (int document = 0; document < 50; ++document)
    request(file);
  threads.reset();
  EXPECT_LE(waker.wakes(), 50U);
}

TEST_F(ThreadsTest, FinishingDoesNotWaitForThePageUnderWay) {
  Document &document = open(folder.pdf({verySlowPage()}));
  want(document, 0);
  ASSERT_TRUE(waker.until([&] {
    waker.wake();
    return document.tickets[0].underWay();
  }));
  EXPECT_FALSE(threads->finish(std::chrono::milliseconds(0)));
  EXPECT_TRUE(threads->finish(std::chrono::minutes(1)));
}

TEST_F(ThreadsTest, AfterTheEndNothingIsAnswered) {
  Document &document = open(folder.pdf(test::numberedPages(1)));
  threads.reset();
  want(document, 0);
  EXPECT_FALSE(
      document.service->await(document.tickets[0], std::chrono::steady_clock::now() + std::chrono::minutes(1)));
}

} // namespace
} // namespace host
