// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The scroll bar for the document, and a horizontal one for a page that is wider than the window.
#pragma once

#include <Xm/Xm.h>

namespace viewer {

class MainWindow;

class ScrollBars {
public:
  ScrollBars(MainWindow &window, ::Widget parent);
  ScrollBars(const ScrollBars &) = delete;
  ScrollBars &operator=(const ScrollBars &) = delete;

  ::Widget vertical() const { return vertical_; }
  ::Widget horizontal() const { return horizontal_; }
  /// Whether the horizontal one is shown.
  bool isWide() const { return wide_; }
  /// Brings both up to date; true if the horizontal one appears or disappears.
  /// @param width that is available for the page, in pixels
  bool update(int width);

private:
  void sliderMoved();
  void movedSideways();

  MainWindow &window_;
  ::Widget vertical_, horizontal_;
  bool wide_ = false;
  bool held_ = false; ///< a user drags the vertical slider, which stays where it is held
};

} // namespace viewer
