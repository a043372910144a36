// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What page-draw procedures have marked on a page, recorded apart from the page's pixels.
#pragma once

#include <vector>

#include "host/document/document.h"
#include "host/view/painting.h"

namespace host {

/// What a selection marks. A copy, because the selection may be destroyed before the area is used again.
struct MarkedArea {
  int32_t page = 0;
  std::vector<Box> boxes;
  bool operator==(const MarkedArea &) const = default;
};

/// Marks and outlines in the order in which they were made.
class PageMarks {
public:
  void clear() { *this = {}; }
  void add(const Selection &selection, const Rgb &color);
  void addOutline(const Selection &selection, const Rgb &color);
  bool has(const MarkedArea &area) const;
  /// Whether no selection was added; outlines do not count.
  bool empty() const { return marks_.empty(); }
  /// The handle of the n-th selection that was added, as it was then; null after the last one.
  tavrel::TextSelection selection(size_t index) const {
    return index < marks_.size() ? marks_[index].selection : nullptr;
  }
  /// How many ranges the selections have, and how many of them lie outside of the page.
  size_t ranges() const { return ranges_; }
  size_t offPage() const { return offPage_; }
  /// Blends the marks with an image of the page, one after the other, and draws the outlines above them.
  void compose(Image &image, const Scale &scale) const;

private:
  struct Mark {
    MarkedArea area;
    Rgb color;
    tavrel::TextSelection selection;
  };
  std::vector<Mark> marks_, outlines_;
  size_t ranges_ = 0, offPage_ = 0;
};

} // namespace host
