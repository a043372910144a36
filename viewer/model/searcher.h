// The thread that looks for a text in a document, a page at a time, from where the reader is.
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

/// What is looked for, and where.
struct Search {
  uint64_t document = 0;
  std::filesystem::path file;
  std::string password;
  std::string text; ///< UTF-8
  host::FindOptions options;
  int32_t page = 0; ///< the first to look at
  int32_t pages = 0;
  bool backwards = false;
};

/// The first page in the direction of the search that has the text.
struct SearchResult {
  Search search;
  int32_t page = 0;
  std::vector<host::Found> found; ///< empty: the text stands nowhere in the document
  bool wrapped = false;           ///< the search went beyond an end of the document
  std::string error;
};

class Searcher {
public:
  /// `wake` is called on the thread when there is a result, and now and then while it looks.
  explicit Searcher(std::function<void()> wake);
  ~Searcher(); ///< waits for the page under way
  /// Ends the search and the thread, and waits so long for it; false where a page is still being searched.
  bool finish(std::chrono::milliseconds timeout);
  Searcher(const Searcher &) = delete;
  Searcher &operator=(const Searcher &) = delete;

  /// Ends the search under way, if any.
  void start(Search next);
  void stop();
  /// Gives the file back that it has open, whichever that is; another search opens it again.
  void closeFile();
  std::optional<SearchResult> collect();
  /// How many pages it has looked at, while a search is under way.
  std::optional<int32_t> progress();

private:
  void run();
  SearchResult look(Search asked);
  bool overtaken();

  std::function<void()> wake_;
  std::mutex mutex_;
  std::condition_variable work_, end_;
  std::optional<Search> next_;
  std::optional<SearchResult> result_;
  std::optional<int32_t> progress_;
  bool stops_ = false, ends_ = false, ended_ = false, closes_ = false;
  // The thread's own.
  uint64_t document_ = 0;
  std::unique_ptr<host::PdfFile> pdf_;
  std::thread thread_;
};

} // namespace viewer
