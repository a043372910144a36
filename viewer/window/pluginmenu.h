// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The menu of the plug-ins' buttons. An entry has the button's label, and its key unless a user's resources give it
// another one.
#pragma once

#include <Xm/Xm.h>

#include <set>
#include <string>
#include <vector>

#include "host/view/toolbar.h"

namespace viewer {

class MainWindow;

/// A key as users read it, and what it does.
struct KeyOfButton {
  std::string key, label;
};

class PluginMenu {
public:
  /// `taken` are the keys that buttons cannot have.
  PluginMenu(MainWindow &window, ::Widget menu, std::set<std::string> taken);
  /// Brings the entries up to date.
  void update();
  std::vector<KeyOfButton> keys() const;

private:
  struct Entry {
    host::ToolButton *button;
    std::string label, key; ///< the button's
    ::Widget widget;
    std::string shownKey; ///< as users read it
  };
  static bool isShown(const host::ToolButton *button, const Entry &entry);
  void add(host::ToolButton *button);
  std::string attachKey(::Widget entry, const std::string &key) const;

  MainWindow &window_;
  ::Widget menu_, none_;
  std::set<std::string> taken_;
  std::vector<Entry> entries_;
};

} // namespace viewer
