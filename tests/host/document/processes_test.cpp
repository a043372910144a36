// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Documents that are read by processes: what they answer, when they fail, and when they take too long or too much. It
// is long because all of its tests share the fixture, which starts the processes and waits for their answers.
#include "host/document/processes.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <set>

#include "document/pdf.h"
#include "host/document/process.h"
#include "host/document/sanitized.h"
#include "support/pdfparts.h"
#include "viewer_model/TestDocuments.h"

namespace host {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// A document, and what has been answered about it.
struct Asked {
  std::shared_ptr<Service> service;
  std::vector<Ticket> tickets = {};
  std::vector<Answer> answers = {};

  void ask(Request request, Urgency urgency = Urgency::shown) {
    tickets.push_back(
        service->ask(std::move(request), urgency, [this](Answer &answer) { answers.push_back(std::move(answer)); }));
  }
};

struct ProcessesTest : testing::Test {
  Asked &request(const std::filesystem::path &file, const std::string &password = {}) {
    Asked &asked = *all.emplace_back(std::make_unique<Asked>());
    asked.service = std::make_shared<Service>(file, processes.backend(file));
    asked.ask(OpenRequest{file, password});
    return asked;
  }
  // A document that has been opened; its answer is forgotten.
  Asked &open(const std::filesystem::path &file, const std::string &password = {}) {
    Asked &asked = request(file, password);
    EXPECT_TRUE(answers(asked, 1));
    EXPECT_EQ(lineOf(asked.answers.back()), "");
    asked.answers.clear();
    return asked;
  }
  // Waits as an event loop does until so many requests have been answered.
  bool answers(Asked &asked, size_t count) {
    const Time deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (asked.answers.size() < count && std::chrono::steady_clock::now() < deadline) {
      pollfd ready{processes.descriptor(), POLLIN, 0};
      if (poll(&ready, 1, 60'000) <= 0) return false;
      for (const auto &one : all)
        one->service->collect();
    }
    return asked.answers.size() >= count;
  }
  static std::string lineOf(const Answer &answer) {
    const auto *failed = std::get_if<Failure>(&answer.value);
    return failed == nullptr ? "" : failed->line;
  }
  // The processes of documents that this one has started.
  static std::vector<pid_t> childrenOf() {
    std::ifstream list("/proc/thread-self/children");
    return {std::istream_iterator<pid_t>(list), {}};
  }
  static size_t children() { return childrenOf().size(); }
  static void killAll() {
    for (const pid_t child : childrenOf())
      kill(child, SIGKILL);
  }
  // What a process has in memory and shares with no other one, in KB; -1 if it is not there.
  static long privateMemory(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    long kilobytes = -1;
    for (std::string name; status >> name;)
      if (name == "RssAnon:") status >> kilobytes;
    return kilobytes;
  }
  // Kills what draws the document's page, once it has been begun.
  static void killImages(const Asked &asked) {
    while (!asked.tickets.back().underWay())
      asked.service->collect();
    const std::vector<pid_t> killed = childrenOf();
    killAll();
    const auto isThere = [&](pid_t child) { return std::find(killed.begin(), killed.end(), child) != killed.end(); };
    for (auto now = killed; std::any_of(now.begin(), now.end(), isThere); now = childrenOf())
      asked.service->collect();
  }
  static ImageRequest imageOf(int32_t page, double dpi = 72, PixelSize size = {400, 600}) { return {page, dpi, size}; }
  static const Image &image(const Answer &answer) { return std::get<PageImage>(answer.value).image; }

  test::ScratchFolder folder;
  Processes processes{{documentProgram()}};
  std::vector<std::unique_ptr<Asked>> all;
};

TEST_F(ProcessesTest, TheProgramIsBesideThisOne) {
  EXPECT_TRUE(std::filesystem::exists(documentProgram())) << documentProgram();
}

TEST_F(ProcessesTest, AnswerAsTheLibraryDoesInThisProcess) {
  const auto file = folder.pdf({test::pageWith("lamp"), test::pageWith("oil lamp")});
  const auto here = document::PdfFile::open(file, "");
  Asked &asked = request(file);
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(std::get<Opened>(asked.answers[0].value).pageCount, 2);
  EXPECT_THAT(std::get<Opened>(asked.answers[0].value).sizes, SizeIs(2));
  asked.ask(WordsRequest{1, true});
  ASSERT_TRUE(answers(asked, 2));
  EXPECT_EQ(std::get<PageWords>(asked.answers[1].value).text.text(), U"oil lamp");
  ASSERT_THAT(std::get<PageWords>(asked.answers[1].value).order, ElementsAre(0, 1));
  EXPECT_EQ(std::get<PageWords>(asked.answers[1].value).text.words[1].bounds, here->text(1).words[1].bounds);
  asked.ask(imageOf(1));
  ASSERT_TRUE(answers(asked, 3));
  EXPECT_EQ(image(asked.answers[2]).pixels, here->render(1, 72).pixels);
  EXPECT_FALSE(asked.answers[2].fileChanged);
  asked.ask(MatchesRequest{0, "LAMP", {}});
  ASSERT_TRUE(answers(asked, 4));
  EXPECT_THAT(std::get<PageMatches>(asked.answers[3].value).found, SizeIs(1));
}

// Confined, which reading texts in UTF-16, dates and fonts of forms must not need to leave.
TEST_F(ProcessesTest, AnswerAboutTheStructure) {
  test::PdfParts parts;
  parts.catalog = "/PageLabels << /Nums [0 << /S /r >>] >>";
  parts.information = "/Title " + test::pdfString(U"Gr\u00F6\u00DFe") + " /CreationDate (D:20240229120000+02'00')";
  addOutline(parts, {{0, test::pdfString(U"\u4E00"), "/Dest [{page 1} /XYZ 1 2 0]"}});
  addAttachments(parts, {{"a.txt", "hello", "", "/Subtype /text#2Fplain"}});
  test::PdfPage turned = test::pageWith("turned");
  turned.rotate = 180;
  turned.annotations = {"/Subtype /Link /Rect [0 0 10 20] /A << /S /URI /URI (a:b) >>",
                        "/Subtype /Widget /FT /Tx /T (name) /V " + test::pdfString(U"\u00E4") +
                            " /DA (/Helv 10 Tf) /Rect [0 0 10 20]",
                        "/Subtype /FreeText /DA (/Helv 10 Tf) /Contents (note) /Rect [0 0 10 20]"};
  const Box area{.left = 390, .top = 600, .right = 400, .bottom = 580};
  for (const bool isLocked : {false, true}) {
    const auto plain = folder.pdf({test::pageWith("upright"), turned}, {}, {}, parts);
    Asked &asked = isLocked ? open(test::locked(plain), "user") : open(plain);
    asked.ask(StructureRequest{2});
    asked.ask(PageStructureRequest{1, 2});
    asked.ask(AttachmentRequest{0});
    ASSERT_TRUE(answers(asked, 3));
    for (const Answer &answer : asked.answers)
      ASSERT_EQ(lineOf(answer), "");
    const auto &structure = std::get<Structure>(asked.answers[0].value);
    EXPECT_EQ(structure.metadata.title, "Gr\u00F6\u00DFe");
    EXPECT_EQ(structure.metadata.created, 1709200800);
    EXPECT_THAT(structure.labels, ElementsAre("i", "ii"));
    ASSERT_THAT(structure.outline, SizeIs(1));
    EXPECT_EQ(structure.outline[0].title, "\u4E00");
    EXPECT_EQ(std::get<PageTarget>(structure.outline[0].target).left, 399);
    ASSERT_THAT(structure.attachments, SizeIs(1));
    EXPECT_EQ(structure.attachments[0].type, "text/plain");
    const auto &page = std::get<PageStructure>(asked.answers[1].value);
    ASSERT_THAT(page.links, SizeIs(1));
    EXPECT_EQ(page.links[0].area, area);
    ASSERT_THAT(page.fields, SizeIs(1));
    EXPECT_EQ(page.fields[0].area, area);
    EXPECT_EQ(page.fields[0].contents, "\u00E4");
    ASSERT_THAT(page.annotations, SizeIs(1));
    EXPECT_EQ(page.annotations[0].contents, "note");
    EXPECT_EQ(std::get<AttachedFile>(asked.answers[2].value).bytes, "hello");
  }
}

TEST_F(ProcessesTest, AnAttachedFileOfTheLargestSizeIsAnswered) {
  test::PdfParts parts;
  const std::string bytes(most::attachedFile, 'a');
  addAttachments(parts, {{"large", bytes}});
  Asked &asked = open(folder.pdf(test::numberedPages(1), {}, {}, parts));
  asked.ask(AttachmentRequest{0});
  ASSERT_TRUE(answers(asked, 1));
  ASSERT_EQ(lineOf(asked.answers[0]), "");
  EXPECT_TRUE(std::get<AttachedFile>(asked.answers[0].value).bytes == bytes);
}

TEST_F(ProcessesTest, AnswerWithThePlainWordsOfAPage) {
  Asked &asked = open(folder.pdf({{.texts = {{.x = 50, .y = 500, .text = "gr\u00FCne lamp"}}}}));
  asked.ask(PlainWordsRequest{0});
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_THAT(std::get<PagePlainWords>(asked.answers[0].value).words, ElementsAre(U"gr\u00FCne", U"lamp"));
}

TEST_F(ProcessesTest, ImagesOfOtherSizesFollowOneAnother) {
  const auto file = folder.pdf({test::pageWith("lamp"), test::pageWith("oil lamp")});
  const auto here = document::PdfFile::open(file, "");
  Asked &asked = open(file);
  size_t count = 0;
  for (const auto &[page, dpi] : {std::pair(0, 72.0), {1, 72.0}, {0, 36.0}, {1, 144.0}, {0, 144.0}, {1, 72.0}}) {
    asked.ask(imageOf(page, dpi, imageSize(here->pageSize(page), dpi)));
    ASSERT_TRUE(answers(asked, ++count));
    EXPECT_EQ(image(asked.answers.back()).pixels, here->render(page, dpi).pixels) << page << " " << dpi;
  }
}

TEST_F(ProcessesTest, PartsOfAPageAreDrawn) {
  const auto file = folder.pdf({test::pageWith("words")});
  const Image whole = document::PdfFile::open(file, "")->render(0, 72);
  Asked &asked = open(file);
  asked.ask(ImageRequest{0, 72, {400, 600}, {40, 20, 140, 70}});
  ASSERT_TRUE(answers(asked, 1));
  const Image &part = image(asked.answers[0]);
  ASSERT_EQ(std::pair(part.width, part.height), std::pair(100, 50));
  for (int y = 0; y < part.height; ++y)
    ASSERT_TRUE(std::equal(part.row(y), part.row(y) + part.width, whole.row(20 + y) + 40)) << y;
  EXPECT_NE(std::count(part.pixels.begin(), part.pixels.end(), 0xFFFFFFFF), 5000) << "there is text";
  for (const PixelBox &outside : {PixelBox{-1, 0, 10, 10}, {0, -1, 10, 10}, {0, 0, 401, 10}, {0, 0, 10, 601}}) {
    asked.ask(ImageRequest{0, 72, {400, 600}, outside});
    ASSERT_TRUE(answers(asked, asked.tickets.size() - 1));
    EXPECT_EQ(lineOf(asked.answers.back()), file.string() + ": page 1 has no such part");
  }
}

// What drawing has taken is kept for the next image, but not for long.
TEST_F(ProcessesTest, AProcessThatHasNothingToDoGivesItsMemoryBack) {
  if (isSanitized) GTEST_SKIP() << "the address sanitizer keeps what is freed";
  Asked &asked = open(folder.pdf(test::numberedPages(1)));
  ASSERT_EQ(children(), 1U);
  const pid_t process = childrenOf().front();
  const long before = privateMemory(process);
  ASSERT_GT(before, 0);
  asked.ask(imageOf(0, 360, {2000, 3000})); // 24 MB
  ASSERT_TRUE(answers(asked, 1));
  ASSERT_EQ(image(asked.answers[0]).width, 2000);
  const Time deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (privateMemory(process) > before + 12'000 && std::chrono::steady_clock::now() < deadline)
    poll(nullptr, 0, 20);
  EXPECT_LE(privateMemory(process), before + 12'000);
}

TEST_F(ProcessesTest, APageThatTakesMoreMemoryThanItsProcessMayIsAnErrorOfTheDocument) {
  if (isSanitized) GTEST_SKIP() << "the address sanitizer reserves more than any limit";
  Processes small{{documentProgram(), size_t{256} << 20}};
  const auto file = folder.pdf(test::numberedPages(1));
  Asked asked{std::make_shared<Service>(file, small.backend(file))};
  for (const Request &request :
       {Request(OpenRequest{file, ""}), Request(imageOf(0, 1440, {8000, 12'000})), Request(imageOf(0))}) {
    asked.ask(request, Urgency::awaited);
    ASSERT_TRUE(asked.service->await(asked.tickets.back(), Time::max()));
  }
  const auto &failure = std::get<Failure>(asked.answers[1].value);
  EXPECT_EQ(failure.code, tavrel::errDocument);
  EXPECT_EQ(failure.reason, DocumentError::tooMuchMemory);
  EXPECT_EQ(failure.line, file.string() + ": page 1: it takes more than 256 megabytes (--document-memory)");
  EXPECT_EQ(image(asked.answers[2]).width, 400);
}

TEST_F(ProcessesTest, AFileMayBeLargerThanTheMemoryOfItsProcess) {
  const auto file = folder.write("large.pdf", "");
  std::string bytes = test::pdfOf(test::numberedPages(1));
  const size_t table = bytes.rfind("\nxref") + 1, pointer = bytes.rfind("startxref\n") + sizeof "startxref";
  constexpr size_t gap = size_t{600} << 20;
  bytes.replace(pointer, bytes.find('\n', pointer) - pointer, std::to_string(table + gap));
  std::ofstream stream(file, std::ios::binary);
  stream.write(bytes.data(), static_cast<std::streamsize>(table));
  stream.seekp(static_cast<std::streamoff>(table + gap)); // takes no room on the disk
  stream << bytes.substr(table);
  stream.close();
  Processes small{{documentProgram(), size_t{256} << 20}};
  Asked asked{std::make_shared<Service>(file, small.backend(file))};
  asked.ask(OpenRequest{file, ""}, Urgency::awaited);
  asked.ask(imageOf(0), Urgency::awaited);
  for (const Ticket &ticket : asked.tickets)
    ASSERT_TRUE(asked.service->await(ticket, Time::max()));
  EXPECT_EQ(lineOf(asked.answers[0]), "");
  EXPECT_EQ(image(asked.answers[1]).width, 400);
}

TEST_F(ProcessesTest, NameAMissingFile) {
  Asked &asked = request("/nowhere/missing.pdf");
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(lineOf(asked.answers[0]), "/nowhere/missing.pdf: No such file or directory");
}

TEST_F(ProcessesTest, NameAFileOnceWhereverADescriptorIsMissing) {
  if (isSanitized) GTEST_SKIP() << "the sanitizer's check of types needs a descriptor";
  const auto file = folder.pdf(test::numberedPages(1));
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  int failures = 0;
  for (rlim_t more = 0; more < 10; ++more) {
    const int next = Descriptor(dup(STDERR_FILENO)).number();
    const rlimit low{static_cast<rlim_t>(next) + more, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &low), 0);
    Asked &asked = request(file);
    const bool isAnswered = answers(asked, 1);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    ASSERT_TRUE(isAnswered);
    const std::string line = lineOf(asked.answers[0]);
    if (line.empty()) continue;
    ++failures;
    EXPECT_EQ(line.rfind(file.string() + ": "), 0U) << line;
  }
  EXPECT_GT(failures, 3);
}

TEST_F(ProcessesTest, NameWhatIsNoPdf) {
  const auto file = folder.path() / "text.pdf";
  std::ofstream(file) << "words";
  Asked &asked = request(file);
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(lineOf(asked.answers[0]), file.string() + ": this is not a PDF");
}

TEST_F(ProcessesTest, AskForAPassword) {
  const auto file = test::locked(folder.pdf(test::numberedPages(1)));
  for (const char *password : {"", "wrong"}) {
    Asked &asked = request(file, password);
    ASSERT_TRUE(answers(asked, 1));
    EXPECT_EQ(std::get<Failure>(asked.answers[0].value).reason, DocumentError::wrongPassword) << password;
  }
  Asked &asked = open(file, "user");
  asked.ask(imageOf(0));
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(image(asked.answers[0]).width, 400);
}

TEST_F(ProcessesTest, AFileWhoseNameIsNoUtf8IsReadAndAsksForItsPassword) {
  const auto locked = test::locked(folder.pdf(test::numberedPages(1)));
  const auto file = folder.path() / "caf\xE9.pdf";
  std::filesystem::rename(locked, file);
  Asked &asked = request(file, "");
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(std::get<Failure>(asked.answers[0].value).reason, DocumentError::wrongPassword);
  EXPECT_THAT(lineOf(asked.answers[0]), HasSubstr("caf?.pdf: the file is encrypted"));
}

TEST_F(ProcessesTest, WhileNothingIsDrawnTheMemoryForPixelsIsNotKept) {
  Asked &asked = open(folder.pdf({test::pageWith("lamp"), test::pageWith("oil")}));
  asked.ask(imageOf(0));
  ASSERT_TRUE(answers(asked, 1));
  const auto isMapped = [] {
    std::ifstream maps("/proc/self/maps");
    const std::string mapped{std::istreambuf_iterator<char>(maps), {}};
    return mapped.find("memfd:page") != std::string::npos;
  };
  EXPECT_TRUE(isMapped());
  const Time deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (isMapped() && std::chrono::steady_clock::now() < deadline) {
    pollfd ready{processes.descriptor(), POLLIN, 0};
    poll(&ready, 1, 60'000);
    asked.service->collect();
  }
  EXPECT_FALSE(isMapped());
  asked.ask(imageOf(1));
  ASSERT_TRUE(answers(asked, 2));
  EXPECT_EQ(image(asked.answers[1]).width, 400) << "in other memory";
}

// Its owner does not wait for the process to read.
TEST_F(ProcessesTest, ATextThatDoesNotFitIntoTheSocketIsNotSearchedFor) {
  const auto file = folder.pdf({test::pageWith("lamp")});
  Asked &asked = open(file);
  asked.ask(MatchesRequest{0, std::string(1 << 20, 'a'), {}});
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(lineOf(asked.answers[0]), file.string() + ": the text to search for is too long");
  asked.ask(MatchesRequest{0, "lamp", {}});
  ASSERT_TRUE(answers(asked, 2));
  EXPECT_EQ(std::get<PageMatches>(asked.answers[1].value).found.size(), 1U);
}

// It may keep all of it.
TEST_F(ProcessesTest, AProcessIsGivenNoMoreMemoryForImagesThanItMayTake) {
  const auto file = folder.pdf({test::pageWith("lamp")});
  const auto here = document::PdfFile::open(file, "");
  Processes small{{documentProgram(), size_t{200} << 20}};
  Asked asked{std::make_shared<Service>(file, small.backend(file))};
  asked.ask(OpenRequest{file, ""}, Urgency::awaited);
  ASSERT_TRUE(asked.service->await(asked.tickets.back(), Time::max()));
  std::set<pid_t> seen;
  for (double dpi = 400; dpi < 420; dpi += 2) { // 30 MB each
    asked.ask(imageOf(0, dpi, imageSize(here->pageSize(0), dpi)), Urgency::awaited);
    ASSERT_TRUE(asked.service->await(asked.tickets.back(), Time::max()));
    EXPECT_EQ(image(asked.answers.back()).width, imageSize(here->pageSize(0), dpi).width) << dpi;
    for (const pid_t child : childrenOf())
      seen.insert(child);
  }
  EXPECT_EQ(seen.size(), 2U);
}

TEST_F(ProcessesTest, AnImageOfAnotherSizeThanThePagesIsRefused) {
  Asked &asked = open(folder.pdf(test::numberedPages(1)));
  asked.ask(imageOf(0, 72, {401, 600}));
  asked.ask(imageOf(0, 72, {30'000, 600}));
  ASSERT_TRUE(answers(asked, 2));
  EXPECT_THAT(lineOf(asked.answers[0]), HasSubstr("page 1: its image has a wrong size"));
  EXPECT_THAT(lineOf(asked.answers[1]), HasSubstr("no image of a usable size"));
}

TEST_F(ProcessesTest, AChangedFileIsNoticedAndReadAsItWas) {
  const auto file = folder.pdf(test::numberedPages(2));
  Asked &asked = open(file);
  std::filesystem::rename(folder.write("other.pdf", test::pdfOf({test::pageWith("other")})), file);
  asked.ask(imageOf(1));
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(lineOf(asked.answers[0]), "");
  EXPECT_TRUE(asked.answers[0].fileChanged);
}

TEST_F(ProcessesTest, WordsDoNotWaitForAnImage) {
  Asked &asked = open(folder.pdf({test::endlessPage(), test::pageWith("words")}));
  asked.ask(imageOf(0));
  asked.ask(WordsRequest{1});
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(std::get<PageWords>(asked.answers[0].value).text.text(), U"words");
}

TEST_F(ProcessesTest, APageThatNobodyWantsAnyMoreIsEnded) {
  Asked &asked = open(folder.pdf({test::endlessPage(), test::pageWith("quick")}));
  asked.ask(imageOf(0));
  asked.ask(imageOf(1));
  asked.tickets[1].reset();
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(std::get<PageImage>(asked.answers[0].value).page, 1);
}

TEST_F(ProcessesTest, ACallerDoesNotWaitForWhatIsLessUrgent) {
  Asked &asked = open(folder.pdf({test::endlessPage(), test::pageWith("quick")}));
  asked.ask(imageOf(0));
  asked.ask(imageOf(1), Urgency::awaited);
  EXPECT_TRUE(asked.service->await(asked.tickets[2], std::chrono::steady_clock::now() + std::chrono::seconds(60)));
  ASSERT_THAT(asked.answers, SizeIs(1));
  EXPECT_EQ(std::get<PageImage>(asked.answers[0].value).page, 1);
  EXPECT_TRUE(asked.tickets[1].underWay()) << "begun again";
}

TEST_F(ProcessesTest, NobodyWaitsBeyondTheDeadline) {
  Asked &asked = open(folder.pdf({test::endlessPage()}));
  asked.ask(imageOf(0), Urgency::awaited);
  EXPECT_FALSE(
      asked.service->await(asked.tickets[1], std::chrono::steady_clock::now() + std::chrono::milliseconds(50)));
}

TEST_F(ProcessesTest, OnlyTheDocumentsUsedLastHaveProcesses) {
  const auto file = folder.pdf(test::numberedPages(2));
  for (int i = 0; i < 5; ++i) {
    Asked &asked = open(file);
    asked.ask(imageOf(0));
    ASSERT_TRUE(answers(asked, 1));
  }
  EXPECT_THAT(children(), AllOf(testing::Ge(3U), testing::Le(4U))) << "one each, and one in advance";
  all[0]->ask(imageOf(1));
  ASSERT_TRUE(answers(*all[0], 2)) << "started again";
  EXPECT_EQ(image(all[0]->answers[1]).width, 400);
  EXPECT_THAT(children(), testing::Le(4U));
  all.clear();
  EXPECT_THAT(children(), testing::Le(1U));
}

TEST_F(ProcessesTest, DocumentsThatAreOpenedAtOnceDoNotKeepTheirs) {
  const auto file = folder.pdf(test::numberedPages(1));
  for (int i = 0; i < 6; ++i)
    request(file);
  for (const auto &one : all)
    ASSERT_TRUE(answers(*one, 1));
  const Time deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (children() > 3 && std::chrono::steady_clock::now() < deadline) {
    pollfd ready{processes.descriptor(), POLLIN, 0};
    ASSERT_EQ(poll(&ready, 1, 60'000), 1) << "nothing more happens";
    for (const auto &one : all)
      one->service->collect();
  }
  EXPECT_THAT(children(), testing::Le(3U)) << "one each of three";
}

TEST_F(ProcessesTest, AProcessForImagesAnswersForWordsWhileThereIsNoOther) {
  Asked &asked = open(folder.pdf({test::endlessPage(), test::pageWith("words")}));
  asked.ask(WordsRequest{1});
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(children(), 1U);
  asked.ask(imageOf(0));
  asked.ask(WordsRequest{1});
  ASSERT_TRUE(answers(asked, 2)) << "while an image is drawn";
  EXPECT_EQ(children(), 2U);
  asked.tickets[2].reset();
  asked.ask(imageOf(1));
  ASSERT_TRUE(answers(asked, 3));
  asked.ask(WordsRequest{1});
  asked.ask(imageOf(1));
  ASSERT_TRUE(answers(asked, 5));
  EXPECT_THAT(children(), testing::Le(3U)) << "and one in advance";
}

TEST_F(ProcessesTest, WordsThatTakeLongDoNotKeepAnImageWaiting) {
  Asked &asked = open(folder.pdf({test::slowlyReadPage(), test::pageWith("words")}));
  asked.ask(WordsRequest{0}, Urgency::shown);
  asked.ask(imageOf(1), Urgency::shown);
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(image(asked.answers[0]).width, 400);
  EXPECT_TRUE(asked.tickets[1].underWay()) << "begun again, in a process for words";
}

TEST_F(ProcessesTest, StructureHasAProcessOfItsOwn) {
  Asked &asked = open(folder.pdf(test::numberedPages(1)));
  asked.ask(StructureRequest{1});
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(children(), 2U);
}

TEST_F(ProcessesTest, AProcessThatIsKilledIsStartedAgain) {
  Asked &asked = open(folder.pdf({test::endlessPage(), test::pageWith("quick")}));
  asked.ask(imageOf(0));
  for (int deaths = 1; deaths <= 2; ++deaths)
    killImages(asked);
  asked.service->collect();
  EXPECT_THAT(asked.answers, IsEmpty());
  killImages(asked);
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_THAT(lineOf(asked.answers.back()), HasSubstr("page 1: its process failed: it was ended: Killed"));
  asked.ask(imageOf(0));
  ASSERT_TRUE(answers(asked, 2));
  EXPECT_THAT(lineOf(asked.answers.back()),
              HasSubstr("page 1 is not read until the document is loaded again: its process failed: it was"));
  asked.ask(imageOf(1));
  ASSERT_TRUE(answers(asked, 3));
  EXPECT_EQ(lineOf(asked.answers.back()), "") << "another page";
}

TEST_F(ProcessesTest, DeathsBeforeAnAnswerAreForgotten) {
  Asked &asked = open(folder.pdf({test::slowPage()}));
  for (size_t times = 1; times <= 4; ++times) {
    asked.ask(imageOf(0));
    killImages(asked);
    ASSERT_TRUE(answers(asked, times));
    EXPECT_EQ(lineOf(asked.answers.back()), "");
  }
}

TEST_F(ProcessesTest, WhatIsMoreUrgentDoesNotWaitForAPageThatTakesLong) {
  Asked &asked = open(folder.pdf({test::endlessPage(), test::pageWith("quick")}));
  asked.ask(imageOf(0), Urgency::shown);
  asked.ask(imageOf(1), Urgency::shown);
  asked.tickets[1].setUrgency(Urgency::ahead);
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(std::get<PageImage>(asked.answers[0].value).page, 1);
  asked.service->collect();
  EXPECT_TRUE(asked.tickets[1].underWay()) << "begun again";
}

TEST_F(ProcessesTest, WhatIsOnlyKeptIsAnsweredIfItDoesNotTakeLong) {
  Asked &asked = open(folder.pdf({test::pageWith("quick"), test::endlessPage(), test::pageWith("other")}));
  asked.ask(imageOf(0));
  asked.tickets[1].setUrgency(Urgency::kept);
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(lineOf(asked.answers.back()), "");
  asked.ask(imageOf(1));
  asked.tickets[2].setUrgency(Urgency::kept);
  while (asked.tickets[2].underWay()) {
    pollfd ready{processes.descriptor(), POLLIN, 0};
    ASSERT_EQ(poll(&ready, 1, 60'000), 1);
    asked.service->collect();
  }
  asked.ask(imageOf(2));
  ASSERT_TRUE(answers(asked, 2));
  EXPECT_EQ(std::get<PageImage>(asked.answers.back().value).page, 2);
  asked.service->collect();
  EXPECT_FALSE(asked.tickets[2].underWay()) << "nobody has asked for it again";
}

TEST_F(ProcessesTest, ACallerWhoHasWaitedInVainKeepsNobodyWaiting) {
  Asked &asked = open(folder.pdf({test::endlessPage(), test::pageWith("quick")}));
  asked.ask(imageOf(0), Urgency::ahead);
  EXPECT_FALSE(
      asked.service->await(asked.tickets[1], std::chrono::steady_clock::now() + std::chrono::milliseconds(50)));
  asked.ask(imageOf(1), Urgency::shown);
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(std::get<PageImage>(asked.answers[0].value).page, 1);
}

TEST_F(ProcessesTest, WhatIsAnsweredWhileACallerWaitsIsNotForgotten) {
  Asked &asked = open(folder.pdf({test::pageWith("quick"), test::slowPage()}));
  asked.ask(WordsRequest{0});
  asked.ask(imageOf(1));
  ASSERT_TRUE(asked.service->await(asked.tickets[2], Time::max()));
  ASSERT_TRUE(answers(asked, 2));
  EXPECT_TRUE(std::holds_alternative<PageWords>(asked.answers[1].value));
}

TEST_F(ProcessesTest, SeveralProcessesShareTheirOrders) {
  Processes three({.program = documentProgram(), .imageProcesses = 3});
  const auto file = folder.pdf({test::endlessPage(), test::endlessPage(), test::pageWith("quick")});
  Asked asked{std::make_shared<Service>(file, three.backend(file))};
  asked.ask(OpenRequest{file, ""});
  ASSERT_TRUE(asked.service->await(asked.tickets[0], Time::max()));
  for (int32_t page = 0; page < 3; ++page)
    asked.ask(imageOf(page));
  ASSERT_TRUE(asked.service->await(asked.tickets[3], Time::max()));
  EXPECT_EQ(std::get<PageImage>(asked.answers.back().value).page, 2);
  EXPECT_TRUE(asked.tickets[1].underWay() && asked.tickets[2].underWay());
}

TEST_F(ProcessesTest, AProcessThatDiesWithNothingToDoIsNotMissed) {
  Asked &asked = open(folder.pdf(test::numberedPages(1)));
  processes.waker().clear();
  killAll();
  pollfd ready{processes.descriptor(), POLLIN, 0};
  ASSERT_EQ(poll(&ready, 1, 60'000), 1);
  asked.service->collect();
  EXPECT_EQ(poll(&ready, 1, 0), 0) << "noticed";
  asked.ask(WordsRequest{0});
  ASSERT_TRUE(answers(asked, 1));
  EXPECT_EQ(lineOf(asked.answers.back()), "");
}

TEST_F(ProcessesTest, AProgramThatIsNotThereIsNamed) {
  Processes missing({"/nowhere/tavrel-document"});
  const auto file = folder.pdf(test::numberedPages(1));
  Asked asked{std::make_shared<Service>(file, missing.backend(file))};
  asked.ask(OpenRequest{file, ""});
  asked.service->collect();
  ASSERT_THAT(asked.answers, SizeIs(1));
  EXPECT_THAT(lineOf(asked.answers[0]), HasSubstr("/nowhere/tavrel-document cannot be started: No such file"));
}

} // namespace
} // namespace host
