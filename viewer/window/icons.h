// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The icons of the tool bar: the viewer's are drawn from strokes at any size, plug-ins provide bitmaps.
#pragma once

#include <Xm/Xm.h>

#include <map>
#include <string>
#include <tuple>

namespace viewer {

class Icons {
public:
  /// In the colours of a widget, which must outlive this object; at a scale of 1 icons are 16 by 16 pixels.
  Icons(Widget like, double scale);
  ~Icons();
  Icons(const Icons &) = delete;
  Icons &operator=(const Icons &) = delete;

  /// A pixmap of the screen's depth, in the colours of the buttons; greyed, it is blended with their background. Drawn
  /// from the name's strokes, otherwise from a bitmap of depth 1; 0 if there is neither. Owned by this object.
  Pixmap get(const std::string &name, Pixmap bitmap, bool greyed);

private:
  Widget like_;
  double scale_;
  std::map<std::tuple<std::string, Pixmap, bool>, Pixmap> made_;
};

} // namespace viewer
