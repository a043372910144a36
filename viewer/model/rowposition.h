// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Which rows of a list are visible, and which one the cursor is on. Rows count from 0.
#pragma once

#include <algorithm>
#include <cstdint>

namespace viewer {

class RowPosition {
public:
  /// How many rows there are, and how many are completely visible.
  void resize(uint32_t rows, uint32_t whole) {
    rows_ = rows;
    whole_ = std::max(1U, whole);
    cursor_ = std::min(cursor_, lastRow());
    scrollTo(first_);
  }
  uint32_t rows() const { return rows_; }
  uint32_t first() const { return first_; } ///< the upper one that is visible
  uint32_t end() const { return std::min(rows_, first_ + whole_); }
  uint32_t whole() const { return whole_; }
  uint32_t cursor() const { return cursor_; }
  /// Whether a row is completely visible.
  bool shows(uint32_t row) const { return row >= first_ && row < end(); }

  void scrollTo(int64_t row) {
    first_ = static_cast<uint32_t>(std::clamp<int64_t>(row, 0, std::max<int64_t>(0, int64_t{rows_} - whole_)));
  }
  /// Moves the cursor and scrolls as little as keeps it visible.
  void moveCursor(int64_t row) {
    cursor_ = static_cast<uint32_t>(std::clamp<int64_t>(row, 0, lastRow()));
    scrollTo(std::clamp<int64_t>(first_, int64_t{cursor_} - whole_ + 1, cursor_));
  }
  /// Moves the cursor to a row, which is shown in the middle if it was not visible.
  void goTo(uint32_t row) {
    cursor_ = std::min(row, lastRow());
    if (cursor_ < first_ || cursor_ >= first_ + whole_) scrollTo(int64_t{cursor_} - whole_ / 2);
  }

private:
  uint32_t lastRow() const { return std::max(1U, rows_) - 1; }
  uint32_t rows_ = 0, whole_ = 1, first_ = 0, cursor_ = 0;
};

} // namespace viewer
