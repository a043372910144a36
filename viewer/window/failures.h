// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Collects why documents cannot be opened, for a dialog: a user who starts the viewer from a desktop does not see
// standard error.
#pragma once

#include <cstddef>
#include <string>

namespace viewer {

class MainWindow;
class StatusLine;

class Failures {
public:
  static constexpr size_t most = 10; ///< lines in the dialog

  /// Collects what is reported on the status line, until it is shown.
  explicit Failures(StatusLine &status);
  ~Failures();
  Failures(const Failures &) = delete;
  Failures &operator=(const Failures &) = delete;

  /// Shows them, if there are any; further calls show nothing.
  void show(MainWindow &window);

private:
  StatusLine &status_;
  std::string lines_;
  size_t count_ = 0;
};

} // namespace viewer
