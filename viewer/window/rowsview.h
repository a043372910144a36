// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The rows of a plug-in's list, with a scroll bar. They are painted, not widgets: there may be a hundred thousand of
// them. The current row stays visible. A click on a row, or Return, goes there; Escape gives the keyboard to the page.
// Over 200 lines with its source: scroll bar, pointer, keys and painting of one widget, whose state RowPosition has.
#pragma once

#include <Xm/Xm.h>

#include <optional>

#include "viewer/model/rowposition.h"
#include "viewer/model/state.h"
#include "viewer/window/rowpainter.h"
#include "viewer/window/rowskeys.h"

namespace viewer {

class RowsView final : RowsKeys {
public:
  RowsView(MainWindow &window, ::Widget parent, ::Widget label);
  ~RowsView() override;
  RowsView(const RowsView &) = delete;
  RowsView &operator=(const RowsView &) = delete;

  const RowPainter &painter() const { return painter_; }
  static int barWidth(const MainWindow &window);
  /// Gives the widgets their position and size in their parent.
  void put(const Place &place);
  /// Gives the rows the keyboard.
  void focus();
  /// Brings the rows up to date. Texts that take long are shown a little later.
  void update();
  void addTo(PanelState &state) const;

private:
  uint32_t count() const;
  void layOut();
  void resize();
  void scrollTo(int64_t row);
  void follow();
  void show();
  void fill();
  void paint();
  void press(const XButtonEvent &event);
  void moveCursor(int64_t row);
  void act(const std::string &what) override;
  void choose(uint32_t row);

  MainWindow &window_;
  ::Widget rows_, bar_;
  RowPainter painter_;
  Place place_{};
  uint64_t list_ = 0; ///< the number of the one shown
  std::optional<uint32_t> current_;
  RowPosition position_; ///< Return chooses the row of its cursor
  XtIntervalId timer_ = 0;
  size_t paints_ = 0;
};

} // namespace viewer
