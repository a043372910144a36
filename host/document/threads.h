// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The threads that answer for all open documents, so that the owner's thread never waits for the PDF library longer
// than it chooses.
//
// One thread does all work, with one open instance of each document: another one would need instances of its own, which
// take memory. Once it has been busy with one request for a tenth of a second, another thread steps in for the requests
// that wait, with an instance that it opens for that time. So a page that takes minutes delays no other, and many
// documents need no more threads than one.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "host/document/service.h"

namespace host {

class Pool;

class Threads {
public:
  /// `wake` is called on one of the threads when there is something to collect, but not for an answer that the owner is
  /// waiting for. Throws std::system_error or std::bad_alloc if there can be no thread.
  explicit Threads(std::function<void()> wake);
  /// Waits up to five seconds for the requests under way. A thread that takes longer is left to itself: it owns what it
  /// uses, calls nothing of the owner's any more, and ends after its request.
  ~Threads();
  Threads(const Threads &) = delete;
  Threads &operator=(const Threads &) = delete;

  /// Begins nothing any more, and waits for the requests under way up to the timeout; false if there still is one.
  bool finish(std::chrono::milliseconds timeout);

  /// The backend of another document, which its first request opens; messages name the file. It may outlive this
  /// object; then nothing is answered any more.
  std::unique_ptr<Backend> backend(const std::filesystem::path &file);

private:
  std::shared_ptr<Pool> pool_;
};

} // namespace host
