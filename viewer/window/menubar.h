// The menu bar: the actions in their menus, plug-ins' buttons in one of their own, the open documents in another.
#pragma once

#include <Xm/Xm.h>

#include <map>
#include <string>
#include <vector>

#include "host/view/toolbar.h"

namespace viewer {

class MainWindow;

class MenuBar {
public:
  /// With empty menus: filling them takes a while, and nobody opens one before there is a page.
  MenuBar(MainWindow &window, ::Widget parent);
  bool fill(); ///< false where they are filled already
  ::Widget widget() const { return bar_; }
  /// How the key of an action is written; empty where it has none, or before the menus are filled.
  std::string keyOf(const std::string &action) const;
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
    std::string label;
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
