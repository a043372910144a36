// The window: menu bar, tool bar, page area, status line, and the dialogs. Shows what the session has, and calls its
// deeds.
#pragma once

#include <Xm/Xm.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "host/kernel/loader.h"
#include "viewer/model/session.h"
#include "viewer/window/dialogs.h"
#include "viewer/window/finddialog.h"
#include "viewer/window/icons.h"
#include "viewer/window/menubar.h"
#include "viewer/window/pagearea.h"
#include "viewer/window/toolbarview.h"
#include "viewer/window/toolkit.h"

namespace viewer {

struct Action;

class MainWindow {
public:
  MainWindow(Toolkit &toolkit, Session &session, host::Application &app, const host::PluginLoader &plugins);
  ~MainWindow();
  MainWindow(const MainWindow &) = delete;
  MainWindow &operator=(const MainWindow &) = delete;

  /// Makes the X windows; they are not on the screen yet.
  void realize();
  /// Puts them there.
  void map();

  Session &session() { return session_; }
  const Session &session() const { return session_; }
  host::Application &app() { return app_; }
  Toolkit &toolkit() { return toolkit_; }
  int pixels(double length) const { return toolkit_.pixels(length); }
  Dialogs &dialogs() { return *dialogs_; }
  FindDialog &findDialog() { return *findDialog_; }
  PageArea &pageArea() { return *pageArea_; }
  ToolBarView &toolBarView() { return *toolBar_; }
  MenuBar &menuBar() { return *menuBar_; }
  const std::string &statusText() const { return statusText_; }

  // What actions do besides the session's deeds.
  void askForFile();
  void askForText();
  void askForPage();
  void findAgain(bool backwards);
  void escape();
  void showKeys();
  void showPlugins();
  void showAbout();
  void quit() { quits_ = true; }
  void focusPage();
  void run(const Action &action);
  void press(host::ToolButton &button, const XEvent *event);

  void askPassword(const Target &target, bool again);
  /// For plug-ins: shows an alert and waits for the answer.
  int32_t alert(const host::Alert &alert);

  /// Handles events until somebody quits or `until` says so.
  void loop(const std::function<bool()> &until);
  bool quits() const { return quits_; }
  /// Called after every turn that may have changed something, by whoever watches (tests).
  std::function<void()> watcher;
  /// Draws and shows whatever has changed. Every turn of the loop ends with it.
  void turn();
  /// How many pages with marks have been painted so far.
  size_t marksShown() const { return marks_; }
  /// The longest turn so far, in milliseconds, from waking up to waiting again.
  double longestTurn() const { return longestTurn_; }

private:
  void build();
  void fillMenus();
  void show();
  void showStatus();
  void showTitle();
  void watchWaiting();

  Toolkit &toolkit_;
  Session &session_;
  host::Application &app_;
  const host::PluginLoader &plugins_;
  ::Widget form_ = nullptr, status_ = nullptr, pluginStatus_ = nullptr;
  std::unique_ptr<MenuBar> menuBar_;
  std::unique_ptr<ToolBarView> toolBar_;
  std::unique_ptr<PageArea> pageArea_;
  std::unique_ptr<Dialogs> dialogs_;
  std::unique_ptr<FindDialog> findDialog_;
  std::string statusText_, pluginText_, title_;
  std::vector<host::ToolButton *> own_; ///< with lambdas into this window
  uint64_t shownChanges_ = 0;
  size_t marks_ = 0;
  double longestTurn_ = 0;
  XtIntervalId waitingTimer_ = 0, redrawTimer_ = 0;
  bool quits_ = false;
};

} // namespace viewer
