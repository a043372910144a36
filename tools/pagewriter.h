// Writes drawn pages as PNG files, with a line each. The render command owns one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <future>
#include <optional>
#include <string>

#include "host/view/pageview.h"
#include "tools/progress.h"
#include "tools/workers.h"

namespace tools {

/// Of the pages that wait for something, on either side of the painting. Two of them may be of any size.
inline constexpr double mostPixelsWaiting = 32.0 * 1024 * 1024;

class PageWriter {
public:
  /// Writes page-0001.png and so on into a directory, of that many dots per inch.
  PageWriter(std::filesystem::path directory, double dpi, int32_t pageCount);

  /// Has threads encode the pages, while the files are still written here. Null for none; else finish() comes before
  /// the threads' end.
  void setWorkers(Workers *workers) { workers_ = workers; }
  /// Writes a page now or, with workers, soon: files come to be in the order of the calls, and so do the lines.
  /// `status` is what plug-ins say of the page. Throws CommandFailure (exitOutput), perhaps for an earlier page.
  void write(host::Drawing &&drawing, std::string status);
  /// Counts the hits of a page on which none could be marked, and prints a line. The page is not written.
  void reportOffPage(const host::Drawing &drawing);
  /// Writes all that waits, and leaves the workers. Throws likewise; what waits behind a page that fails is forgotten.
  void finish();

  /// Takes the progress bar away.
  void clear() { progress_.clear(); }
  size_t hits() const { return hits_; }
  std::string summary() const;

private:
  struct Page {
    int32_t number;
    size_t marks, offPage;
    std::string status;
  };
  struct Waiting {
    Page page;
    double pixels;
    std::future<std::optional<std::string>> png;
  };
  std::string label(int32_t page) const;
  void put(const Page &page, const std::optional<std::string> &png);
  void putFirst();

  std::filesystem::path directory_;
  double dpi_;
  int32_t pageCount_;
  Progress progress_;
  Workers *workers_ = nullptr;
  std::deque<Waiting> waiting_;
  double pixelsWaiting_ = 0;
  size_t pages_ = 0, hits_ = 0, offPage_ = 0;
};

} // namespace tools
