// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The strip beside the scroll bar with a tick for each page that a plug-in has marked.
#pragma once

#include <Xm/Xm.h>

#include <cstdint>
#include <vector>

namespace viewer {

class MainWindow;

class Ticks {
public:
  Ticks(MainWindow &window, ::Widget parent);
  ~Ticks();
  Ticks(const Ticks &) = delete;
  Ticks &operator=(const Ticks &) = delete;

  ::Widget widget() const { return area_; }
  /// Brings the ticks up to date.
  void update();
  const std::vector<int32_t> &pages() const { return pages_; }

private:
  void paint();
  void press(int y);

  MainWindow &window_;
  ::Widget area_;
  GC context_;
  std::vector<int32_t> pages_;
};

} // namespace viewer
