// The thread that waits for the PDF library, so that the window never does: it opens files and renders pages. What it
// has done is collected by the thread that owns it.
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

/// A file that was asked for: the document, or why there is none.
struct OpenedFile {
  uint64_t document = 0;
  std::unique_ptr<host::PdfFile> pdf; ///< the owner's own; the thread draws from another
  std::string error;                  ///< one line, when there is no document
  bool wantsPassword = false;
};

/// A page that was wanted: its image, or why there is none.
struct RenderedPage {
  PageKey key;
  host::Image image;
  std::string error;
};

class Renderer {
public:
  /// `wake` is called on the thread whenever there is something to collect.
  explicit Renderer(std::function<void()> wake);
  ~Renderer(); ///< waits for the page under way
  Renderer(const Renderer &) = delete;
  Renderer &operator=(const Renderer &) = delete;

  /// Has the thread end and waits so long for it; false where a page is still under way.
  bool finish(std::chrono::milliseconds timeout);
  /// Opens a file under a number of the owner's choice.
  void open(uint64_t document, const std::filesystem::path &file, const std::string &password);
  void close(uint64_t document);
  /// The pages to render, the most urgent first. Replaces what was wanted before, but for the page under way.
  void want(const std::vector<PageKey> &pages);

  struct Results {
    std::list<OpenedFile> opened;
    std::list<RenderedPage> rendered;
    std::list<uint64_t> changed; ///< documents whose files are no longer what they were
  };
  Results collect();
  // open() and want() throw std::bad_alloc and do nothing where memory is exhausted; the others need none.

private:
  struct Source;
  void run();
  bool step(std::unique_lock<std::mutex> &lock);
  void openNext(std::unique_lock<std::mutex> &lock);
  void renderNext(std::unique_lock<std::mutex> &lock);

  std::function<void()> wake_;
  std::mutex mutex_; ///< of everything below; what a source holds is the thread's
  std::condition_variable work_, end_;
  using Sources = std::map<uint64_t, std::unique_ptr<Source>>;
  // An order has everything that its answer is put into: the thread could not say that there is no memory for it.
  struct Order {
    std::string password;
    Sources source;               ///< the one
    std::list<OpenedFile> answer; ///< the one
  };
  std::list<Order> orders_;
  std::optional<uint64_t> opening_;
  std::vector<uint64_t> closed_; ///< documents to close, each once; has memory for all that are open or ordered
  std::list<RenderedPage> wanted_;
  std::optional<PageKey> underWay_;
  Results results_;
  bool ends_ = false, ended_ = false;
  Sources sources_;
  std::thread thread_; ///< last: it uses all of the above
};

} // namespace viewer
