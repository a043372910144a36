// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The window: menu bar, tool bar, page area, status line, and the dialogs. Shows the session's state and calls its
// operations.
#pragma once

#include <Xm/Xm.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "host/kernel/loader.h"
#include "viewer/model/commands.h"
#include "viewer/window/dialogs.h"
#include "viewer/window/finddialog.h"
#include "viewer/window/icons.h"
#include "viewer/window/keysdialog.h"
#include "viewer/window/menubar.h"
#include "viewer/window/pagearea.h"
#include "viewer/window/toolbarview.h"
#include "viewer/window/toolkit.h"

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
  Dialogs &dialogs() { return *dialogs_; }
  PageArea &pageArea() { return *pageArea_; }
  ToolBarView &toolBarView() { return *toolBar_; }

  void askForFile() override;
  void askForText() override;
  void askForPage() override;
  void leaveFields() override;
  void showKeys() override;
  void showPlugins() override;
  void showAbout() override;
  void quit() override { quits_ = true; }
  void focusPage();
  void run(const Command &command, const std::string &argument = {});
  void press(host::ToolButton &button, const XEvent *event);

  void askPassword(const Target &target, bool again);
  /// For plug-ins: shows an alert and returns its answer.
  int32_t alert(const host::Alert &alert);

  /// Handles events until quit() is called or `until` returns true.
  void loop(const std::function<bool()> &until);
  /// Called after each iteration of the event loop; used by tests.
  std::function<void()> watcher;
  /// Draws and shows what has changed. Each iteration of the event loop ends with it.
  void update();
  /// How many drawings with marks have been shown so far.
  size_t marksShown() const { return marks_; }
  /// The longest iteration of the event loop so far, in milliseconds, from waking up to waiting again.
  double longestIteration() const { return longestIteration_; }

private:
  void build();
  void fillMenus();
  void show();
  void showStatus();
  void showTitle();
  void watchWaiting();

  Toolkit &toolkit_;
  Model model_;
  host::Application &app_;
  const host::PluginLoader &plugins_;
  ::Widget form_ = nullptr, status_ = nullptr, pluginStatus_ = nullptr;
  std::unique_ptr<MenuBar> menuBar_;
  std::unique_ptr<ToolBarView> toolBar_;
  std::unique_ptr<PageArea> pageArea_;
  std::unique_ptr<Dialogs> dialogs_;
  std::unique_ptr<FindDialog> findDialog_;
  KeysDialog keysDialog_;
  std::string statusText_, pluginText_, title_;
  std::vector<host::ToolButton *> own_; ///< their actions refer to this window
  size_t marks_ = 0;
  double longestIteration_ = 0;
  XtIntervalId waitingTimer_ = 0, redrawTimer_ = 0;
  bool quits_ = false;
};

} // namespace viewer
