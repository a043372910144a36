// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Writes drawn pages as PNG files and prints a line for each. The render command owns one.
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

/// The limit of each queue of pages, before and after painting, in pixels; a single page may be larger.
inline constexpr double mostPixelsWaiting = 32.0 * 1024 * 1024;

class PageWriter {
public:
  /// Writes page-0001.png and so on into a directory, with that many dots per inch.
  PageWriter(std::filesystem::path directory, double dpi, int32_t pageCount);

  /// Encodes the pages on these threads; the files are written on the caller's thread. Null for none. finish() must be
  /// called before the threads end.
  void setWorkers(Workers *workers) { workers_ = workers; }
  /// Writes a page now or, with workers, later. Files and lines appear in the order of the calls. `status` is the
  /// status text of the plug-ins. Throws CommandFailure (exitOutput), possibly for an earlier page.
  void write(host::Drawing &&drawing, std::string status);
  /// Counts the hits of a page on which none could be marked, and prints a line. The page is not written; the waiting
  /// ones are. Throws likewise.
  void reportOffPage(const host::Drawing &drawing);
  /// Writes the waiting pages and stops using the workers. Throws likewise; pages after one that fails are dropped.
  void finish();

  /// Removes the progress bar.
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
