// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Lays out the page with its scroll bars and ticks, and takes its keys and the mouse.
#pragma once

#include <Xm/Xm.h>

#include <string>
#include <vector>

#include "viewer/window/pagepainter.h"
#include "viewer/window/scrollbars.h"
#include "viewer/window/ticks.h"

namespace viewer {

class MainWindow;
class Toolkit;

class PageArea {
public:
  PageArea(MainWindow &window, ::Widget parent);
  PageArea(const PageArea &) = delete;
  PageArea &operator=(const PageArea &) = delete;

  /// The width available for the page in a shell of that width, and the margin around the page.
  static int windowWidth(const Toolkit &toolkit, int shellWidth);
  static int margin(const Toolkit &toolkit);

  ::Widget widget() const { return form_; }
  ::Widget page() const { return area_; }
  /// Lays out the children to fill the available space.
  void layOut();
  /// Shows the session's drawing.
  void show();
  /// Brings scroll bars and ticks up to date.
  void update();
  /// Shows a text in the middle of the page area, such as "rendering"; empty: none.
  void note(const std::string &text);
  const std::string &noted() const { return note_; }
  /// The position of the complete page on the area, in pixels; negative if it starts outside of it.
  Place pagePlace() const;
  const std::vector<int32_t> &ticks() const { return ticks_.pages(); }

  /// The user's translations of the page, as in their resource.
  const std::string &usersTranslations() const { return usersTranslations_; }

  /// The steps of the drag action.
  void beginDrag(const XEvent &event);
  void drag(const XEvent &event);
  void endDrag();

private:
  MainWindow &window_;
  ::Widget form_, area_;
  ScrollBars bars_;
  Ticks ticks_;
  PagePainter painter_;
  int width_ = 0, height_ = 0;
  std::string note_, usersTranslations_;
  int dragX_ = 0, dragY_ = 0;
  bool dragging_ = false;
};

} // namespace viewer
