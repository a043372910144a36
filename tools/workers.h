// Threads beside the main one for the work that the PDF library and the image files make. Commands that go through all
// pages of a document own one.
#pragma once

#include <condition_variable>
#include <deque>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/document/pdf.h"

namespace tools {

class Workers {
public:
  /// So many threads, or fewer where the system has no more, each with the file opened once more. The file is there as
  /// long as they are.
  Workers(const host::PdfFile &file, size_t threads);
  ~Workers(); ///< forgets what nobody has begun, waits for what is under way
  Workers(const Workers &) = delete;
  Workers &operator=(const Workers &) = delete;

  /// How many threads are worth having for so many pages: one for each processor that this process may use, none where
  /// that is but one.
  static size_t worthHaving(int32_t pages);

  size_t threads() const { return threads_.size(); }

  /// Has a thread do the work, in the order in which it was given. The work gets the thread's file, null where it
  /// cannot be opened once more; what it returns or throws is in the future.
  template <typename Work> auto order(Work work) {
    std::packaged_task<std::invoke_result_t<Work &, host::PdfFile *>(host::PdfFile *)> task(std::move(work));
    auto result = task.get_future();
    add(Task([task = std::move(task)](host::PdfFile *file) mutable { task(file); }));
    return result;
  }

private:
  using Task = std::packaged_task<void(host::PdfFile *)>;
  void add(Task task);
  void run();

  const host::PdfFile &file_;
  std::mutex mutex_; ///< of the two below
  std::deque<Task> tasks_;
  bool ends_ = false;
  std::condition_variable work_;
  std::vector<std::thread> threads_; ///< last: they use all of the above
};

} // namespace tools
