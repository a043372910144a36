// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A file that is being opened, on a thread of its own: a file system on a network may take long, or never answer.
#pragma once

#include <exception>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

#include "host/document/openfile.h"
#include "host/document/waker.h"

namespace host {

class Opening {
public:
  /// Waits for a moment, in which most files are open. Throws HostError if the system has no descriptor left.
  /// Destroying it does not wait for the thread.
  explicit Opening(const std::filesystem::path &file);

  /// Readable once the file is open, or cannot be opened.
  int descriptor() const { return state_->done.descriptor(); }
  /// The file, if it is open by now. Throws what OpenFile does. To be called until there is one.
  std::optional<OpenFile> take();

private:
  struct State {
    Waker done;
    std::mutex mutex; ///< protects the two below
    std::optional<OpenFile> file;
    std::exception_ptr error;
  };
  static void run(State &state, const std::filesystem::path &file) noexcept;

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace host
