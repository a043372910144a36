// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Brings the window's parts up to date with the model: the page's drawing, the note on it, and the parts of which
// something has changed.
#pragma once

#include <cstddef>
#include <functional>

#include "viewer/window/eventloop.h"

namespace viewer {

class MainWindow;

class Refresh {
public:
  /// @param showParts brings the parts up to date that are given as flags (Part)
  /// @param fillMenus is called after the first page: filling them takes time. True if it has filled them now
  Refresh(MainWindow &window, std::function<void(uint32_t parts)> showParts, std::function<bool()> fillMenus);
  Refresh(const Refresh &) = delete;
  Refresh &operator=(const Refresh &) = delete;

  /// To be called at the end of each iteration of the event loop.
  void update();
  /// How many drawings with marks have been shown so far.
  size_t marksShown() const { return marks_; }

private:
  void show();
  void watchWaiting();

  MainWindow &window_;
  std::function<void(uint32_t parts)> showParts_;
  std::function<bool()> fillMenus_;
  size_t marks_ = 0;
  EventLoop::Alarm waiting_, redraw_;
};

} // namespace viewer
