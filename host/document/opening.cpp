// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/opening.h"

#include <poll.h>

#include <system_error>
#include <thread>
#include <utility>

namespace host {

Opening::Opening(const std::filesystem::path &file) {
  try {
    std::thread([state = state_, file] { run(*state, file); }).detach();
  } catch (const std::system_error &) { // the system allows no more threads
    run(*state_, file);
  }
  constexpr int moment = 5; // milliseconds
  pollfd done{descriptor(), POLLIN, 0};
  poll(&done, 1, moment);
}

void Opening::run(State &state, const std::filesystem::path &file) noexcept {
  try {
    OpenFile opened(file);
    const std::lock_guard lock(state.mutex);
    state.file = std::move(opened);
  } catch (...) {
    const std::lock_guard lock(state.mutex);
    state.error = std::current_exception();
  }
  state.done.wake();
}

std::optional<OpenFile> Opening::take() {
  const std::lock_guard lock(state_->mutex);
  if (state_->error) std::rethrow_exception(state_->error);
  return std::exchange(state_->file, std::nullopt);
}

} // namespace host
