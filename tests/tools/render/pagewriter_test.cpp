// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Pages as files with a line each: the same files and lines in the same order, with and without other threads.
#include "tools/pagewriter.h"

#include <gmock/gmock.h>

#include "support/pdf.h"
#include "tools/failure.h"

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

constexpr int32_t pageCount = 12;

class Pages : public testing::TestWithParam<size_t> {
protected:
  fs::path pathOf(const std::string &name) const { return folder.path() / "out" / name; }

  // Writes all pages; returns the lines and, if a page fails, the reason.
  std::string write(const std::function<void(host::Drawing &)> &change = {}) {
    tools::Workers workers(GetParam());
    tools::PageWriter writer(folder.path() / "out", 100, pageCount);
    if (workers.threads() > 0) writer.setWorkers(&workers);
    testing::internal::CaptureStdout();
    std::string failure;
    try {
      for (int32_t page = 0; page < pageCount; ++page) {
        host::Drawing drawing{{100, 100, std::vector<uint32_t>(10'000, 0xFF000000U + static_cast<uint32_t>(page))},
                              page};
        drawing.marks = page == 3 ? 2 : 0;
        if (change) change(drawing);
        writer.write(std::move(drawing), page == 3 ? "two" : "");
      }
      writer.finish();
    } catch (const tools::CommandFailure &error) {
      EXPECT_EQ(error.status, tools::exitOutput);
      failure = error.what();
    }
    summary = writer.summary();
    return testing::internal::GetCapturedStdout() + failure;
  }

  // The lines of the first pages.
  std::string lines(int32_t count) const {
    std::string text;
    for (int32_t page = 1; page <= count; ++page) {
      const std::string name = (page < 10 ? "page-000" : "page-00") + std::to_string(page) + ".png";
      text += "page " + std::to_string(page) + " of 12: " + (page == 4 ? "2" : "0") + " hits -> " +
              pathOf(name).string() + (page == 4 ? " (two)\n" : "\n");
    }
    return text;
  }
  // Directories do not count.
  std::ptrdiff_t files() const {
    return std::count_if(fs::directory_iterator(folder.path() / "out"), fs::directory_iterator(),
                         [](const auto &entry) { return entry.is_regular_file(); });
  }

  test::ScratchFolder folder;
  std::string summary;
};

TEST_P(Pages, AreWrittenInOrderWithALineEach) {
  EXPECT_EQ(write(), lines(pageCount));
  EXPECT_EQ(files(), pageCount);
  EXPECT_EQ(summary, "1 page marked, 2 hits");
}

TEST_P(Pages, CountTheHitsOutsideOfThePageSeparately) {
  const std::string printed = write([](host::Drawing &drawing) { drawing.offPage = drawing.page == 3 ? 1 : 0; });
  EXPECT_THAT(printed, HasSubstr("page 4 of 12: 2 hits, 1 outside of the page not marked -> "));
  EXPECT_EQ(summary, "1 page marked, 2 hits, 1 outside of the page not marked");
}

TEST_P(Pages, WithoutAMarkAreReportedAndNotWritten) {
  tools::PageWriter writer(folder.path() / "out", 100, pageCount);
  host::Drawing drawing;
  drawing.page = 6;
  drawing.offPage = 2;
  testing::internal::CaptureStdout();
  writer.reportOffPage(drawing);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "page 7 of 12: 2 hits outside of the page, not marked\n");
  EXPECT_EQ(writer.summary(), "0 pages marked, 0 hits, 2 outside of the page not marked");
  EXPECT_EQ(writer.hits(), 0U);
  EXPECT_FALSE(fs::exists(folder.path() / "out"));
}

TEST_P(Pages, AreReportedInOrderWithThoseThatAreNotWritten) {
  tools::Workers workers(GetParam());
  tools::PageWriter writer(folder.path() / "out", 100, pageCount);
  if (workers.threads() > 0) writer.setWorkers(&workers);
  testing::internal::CaptureStdout();
  for (int32_t page = 0; page < pageCount; ++page) {
    host::Drawing drawing{{1000, 1000, std::vector<uint32_t>(1'000'000)}, page};
    if (page == pageCount - 1)
      writer.reportOffPage(drawing);
    else
      writer.write(std::move(drawing), "");
  }
  writer.finish();
  EXPECT_THAT(testing::internal::GetCapturedStdout(),
              testing::EndsWith("\npage 12 of 12: 0 hits outside of the page, not marked\n"));
}

TEST_P(Pages, EndWithTheOneThatCannotBeRenamed) {
  fs::create_directories(pathOf("page-0006.png"));
  EXPECT_EQ(write(), lines(5) + pathOf("page-0006.png").string() + ": Is a directory");
  EXPECT_EQ(files(), 5);
}

TEST_P(Pages, EndWithTheOneThatNoPngCanHold) {
  testing::internal::CaptureStderr(); // the library prints a message, too
  EXPECT_EQ(write([](host::Drawing &drawing) {
              if (drawing.page == 7) drawing.image = {};
            }),
            lines(7) + pathOf("page-0008.png").string() + ": cannot be written as PNG");
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(files(), 7);
}

INSTANTIATE_TEST_SUITE_P(Threads, Pages, testing::Values(0, 1, 3));

} // namespace
