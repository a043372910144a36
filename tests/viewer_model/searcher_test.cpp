// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The searching thread: the order of pages, and what ends a search.
#include "viewer/model/searcher.h"

#include <gmock/gmock.h>

#include <future>

#include "TestDocuments.h"
#include "Waker.h"

namespace viewer {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

struct SearcherTest : testing::Test {
  SearcherTest() {
    searcher.emplace([this] {
      const auto action = onThread; // a copy: the action may replace itself
      if (action) action();
      waker.wake();
    });
  }
  Search search(const std::string &text, int32_t page = 0) const { return {1, file, {}, text, {}, page, pages}; }
  // The next result.
  SearchResult result() {
    std::optional<SearchResult> got;
    EXPECT_TRUE(waker.until([&] { return (got = searcher->collect()).has_value(); }));
    return got.value_or(SearchResult());
  }
  SearchResult find(const Search &wanted) {
    searcher->start(wanted);
    return result();
  }
  SearchResult findBackwards(Search wanted) {
    wanted.backwards = true;
    return find(wanted);
  }

  test::ScratchFolder folder;
  // "lamp" is on pages 1 and 3, twice on the latter.
  std::filesystem::path file = folder.pdf({test::pageWith("one door"), test::pageWith("a lamp"), test::pageWith("door"),
                                           test::pageWith("lamp and lamp"), test::pageWith("end")});
  int32_t pages = 5;
  test::Waker waker;
  std::function<void()> onThread; ///< called before the waker; the thread does nothing else meanwhile
  std::optional<Searcher> searcher;
};

TEST_F(SearcherTest, FindsAllMatchesOfTheFirstPageThatHasAny) {
  const SearchResult got = find(search("lamp", 2));
  EXPECT_EQ(got.page, 3);
  EXPECT_THAT(got.found, SizeIs(2));
  EXPECT_FALSE(got.wrapped);
  EXPECT_THAT(got.error, IsEmpty());
}

TEST_F(SearcherTest, SearchesTheFirstPageFirst) { EXPECT_EQ(find(search("lamp", 1)).page, 1); }

TEST_F(SearcherTest, SearchesBackwards) {
  const SearchResult got = findBackwards(search("lamp", 2));
  EXPECT_EQ(got.page, 1);
  EXPECT_FALSE(got.wrapped);
}

TEST_F(SearcherTest, ContinuesFromTheStart) {
  const SearchResult got = find(search("one", 3));
  EXPECT_EQ(got.page, 0);
  EXPECT_TRUE(got.wrapped);
}

TEST_F(SearcherTest, ContinuesFromTheEnd) {
  const SearchResult got = findBackwards(search("end", 1));
  EXPECT_EQ(got.page, 4);
  EXPECT_TRUE(got.wrapped);
}

TEST_F(SearcherTest, ATextThatIsNotFoundIsAResultToo) {
  const SearchResult got = find(search("cellar", 2));
  EXPECT_THAT(got.found, IsEmpty());
  EXPECT_THAT(got.error, IsEmpty());
}

TEST_F(SearcherTest, SpacesAloneAreNotFound) { EXPECT_THAT(find(search("  ")).found, IsEmpty()); }

TEST_F(SearcherTest, TheOptionsAreApplied) {
  Search exact = search("Lamp");
  exact.options.matchCase = true;
  EXPECT_THAT(find(exact).found, IsEmpty());
  EXPECT_THAT(find(search("Lamp")).found, SizeIs(1));
}

TEST_F(SearcherTest, ATextThatIsNoUtf8IsAnError) { EXPECT_THAT(find(search("\xC3(")).error, HasSubstr("UTF-8")); }

TEST_F(SearcherTest, AReplacedSearchGivesNoResult) {
  onThread = [this] { // after the first page
    onThread = {};
    searcher->start(search("lamp"));
  };
  EXPECT_EQ(find(search("cellar")).search.text, "lamp");
  EXPECT_FALSE(searcher->collect());
}

TEST_F(SearcherTest, AStoppedSearchGivesNoResult) {
  bool stopped = false;
  onThread = [&] {
    onThread = {};
    searcher->stop();
    stopped = true;
  };
  searcher->start(search("cellar"));
  ASSERT_TRUE(waker.until([&] { return waker.wakes() > 0; }));
  EXPECT_TRUE(stopped);
  EXPECT_EQ(find(search("lamp")).search.text, "lamp");
}

TEST_F(SearcherTest, AnUncollectedResultIsDroppedWhenTheSearchIsStopped) {
  onThread = [this] { searcher->stop(); };
  searcher->start(search("door"));
  ASSERT_TRUE(waker.until([&] { return waker.wakes() > 0; }));
  EXPECT_FALSE(searcher->collect());
}

TEST_F(SearcherTest, ReportsTheNumberOfSearchedPages) {
  std::vector<std::optional<int32_t>> reported;
  onThread = [&] { reported.push_back(searcher->progress()); };
  find(search("lamp", 2)); // page 2, then page 3
  ASSERT_THAT(reported, SizeIs(2));
  EXPECT_EQ(reported[0], 1);
  EXPECT_EQ(reported[1], std::nullopt);
}

TEST_F(SearcherTest, FinishingDoesNotWaitForThePageBeingSearched) {
  std::promise<void> pageBegins, pageEnds;
  onThread = [&] {
    onThread = {};
    pageBegins.set_value();
    pageEnds.get_future().wait();
  };
  searcher->start(search("cellar"));
  pageBegins.get_future().wait();
  EXPECT_FALSE(searcher->finish(std::chrono::milliseconds(0)));
  pageEnds.set_value();
  EXPECT_TRUE(searcher->finish(std::chrono::minutes(1)));
}

TEST_F(SearcherTest, ADamagedPageIsSkipped) {
  file = folder.write("damaged.pdf", test::withDamagedPages({test::pageWith("lamp")}, 2));
  pages = 3;
  const SearchResult got = find(search("lamp", 1));
  EXPECT_EQ(got.page, 0);
  EXPECT_THAT(got.found, SizeIs(1));
}

TEST_F(SearcherTest, ARemovedFileIsNamed) {
  std::filesystem::remove(file);
  const SearchResult got = find(search("lamp"));
  EXPECT_EQ(got.error, file.string() + ": No such file or directory");
  EXPECT_THAT(got.found, IsEmpty());
}

TEST_F(SearcherTest, AFileRemovedAfterItsFirstSearchIsSearchedFurther) {
  find(search("lamp"));
  std::filesystem::remove(file);
  EXPECT_EQ(find(search("lamp", 2)).page, 3);
}

TEST_F(SearcherTest, AnotherDocumentIsSearchedWithItsPassword) {
  find(search("lamp"));
  const auto other = test::locked(folder.write("secret.pdf", test::pdfOf({test::pageWith("secret")})));
  EXPECT_THAT(find({2, other, "user", "secret", {}, 0, 1}).found, SizeIs(1));
}

// A failed search opens no file: the file that is open stays open unless it is closed.
TEST_F(SearcherTest, AnOpenFileIsClosed) {
  find(search("lamp"));
  EXPECT_TRUE(test::hasOpen(file));
  searcher->closeFile();
  find({2, "/nowhere/missing.pdf", {}, "lamp", {}, 0, 1});
  EXPECT_FALSE(test::hasOpen(file));
}

TEST_F(SearcherTest, AFileThatIsBeingSearchedIsClosedAfterwards) {
  onThread = [this] {
    onThread = {};
    searcher->closeFile();
  };
  find(search("door"));
  find({3, "/nowhere/missing.pdf", {}, "lamp", {}, 0, 1});
  EXPECT_FALSE(test::hasOpen(file));
}

TEST_F(SearcherTest, EndsWhileItSearches) {
  file = folder.pdf(test::numberedPages(200));
  pages = 200;
  searcher->start(search("cellar"));
  ASSERT_TRUE(waker.until([&] { return waker.wakes() > 0; }));
  searcher.reset();
  EXPECT_LE(waker.wakes(), 200U);
}

} // namespace
} // namespace viewer
