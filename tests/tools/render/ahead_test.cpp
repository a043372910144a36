// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Results that other threads make for pages: in page order, within the limits, and with the first error in page order.
#include "tools/ahead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "support/pdf.h"

namespace {

using Numbers = tools::PagesAhead<int32_t>;

constexpr int32_t pageCount = 40;

struct Ahead : testing::Test {
  std::unique_ptr<document::PdfFile> open() const {
    return document::PdfFile::open(folder.pdf(std::vector<test::PdfPage>(pageCount)), "");
  }
  test::ScratchFolder folder;
  std::unique_ptr<document::PdfFile> file = open();
  std::atomic<int32_t> made = 0;
};

TEST_F(Ahead, PagesComeInOrder) {
  tools::Workers workers(*file, 3);
  Numbers ahead(*file, workers, [](document::PdfFile &, int32_t page) { return page; }, {6});
  for (int32_t page = 0; page < pageCount; ++page)
    EXPECT_EQ(ahead.take(page), page);
}

TEST_F(Ahead, AThreadHasASeparateFile) {
  tools::Workers workers(*file, 1);
  const auto makesHere = [this, here = std::this_thread::get_id()](document::PdfFile &own, int32_t) {
    return int32_t{&own == file.get() || std::this_thread::get_id() == here};
  };
  Numbers ahead(*file, workers, makesHere, {2});
  EXPECT_EQ(ahead.take(0), 0);
}

TEST_F(Ahead, NoPageIsMadeBeyondTheReach) {
  tools::Workers workers(*file, 2);
  const auto count = [this](document::PdfFile &, int32_t page) {
    ++made;
    return page;
  };
  Numbers ahead(*file, workers, count, {4});
  for (int32_t page = 0; page < pageCount; ++page) {
    ahead.take(page);
    EXPECT_LE(made, page + 4);
  }
  EXPECT_EQ(made, pageCount);
}

TEST_F(Ahead, PagesThatWeighTooMuchAreMadeOneAtATime) {
  tools::Workers workers(*file, 2);
  const auto count = [this](document::PdfFile &, int32_t) { return ++made; };
  Numbers ahead(*file, workers, count, {8, 10, [](int32_t page) { return page < 20 ? 11 : 5; }});
  for (int32_t page = 0; page < 20; ++page)
    EXPECT_EQ(ahead.take(page), page + 1);
  for (int32_t page = 20; page < pageCount; ++page) {
    ahead.take(page);
    EXPECT_LE(made, page + 2) << "two of these are not too much";
  }
}

TEST_F(Ahead, ThePageThatFailsIsTheFirstInOrderNotInTime) {
  std::promise<void> failed;
  tools::Workers workers(*file, 2);
  const auto fail = [&](document::PdfFile &, int32_t page) {
    if (page == 3) failed.get_future().wait();
    if (page == 4) failed.set_value();
    if (page >= 3) throw std::runtime_error("page " + std::to_string(page));
    return page;
  };
  Numbers ahead(*file, workers, fail, {5});
  for (int32_t page = 0; page < 3; ++page)
    EXPECT_EQ(ahead.take(page), page);
  try {
    ahead.take(3);
    FAIL() << "page 3 fails";
  } catch (const std::runtime_error &error) {
    EXPECT_STREQ(error.what(), "page 3");
  }
}

TEST_F(Ahead, PagesOutOfOrderAreMadeToo) {
  tools::Workers workers(*file, 2);
  Numbers ahead(*file, workers, [](document::PdfFile &, int32_t page) { return page; }, {4});
  for (const int32_t page : {7, 9, 2, 10, 10, 39, 0})
    EXPECT_EQ(ahead.take(page), page);
}

// Without threads, or with threads that cannot open the file, the caller makes the pages from its file.
struct Alone : Ahead {
  void takeAll(tools::Workers &workers) {
    const auto makesHere = [this, here = std::this_thread::get_id()](document::PdfFile &own, int32_t page) {
      EXPECT_EQ(&own, file.get());
      EXPECT_EQ(std::this_thread::get_id(), here);
      return page;
    };
    Numbers ahead(*file, workers, makesHere, {4});
    for (int32_t page = 0; page < pageCount; ++page)
      EXPECT_EQ(ahead.take(page), page);
  }
};

TEST_F(Alone, WithoutThreads) {
  tools::Workers workers(*file, 0);
  takeAll(workers);
}

TEST_F(Alone, IfTheFileIsRemoved) {
  std::filesystem::remove(folder.path() / "test.pdf");
  tools::Workers workers(*file, 2);
  takeAll(workers);
}

TEST(Workers, OnePageNeedsNoThread) { EXPECT_EQ(tools::Workers::worthHaving(1), 0U); }

} // namespace
