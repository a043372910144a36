// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The edge between the side panel and the page, which is dragged to change the panel's width.
#pragma once

#include <Xm/Xm.h>

#include <functional>

namespace viewer {

class PanelEdge {
public:
  /// In the form `parent`, from below `above` to above `below`; not shown yet.
  /// @param width of the edge, in pixels
  /// @param dragged is called with the position to which it is dragged, in pixels from the form's left
  PanelEdge(::Widget parent, ::Widget above, ::Widget below, int width, std::function<void(int left)> dragged);
  PanelEdge(const PanelEdge &) = delete;
  PanelEdge &operator=(const PanelEdge &) = delete;

  int width() const { return width_; }
  void show(int left);
  void hide();

private:
  static void handle(::Widget widget, XtPointer self, XEvent *event, Boolean *continueToDispatch);

  ::Widget edge_;
  int width_, offset_ = 0; ///< of its left from the pointer's position on the screen, while it is dragged
  std::function<void(int left)> dragged_;
};

} // namespace viewer
