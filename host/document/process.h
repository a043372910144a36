// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A process that reads one document, as its owner has it. It is not trusted: all that it sends is checked, and it can
// be ended at any time.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "host/document/channel.h"

namespace host {

/// The descriptor of the socket in the process.
inline constexpr int documentSocket = 3;

/// The program's argument to report which layers of its confinement are in force, instead of reading anything.
inline constexpr char confinementOption[] = "--confinement";

/// The program that draws documents and reads their words: beside the directory of this one, or where it is installed.
std::filesystem::path documentProgram();
/// The program that reads their structure.
std::filesystem::path structureProgram();

class DocumentProcess {
public:
  /// Starts the program, which takes no more memory than so many bytes. Throws HostError with one clear line if that is
  /// not possible.
  DocumentProcess(const std::filesystem::path &program, size_t memory);
  /// Ends it, however busy it is.
  ~DocumentProcess();
  DocumentProcess(const DocumentProcess &) = delete;
  DocumentProcess &operator=(const DocumentProcess &) = delete;

  Channel &channel() { return channel_; }
  /// The processor time that it has used so far.
  std::chrono::nanoseconds used() const;
  /// To be called when its end of the socket is closed: ends it, and says why it ended, as a part of a sentence:
  /// "it ended with status 3".
  std::string reasonOfEnd();

private:
  void end(int *status);

  Channel channel_;
  pid_t id_ = 0; ///< 0 when it has ended
};

} // namespace host
