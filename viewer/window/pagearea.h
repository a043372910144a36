// The page on its ground, with a scroll bar for the whole document, ticks beside it, and one for a page wider than the
// window.
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

  /// How wide the area for the page's window is in a shell of that width, and the margin around it.
  static int windowWidth(const Toolkit &toolkit, int shellWidth);
  static int margin(const Toolkit &toolkit);

  ::Widget widget() const { return form_; }
  ::Widget page() const { return area_; }
  /// Puts everything in its place, as large as there is room.
  void layOut();
  /// Shows the session's drawing.
  void show();
  /// Brings scroll bars and ticks up to date.
  void update();
  /// Whether "rendering" stands on the outline.
  void note(const std::string &text);
  const std::string &noted() const { return note_; }
  /// Where the whole page lies on the area, in pixels; negative where it reaches beyond.
  Place pagePlace() const;
  const std::vector<int32_t> &ticks() const { return ticks_; }

  /// The drag action's parts.
  void beginDrag(const XEvent &event);
  void drag(const XEvent &event);
  void endDrag();

private:
  void paint();
  void paintTicks();
  void paintNote(const Place &page);
  void scrolled(bool vertical, int value);
  void tickPressed(int y);
  Pixel color(const char *name, const char *className, const char *otherwise) const;

  MainWindow &window_;
  ::Widget form_, area_, vertical_, horizontal_, ticksArea_;
  GC context_;
  Pixel ground_, border_, tick_, noteColor_;
  int width_ = 0, height_ = 0;
  bool wide_ = false; ///< the horizontal scroll bar is there
  std::vector<int32_t> ticks_;
  std::string note_;
  int dragX_ = 0, dragY_ = 0;
  bool dragging_ = false;
};

} // namespace viewer
