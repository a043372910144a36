// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The menu bar: the actions in their menus, a menu of the plug-ins' buttons, and a menu of the open documents.
#pragma once

#include <Xm/Xm.h>

#include <map>
#include <string>
#include <vector>

#include "host/view/toolbar.h"

namespace viewer {

class MainWindow;

/// A key as users read it, and what it does.
struct KeyOfButton {
  std::string key, label;
};

class MenuBar {
public:
  /// Creates empty menus: filling them takes time and can wait until the first page is shown.
  MenuBar(MainWindow &window, ::Widget parent);
  bool fill(); ///< false if they are filled already
  ::Widget widget() const { return bar_; }
  /// The text of an action's key; empty if it has none or the menus are not filled yet.
  std::string keyOf(const std::string &action) const;
  /// The keys of the plug-ins' buttons, and what they do.
  std::vector<KeyOfButton> pluginKeys() const;
  /// Brings everything up to date.
  void update();

private:
  ::Widget addMenu(const std::string &name);
  static std::string showAccelerator(::Widget entry);
  void updatePlugins();
  void updateDocuments();

  MainWindow &window_;
  ::Widget bar_;
  std::map<std::string, ::Widget> menus_;
  std::map<std::string, ::Widget> entries_; ///< by the names of actions
  std::map<std::string, std::string> keys_; ///< likewise
  struct PluginEntry {
    host::ToolButton *button;
    std::string label, tip, key;
    ::Widget widget;
  };
  std::vector<PluginEntry> plugins_;
  struct DocumentEntry {
    std::string label;
    ::Widget widget;
  };
  std::vector<DocumentEntry> documents_;
  ::Widget noPlugins_ = nullptr, noDocuments_ = nullptr;
};

} // namespace viewer
