// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The viewer's text on the status line. That of the plug-ins is host::Application::statusText.
#pragma once

#include <functional>
#include <string>

#include "viewer/model/changes.h"

namespace viewer {

class StatusLine {
public:
  explicit StatusLine(Changes &changes) : changes_(changes) {}

  const std::string &message() const { return message_; }
  void set(std::string line);
  /// Prints the line to standard error, too, unless it was the last one that was printed.
  void report(std::string line);
  /// Called with each line that is reported.
  std::function<void(const std::string &line)> listener;
  /// Removes the message if it is that line: another one stays.
  void remove(const std::string &line);

private:
  Changes &changes_;
  std::string message_;
  std::string printed_;
};

} // namespace viewer
