// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The arithmetic of a document's scroll bar: positions in the document as integers, each page the same number of units.
#pragma once

#include <cstdint>

namespace viewer {

/// A scroll bar's numbers: the value is from 0 to range - size.
struct Slider {
  int range, size, value;
};

class ScrollScale {
public:
  explicit ScrollScale(int32_t pages);

  /// For a window whose upper edge is `y` pixels below that of the page. The first and the last value are those of the
  /// document's start and end alone, and y is yAt(value, height) if a page has at least a unit for each of its pixels.
  /// @param height of the page, in pixels
  /// @param window the window's height, in pixels
  Slider slider(int32_t page, int y, int height, int window) const;
  int32_t pageAt(int value) const;
  /// In pixels from the upper edge of the page at that value, which has that height.
  int yAt(int value, int height) const;

private:
  int32_t pages_;
  int unit_; ///< units of a page
};

} // namespace viewer
