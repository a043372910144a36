// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The tool bar's widgets: the buttons of the host's model, in its order, with the page field after the buttons that
// turn pages.
#pragma once

#include <Xm/Xm.h>

#include <map>
#include <string>
#include <vector>

#include "host/view/toolbar.h"
#include "viewer/window/icons.h"
#include "viewer/window/pagefield.h"

namespace viewer {

class MainWindow;

class ToolBarView {
public:
  ToolBarView(MainWindow &window, ::Widget parent);
  ::Widget widget() const { return bar_; }
  ::Widget pageField() const { return pageField_.widget(); }
  /// Brings everything up to date.
  void update();
  /// Replaces what has been typed by the page's number.
  void restorePage() { pageField_.restore(); }

  struct Button {
    host::ToolButton *model;
    std::string name;
    ::Widget widget;
    std::string tip;
    bool enabled; ///< as it is shown
  };
  const std::vector<Button> &buttons() const { return buttons_; }

private:
  void rebuild(const std::vector<host::ToolButton *> &order);
  void addButton(host::ToolButton *model);
  void addGap();

  MainWindow &window_;
  PageField pageField_;
  ::Widget bar_;
  std::unique_ptr<Icons> icons_;
  std::vector<Button> buttons_;
  std::vector<::Widget> others_;
};

} // namespace viewer
