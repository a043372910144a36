// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The lines that a command prints for its pages, and, on a terminal, a progress bar below them.
#pragma once

#include <cstdio>
#include <string>

namespace tools {

class Progress {
public:
  explicit Progress(FILE *stream);
  ~Progress(); ///< removes the bar
  Progress(const Progress &) = delete;
  Progress &operator=(const Progress &) = delete;

  /// Prints a line.
  void print(const std::string &line);
  /// Moves the bar to done of total; does nothing if the stream is not a terminal.
  void show(int done, int total);
  /// Removes the bar, so that other output can follow.
  void clear();

private:
  FILE *stream_;
  bool terminal_;
  bool shown_ = false;
};

} // namespace tools
