// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/marks.h"

#include <algorithm>

#include "host/view/outline.h"

namespace host {

void PageMarks::add(const Selection &selection, const Rgb &color) {
  marks_.push_back({{selection.page, selection.boxes}, color, selections().handle(&selection)});
  ranges_ += selection.ranges;
  offPage_ += selection.offPage;
}

void PageMarks::addOutline(const Selection &selection, const Rgb &color) {
  outlines_.push_back({{selection.page, selection.boxes}, color, nullptr});
}

bool PageMarks::has(const MarkedArea &area) const {
  return std::any_of(marks_.begin(), marks_.end(), [&](const Mark &mark) { return mark.area == area; });
}

void PageMarks::compose(Image &image, const Scale &scale) const {
  for (const Mark &mark : marks_)
    paintMarks(image, mark.area.boxes, scale, mark.color);
  for (const Mark &outlined : outlines_)
    paintOutline(image, outlined.area.boxes, scale, outlined.color);
}

} // namespace host
