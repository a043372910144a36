// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The page on its background, a scroll bar for the document with ticks beside it, and a horizontal one for a page that
// is wider than the window.
#pragma once

#include <Xm/Xm.h>

#include <string>
#include <vector>

#include "viewer/window/motif.h"

namespace viewer {

class MainWindow;
class Toolkit;

class PageArea {
public:
  PageArea(MainWindow &window, ::Widget parent);
  ~PageArea();
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
  const std::vector<int32_t> &ticks() const { return ticks_; }

  /// The user's translations of the page, as in their resource.
  const std::string &usersTranslations() const { return usersTranslations_; }

  /// The steps of the drag action.
  void beginDrag(const XEvent &event);
  void drag(const XEvent &event);
  void endDrag();

private:
  void paint();
  void paintTicks();
  void paintNote(const Place &page);
  void sliderMoved();
  void movedSideways();
  void tickPressed(int y);
  Pixel color(const char *name, const char *className, const char *otherwise) const;

  MainWindow &window_;
  ::Widget form_, area_, vertical_, horizontal_, ticksArea_;
  GC context_;
  Pixel background_, border_, tick_, noteColor_;
  int width_ = 0, height_ = 0;
  bool wide_ = false; ///< the horizontal scroll bar is shown
  bool held_ = false; ///< a user drags the vertical slider, which stays where it is held
  std::vector<int32_t> ticks_;
  std::string note_, usersTranslations_;
  int dragX_ = 0, dragY_ = 0;
  bool dragging_ = false;
};

} // namespace viewer
