// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/highlights.h"

#include <utility>

namespace host {

void Highlights::toggle(MarkedArea area) {
  if (std::erase(areas_, area) == 0) areas_.push_back(std::move(area));
}

void Highlights::paint(Drawing &drawing, const Scale &scale) const {
  std::vector<Box> boxes;
  for (const MarkedArea &area : areas_)
    if (area.page == drawing.page) boxes.insert(boxes.end(), area.boxes.begin(), area.boxes.end());
  paintMarks(drawing.image, boxes, scale, color);
}

} // namespace host
