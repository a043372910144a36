// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The processes that read documents, so that nothing in a file can stop, slow or reach the program that shows it.
//
// A document has three kinds of process: for its images, for its words, and for its structure; so words never wait for
// an image that takes long. They are started when something is asked, and again when they have ended. As long as there
// is none for words, one for images that has nothing to do answers for them. What nobody wants any more, or keeps
// something more urgent waiting, is ended after a tenth of a second.
#pragma once

#include <filesystem>
#include <memory>

#include "host/document/process.h"
#include "host/document/service.h"
#include "host/document/waker.h"

namespace host {

class ProcessGroup;

struct ProcessOptions {
  std::filesystem::path program;
  size_t memory = size_t{1} << 30;                               ///< that each may take, in bytes
  std::chrono::milliseconds pageTime = std::chrono::seconds(60); ///< of a processor, that a request may take
  size_t documents = 3; ///< that have processes while there is nothing to do: those that were used last
  size_t wordProcesses = 1, imageProcesses = 1; ///< of a document, at most
  std::filesystem::path structureProgram = host::structureProgram();
};

class Processes {
public:
  /// Throws HostError if the system has no descriptor left.
  explicit Processes(ProcessOptions options);
  Processes(const Processes &) = delete;
  Processes &operator=(const Processes &) = delete;
  ~Processes();

  /// Readable when there is something to collect of one of the documents, and after a wake-up.
  int descriptor() const;
  /// The caller of Service::collect() clears it before.
  const Waker &waker() const;
  /// The backend of another document, which its first request opens; messages name the file. It may outlive this
  /// object.
  std::unique_ptr<Backend> backend(const std::filesystem::path &file);

private:
  std::shared_ptr<ProcessGroup> group_;
};

} // namespace host
