// The pictures on the tool bar: the viewer's own are drawn from strokes at any size, plug-ins' come as bitmaps.
#pragma once

#include <Xm/Xm.h>

#include <map>
#include <string>
#include <tuple>

namespace viewer {

class Icons {
public:
  /// In the colours of a widget, which outlives them; at a scale of 1 they are of 16 by 16 pixels.
  Icons(Widget like, double scale);
  ~Icons();
  Icons(const Icons &) = delete;
  Icons &operator=(const Icons &) = delete;

  /// A pixmap of the screen's depth, in the colours of the buttons; greyed, it is blended with their ground. Of the
  /// name's strokes, or of a bitmap of depth 1 where there is one; 0 where there is neither. Lives as long as this.
  Pixmap get(const std::string &name, Pixmap bitmap, bool greyed);

private:
  Widget like_;
  double scale_;
  std::map<std::tuple<std::string, Pixmap, bool>, Pixmap> made_;
};

} // namespace viewer
