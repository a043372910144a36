// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Worker threads for the PDF library and for encoding images. Commands that process all pages of a document own one.
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

#include "document/pdf.h"

namespace tools {

class Workers {
public:
  /// Starts so many threads, or fewer if the system allows no more; each opens the file separately. `file` outlives
  /// this object.
  Workers(const document::PdfFile &file, size_t threads);
  ~Workers(); ///< drops tasks that have not started, waits for those that have
  Workers(const Workers &) = delete;
  Workers &operator=(const Workers &) = delete;

  /// How many threads are useful for so many pages: one for each processor that this process may use, at most 8 and at
  /// most one a page; none if that is one.
  static size_t worthHaving(int32_t pages);

  size_t threads() const { return threads_.size(); }

  /// Runs the work on a thread. Work is started in the order of the calls. It gets the thread's file, null if the
  /// thread could not open it; its result or exception is in the future.
  template <typename Work> auto order(Work work) {
    std::packaged_task<std::invoke_result_t<Work &, document::PdfFile *>(document::PdfFile *)> task(std::move(work));
    auto result = task.get_future();
    add(Task([task = std::move(task)](document::PdfFile *file) mutable { task(file); }));
    return result;
  }

private:
  using Task = std::packaged_task<void(document::PdfFile *)>;
  void add(Task task);
  void run();

  const document::PdfFile &file_;
  std::mutex mutex_; ///< protects the two members below
  std::deque<Task> tasks_;
  bool ends_ = false;
  std::condition_variable work_;
  std::vector<std::thread> threads_; ///< last: they use all of the above
};

} // namespace tools
