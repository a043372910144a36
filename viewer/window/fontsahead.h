// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Looks up fonts while everything else starts: reading their configuration takes as long as opening a document.
#pragma once

#include <thread>

namespace viewer {

class FontsAhead {
public:
  /// Starts a thread.
  FontsAhead();
  ~FontsAhead() { await(); }
  FontsAhead(const FontsAhead &) = delete;
  FontsAhead &operator=(const FontsAhead &) = delete;

  void await();

private:
  std::thread thread_;
};

} // namespace viewer
