// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The thread that opens files and renders pages, so that the window never waits for the PDF library. The thread that
// owns it collects the results.
#pragma once

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "host/document/pdf.h"
#include "viewer/model/cache.h"

namespace viewer {

/// A requested file: the document, or the error.
struct OpenedFile {
  uint64_t document = 0;
  std::unique_ptr<host::PdfFile> pdf; ///< the owner's instance; the thread renders from another one
  std::string error;                  ///< one line, if there is no document
  bool needsPassword = false;
};

/// A requested page: its image, or the error.
struct RenderedPage {
  PageKey key;
  host::Image image;
  std::string error;
};

class Renderer {
public:
  /// `wake` is called on the thread whenever there is something to collect.
  explicit Renderer(std::function<void()> wake);
  ~Renderer(); ///< waits for the page being rendered
  Renderer(const Renderer &) = delete;
  Renderer &operator=(const Renderer &) = delete;

  /// Ends the thread and waits for it up to the timeout; false if a page is still being rendered.
  bool finish(std::chrono::milliseconds timeout);
  /// Opens a file. The owner chooses the document's number.
  void open(uint64_t document, const std::filesystem::path &file, const std::string &password);
  void close(uint64_t document);
  /// The pages to render, the most urgent first. Replaces the previous list; the page being rendered is completed.
  void want(const std::vector<PageKey> &pages);

  struct Results {
    std::list<OpenedFile> opened;
    std::list<RenderedPage> rendered;
    std::list<uint64_t> changed; ///< documents whose files have changed
  };
  Results collect();
  // If memory is exhausted, open() and want() throw std::bad_alloc and do nothing; the others allocate nothing.

private:
  struct Source;
  void run();
  bool step(std::unique_lock<std::mutex> &lock);
  void openNext(std::unique_lock<std::mutex> &lock);
  void renderNext(std::unique_lock<std::mutex> &lock);

  std::function<void()> wake_;
  std::mutex mutex_; ///< protects everything below, except the contents of sources, which only the thread uses
  std::condition_variable work_, end_;
  using Sources = std::map<uint64_t, std::unique_ptr<Source>>;
  // An order holds the memory of its answer: the thread could not report that there is none.
  struct Order {
    std::string password;
    Sources source;               ///< of one element
    std::list<OpenedFile> answer; ///< of one element
  };
  std::list<Order> orders_;
  std::optional<uint64_t> opening_;
  std::vector<uint64_t> closed_; ///< documents to close, each once; has capacity for all that are open or ordered
  std::list<RenderedPage> wanted_;
  std::optional<PageKey> underWay_;
  Results results_;
  bool ends_ = false, ended_ = false;
  Sources sources_;
  std::thread thread_; ///< last: it uses all of the above
};

} // namespace viewer
