// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The find dialog: text, options and outcome. It stays open during the search.
#pragma once

#include <Xm/Xm.h>

#include <string>

#include "viewer/model/model.h"

namespace viewer {

class MainWindow;

class FindDialog {
public:
  explicit FindDialog(MainWindow &window) : window_(window) {}
  FindDialog(const FindDialog &) = delete;
  FindDialog &operator=(const FindDialog &) = delete;

  void open();
  void close();
  /// Brings the message up to date.
  void update();
  /// Searches for the dialog's text.
  void find(bool backwards);

private:
  void build();

  MainWindow &window_;
  ::Widget form_ = nullptr, field_ = nullptr, case_ = nullptr, words_ = nullptr, message_ = nullptr;
  std::string shownMessage_;
};

} // namespace viewer
