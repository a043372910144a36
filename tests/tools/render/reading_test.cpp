// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A command's document, which other processes read: what becomes of the command when they or the file fail.
#include "tools/reading.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <iterator>

#include "host/document/process.h"
#include "support/pdf.h"
#include "tools/ahead.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<pid_t> children() {
  std::ifstream list("/proc/thread-self/children");
  return {std::istream_iterator<pid_t>(list), {}};
}

void killAll() {
  for (const pid_t child : children())
    kill(child, SIGKILL);
}

// A document of so many pages, each of which is several times larger than what a system reads at once.
constexpr int32_t pageCount = 8;

std::vector<test::PdfPage> pagesWith(const std::string &word) {
  test::PdfPage page{.texts = {{.x = 50, .y = 300, .text = word}}};
  page.drawing = std::string(20'000, '\n');
  return std::vector<test::PdfPage>(pageCount, page);
}

struct Reading : testing::Test {
  tools::OpenedDocument open(size_t wordProcesses) {
    host::ProcessOptions options{host::documentProgram()};
    options.wordProcesses = wordProcesses;
    options.imageProcesses = 0;
    return tools::openDocument(file, "", options);
  }
  // The words of the pages, and an empty list for a page that cannot be read.
  static std::vector<std::vector<std::u32string>> wordsOf(host::Service &service,
                                                          const std::function<void()> &afterTheFirst = {}) {
    tools::PagesAhead<host::PagePlainWords> ahead(service, pageCount,
                                                  [](int32_t page) { return host::PlainWordsRequest{page}; }, {2});
    std::vector<std::vector<std::u32string>> all;
    for (int32_t page = 0; page < pageCount; ++page) {
      try {
        all.push_back(ahead.take(page).words);
      } catch (const host::DocumentError &) {
        all.emplace_back();
      }
      if (page == 0 && afterTheFirst) afterTheFirst();
    }
    return all;
  }

  test::ScratchFolder folder;
  std::filesystem::path file = folder.pdf(pagesWith("word"));
};

TEST_F(Reading, PagesAreReadByAllProcesses) {
  const tools::OpenedDocument document = open(3);
  EXPECT_THAT(wordsOf(*document.service), testing::Each(ElementsAre(U"word")));
  EXPECT_THAT(children(), SizeIs(3));
}

TEST_F(Reading, NoProcessIsLeft) {
  open(2);
  EXPECT_THAT(children(), IsEmpty());
}

TEST_F(Reading, AProcessThatIsKilledIsReplaced) {
  const tools::OpenedDocument document = open(2);
  EXPECT_THAT(wordsOf(*document.service, killAll), testing::Each(ElementsAre(U"word")));
}

TEST_F(Reading, AFileThatIsTruncatedIsAnErrorOfItsPages) {
  const tools::OpenedDocument document = open(2);
  const auto words = wordsOf(*document.service, [this] { std::filesystem::resize_file(file, 4096); });
  EXPECT_THAT(words.front(), ElementsAre(U"word"));
  EXPECT_THAT(words.back(), IsEmpty());
}

// Also by processes that are started afterwards.
TEST_F(Reading, AFileThatIsReplacedIsReadAsItWas) {
  const tools::OpenedDocument document = open(2);
  const auto replace = [this] {
    std::filesystem::rename(folder.write("other.pdf", test::pdfOf(pagesWith("other"))), file);
    killAll();
  };
  EXPECT_THAT(wordsOf(*document.service, replace), testing::Each(ElementsAre(U"word")));
}

TEST_F(Reading, AProgramThatIsMissingIsNamed) {
  EXPECT_THAT([&] { tools::openDocument(file, "", {"/nowhere/tavrel-document"}); },
              testing::ThrowsMessage<host::HostError>(
                  file.string() + ": /nowhere/tavrel-document cannot be started: No such file or directory"));
}

} // namespace
