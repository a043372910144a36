// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The window: owns its parts (shell, menu bar, tool bar, page area, list, status line, dialogs) and lays them out. Over
// 200 lines with its source because it implements all that commands (Frontend) and plug-ins need of a window, and
// gives the parts to each other; each of these is a few lines that call a part.
#pragma once

#include <Xm/Xm.h>

#include <memory>
#include <string>

#include "viewer/model/commands.h"
#include "viewer/window/bindings.h"
#include "viewer/window/eventloop.h"
#include "viewer/window/finddialog.h"
#include "viewer/window/help.h"
#include "viewer/window/listpanel.h"
#include "viewer/window/menubar.h"
#include "viewer/window/pagearea.h"
#include "viewer/window/refresh.h"
#include "viewer/window/statusbar.h"
#include "viewer/window/toolbarview.h"
#include "viewer/window/toolkit.h"
#include "viewer/window/windowshell.h"

namespace viewer {

class MainWindow final : public Frontend {
public:
  MainWindow(Toolkit &toolkit, const Model &model, host::Application &app, const host::PluginLoader &plugins);
  ~MainWindow() override;

  /// Creates the X windows without mapping them.
  void realize();
  /// Maps them.
  void map();

  const Model &model() const { return model_; }
  host::Application &app() { return app_; }
  Toolkit &toolkit() { return toolkit_; }
  int pixels(double length) const override { return toolkit_.pixels(length); }
  Informations &informations() { return help_.informations(); }
  PageArea &pageArea() { return *pageArea_; }
  ToolBarView &toolBarView() { return *toolBar_; }
  const ListPanel &listPanel() const { return *listPanel_; }

  void askForFile() override;
  void askForText() override;
  void askForPage() override;
  void leaveFields() override;
  void showKeys() override;
  void toggleSidePanel() override { listPanel_->toggle(); }
  void showPlugins() override { help_.showPlugins(); }
  void showAbout() override { help_.showAbout(); }
  void quit() override { loop_.quit(); }
  void focusPage();
  void run(const Command &command, const std::string &argument = {});
  void press(host::ToolButton &button, const XEvent *event);

  void askPassword(const Target &target, bool again, const Questions::Answer &answer);
  /// For plug-ins: shows an alert and returns its answer.
  int32_t alert(const host::Alert &alert);

  /// To be called before a dialog that may be the first: waits until the window has its position on the screen.
  void awaitPosition() { shell_.awaitPosition(); }

  /// Handles events until quit() is called or `until` returns true.
  void loop(const std::function<bool()> &until);
  /// Called after each iteration of the event loop; used by tests.
  std::function<void()> watcher;
  /// Draws and shows what has changed. Each iteration of the event loop ends with it.
  void update();
  const Refresh &refresh() const { return refresh_; }
  const EventLoop &eventLoop() const { return loop_; }
  /// What an empty page area says: how to open a document.
  std::string invitation() const;

private:
  void build();
  bool fillMenus();
  void show(uint32_t parts);

  Toolkit &toolkit_;
  Model model_;
  host::Application &app_;
  EventLoop loop_;
  Bindings bindings_;
  ::Widget form_ = nullptr;
  std::unique_ptr<MenuBar> menuBar_;
  std::unique_ptr<ToolBarView> toolBar_;
  std::unique_ptr<PageArea> pageArea_;
  std::unique_ptr<ListPanel> listPanel_;
  std::unique_ptr<StatusBar> statusBar_;
  std::unique_ptr<FindDialog> findDialog_;
  Help help_;
  WindowShell shell_;
  Refresh refresh_;
};

} // namespace viewer
