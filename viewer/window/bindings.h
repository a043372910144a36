// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Connects a window's commands with the toolkit's action procedures, which translations name, and with the
// application's buttons on the tool bar.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/view/toolbar.h"

namespace viewer {

class MainWindow;

class Bindings {
public:
  explicit Bindings(MainWindow &window);
  ~Bindings();
  Bindings(const Bindings &) = delete;
  Bindings &operator=(const Bindings &) = delete;

  /// Adds the keys of commands to the tips of their buttons; to be called once.
  /// @param keyOf gives a command's key; empty: none
  void addKeysToTips(const std::function<std::string(const std::string &command)> &keyOf);

private:
  MainWindow &window_;
  std::vector<host::ToolButton *> buttons_; ///< their actions refer to the window
};

} // namespace viewer
