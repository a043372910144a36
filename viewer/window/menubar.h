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
  void fill();
  ::Widget widget() const { return bar_; }
  /// Brings everything up to date.
  void update();

private:
  ::Widget addMenu(const std::string &name);
  void showAccelerator(::Widget entry) const;
  void updatePlugins();
  void updateDocuments();

  MainWindow &window_;
  ::Widget bar_;
  std::map<std::string, ::Widget> menus_;
  std::map<std::string, ::Widget> entries_; ///< by the names of actions
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
