// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Paints the rows of a list: a page's number, and a text in which a part is emphasised. A text that is too wide ends
// with an ellipsis.
#pragma once

#include <Xm/Xm.h>

#include <string>

#include "host/view/lists.h"

namespace viewer {

class MainWindow;

/// How a row is marked.
struct RowMarks {
  bool current = false, cursor = false;
};

class RowPainter {
public:
  /// Paints on `rows` in its colours, with the fonts of `label`.
  RowPainter(MainWindow &window, ::Widget rows, ::Widget label);
  ~RowPainter();
  RowPainter(const RowPainter &) = delete;
  RowPainter &operator=(const RowPainter &) = delete;

  int rowHeight() const { return rowHeight_; }
  /// The width of so many digits.
  int digits(int count) const;
  /// A row that begins at y; without a text, which is being asked for, a note of that.
  void paint(const host::ListText *text, int y, const RowMarks &marks);

private:
  int widthOf(const std::string &text) const;
  void draw(const std::string &text, Pixel color, int x, int y);
  void fill(Pixel color, int x, int y, int width);
  void paintText(const host::ListText &text, int x, int y, int width);

  MainWindow &window_;
  ::Widget rows_;
  XmRenderTable fonts_ = nullptr;
  GC context_;
  Pixel background_ = 0, foreground_ = 0, currentColor_, markColor_, noteColor_;
  int rowHeight_, margin_;
};

} // namespace viewer
