// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The side panel: the list of a plug-in left of the page, under its title. Its edge is dragged to change its width.
#pragma once

#include <memory>
#include <string>

#include "viewer/window/paneledge.h"
#include "viewer/window/rowsview.h"

namespace viewer {

class ListPanel {
public:
  /// Left of `page`, a child of the same form; not shown yet.
  ListPanel(MainWindow &window, ::Widget parent, ::Widget page);

  /// Shows the panel and gives it the keyboard, or hides it.
  void toggle();
  /// Brings the list up to date.
  void update();
  PanelState state() const;

private:
  bool isShown() const { return XtIsManaged(panel_) != 0; }
  static void resized(::Widget parent, XtPointer self, XEvent *event, Boolean *continueToDispatch);
  int width() const;
  void place();
  void layOut();

  MainWindow &window_;
  ::Widget page_, panel_, title_;
  std::unique_ptr<RowsView> rows_;
  std::unique_ptr<PanelEdge> edge_;
  int draggedWidth_ = 0; ///< by the user; 0: not yet
  std::string titleText_;
};

} // namespace viewer
