// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The field of the tool bar that has the page's number and takes another one, with the number of pages after it.
#pragma once

#include <Xm/Xm.h>

#include <array>
#include <string>

namespace viewer {

class MainWindow;

class PageField {
public:
  explicit PageField(MainWindow &window) : window_(window) {}

  /// Creates the widgets anew, the field and the number of pages. The earlier ones, if any, are being destroyed.
  std::array<::Widget, 2> create(::Widget bar);
  ::Widget widget() const { return field_; }
  /// Shows the page of the document in front.
  void update();
  /// The same, in place of what has been typed.
  void restore();

private:
  void take();

  MainWindow &window_;
  ::Widget field_ = nullptr, count_ = nullptr;
  std::string fieldText_, countText_; ///< what they show
};

} // namespace viewer
