// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What plug-ins have highlighted on the page drawn last. It is not in the drawing's pixels: the next drawing begins
// without it.
#pragma once

#include <vector>

#include "host/view/drawing.h"
#include "host/view/marks.h"

namespace host {

class Highlights {
public:
  static constexpr Rgb color{0xB4, 0xD5, 0xFE};

  const std::vector<MarkedArea> &areas() const { return areas_; }
  void clear() { areas_.clear(); }
  /// Adds an area, or takes it off.
  void toggle(MarkedArea area);
  void remove(const MarkedArea &area) { std::erase(areas_, area); }
  /// Multiplies the areas onto a drawing; pixels in several areas once.
  void paint(Drawing &drawing, const Scale &scale) const;

private:
  std::vector<MarkedArea> areas_;
};

} // namespace host
