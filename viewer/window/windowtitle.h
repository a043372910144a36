// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The title of the window, as window managers read it.
#pragma once

#include <Xm/Xm.h>

#include <string>

namespace viewer {

class WindowTitle {
public:
  explicit WindowTitle(::Widget shell) : shell_(shell) {}

  /// @param title UTF-8
  void show(const std::string &title);

private:
  ::Widget shell_;
  std::string shown_;
};

} // namespace viewer
