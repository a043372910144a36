// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The find dialog: text, options and outcome. It stays open during the search.
#pragma once

#include <Xm/Xm.h>

#include <string>
#include <tuple>

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
  FindRequest request() const; ///< what the dialog asks for
  void moveAside();

  MainWindow &window_;
  ::Widget form_ = nullptr, field_ = nullptr, case_ = nullptr, words_ = nullptr, message_ = nullptr, count_ = nullptr;
  std::string shownMessage_, shownCount_;
  std::tuple<const void *, int32_t, size_t> uncovered_; ///< the match: its document, page and number
};

} // namespace viewer
