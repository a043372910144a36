// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The thread that searches a document for a text, page by page, from the current page.
#pragma once

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "host/document/find.h"
#include "host/document/pdf.h"

namespace viewer {

/// What is searched for, and where.
struct Search {
  uint64_t document = 0;
  std::filesystem::path file;
  std::string password;
  std::string text; ///< UTF-8
  host::FindOptions options;
  int32_t page = 0; ///< the first to search
  int32_t pages = 0;
  bool backwards = false;
};

/// The first page with the text, in the direction of the search.
struct SearchResult {
  Search search;
  int32_t page = 0;
  std::vector<host::Found> found; ///< empty: the text is not in the document
  bool wrapped = false;           ///< the search passed an end of the document
  std::string error;
};

class Searcher {
public:
  /// `wake` is called on the thread when there is a result, and after each page without one.
  explicit Searcher(std::function<void()> wake);
  ~Searcher(); ///< waits for the page being searched
  /// Ends the search and the thread, and waits for it up to the timeout; false if a page is still being searched.
  bool finish(std::chrono::milliseconds timeout);
  Searcher(const Searcher &) = delete;
  Searcher &operator=(const Searcher &) = delete;

  /// Replaces the current search, if any.
  void start(Search next);
  void stop();
  /// Closes the file that is open, if any; another search opens it again.
  void closeFile();
  std::optional<SearchResult> collect();
  /// How many pages have been searched; none if no search is running.
  std::optional<int32_t> progress();

private:
  void run();
  SearchResult look(Search asked);
  bool cancelled();

  std::function<void()> wake_;
  std::mutex mutex_;
  std::condition_variable work_, end_;
  std::optional<Search> next_;
  std::optional<SearchResult> result_;
  std::optional<int32_t> progress_;
  bool stops_ = false, ends_ = false, ended_ = false, closes_ = false;
  // Used by the thread only.
  uint64_t document_ = 0;
  std::unique_ptr<host::PdfFile> pdf_;
  std::thread thread_;
};

} // namespace viewer
