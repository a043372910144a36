// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Creates the viewer and runs it. A thread opens the file while the toolkit and the plug-ins start.
#include "viewer/window/view.h"

#include <poll.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "host/view/desktop.h"
#include "host/view/tables.h"
#include "viewer/model/session.h"
#include "viewer/window/collector.h"
#include "viewer/window/embedding.h"
#include "viewer/window/environment.h"
#include "viewer/window/failures.h"
#include "viewer/window/fontsahead.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"
#include "viewer/window/testsocket.h"

namespace viewer {
namespace {

// Waits up to 100 ms for the first document, so that its page is drawn while the window is created. A document that
// takes longer is shown later.
void awaitDocument(Session &session) {
  constexpr int timeout = 100; // milliseconds
  pollfd ready{session.descriptor(), POLLIN, 0};
  if (!session.opener.opening() || poll(&ready, 1, timeout) <= 0) return;
  session.arrivals.collect();
  session.screen.draw(); // asks for the page
}

// Creates the window at its first use, which may be a question of a plug-in or for a password, before all else is
// ready.
class Windows : public Questions {
public:
  Windows(Toolkit &toolkit, Session &session, host::Application &app, const host::PluginLoader &plugins,
          const ViewOptions &options)
      : toolkit_(toolkit), session_(session), app_(app), plugins_(plugins), options_(options) {
    session_.opener.questions = this;
    app_.alert = [this](const host::Alert &asked) { return get().alert(asked); };
  }
  ~Windows() override {
    session_.opener.questions = nullptr;
    app_.alert = host::answerAlerts(false);
  }
  Windows(const Windows &) = delete;
  Windows &operator=(const Windows &) = delete;

  void askPassword(const Target &target, bool again, const Answer &answer) override {
    get().askPassword(target, again, answer);
  }

  /// The window, on the screen.
  MainWindow &get() {
    if (window_) return *window_;
    window_ = std::make_unique<MainWindow>(toolkit_, session_.model(), app_, plugins_);
    window_->realize();
    if (!options_.into.empty()) embedding_ = std::make_unique<Embedding>(toolkit_, *window_, options_.into);
    if (!options_.testSocket.empty()) {
      socket_ = std::make_unique<TestSocket>(*window_, options_.testSocket);
      window_->watcher = [this] { socket_->notify(); };
    }
    window_->map();
    return *window_;
  }

private:
  Toolkit &toolkit_;
  Session &session_;
  host::Application &app_;
  const host::PluginLoader &plugins_;
  const ViewOptions &options_;
  std::unique_ptr<MainWindow> window_;
  std::unique_ptr<Embedding> embedding_;
  std::unique_ptr<TestSocket> socket_;
};

// Closes all documents before the plug-ins are unloaded, however the viewer ends.
struct Closing {
  Session &session;
  ~Closing() { session.documents.closeAll(); }
};

ViewEnd run(const ViewOptions &options) {
  prepareEnvironment();
  if (!options.into.empty()) setenv("TAVREL_PLUGIN_PARENTLESS_ROOT", "1", 0);
  FontsAhead fonts;
  host::Runtime runtime;
  host::Application app(runtime);
  host::addHostTables(runtime);
  app.toolBar()->embedded = !options.into.empty();
  Session session(app, options.processes);
  Failures failures(session.status);
  for (const std::string &reason : options.refused)
    session.status.report(reason);
  session.opener.openAll(options.documents, options.password);
  Toolkit toolkit(options.toolkit);
  session.documents.screenDpi = toolkit.dpi();
  // The final width, or the page would have to be drawn again. Half of the height, because the final one is not known
  // yet: what a plug-in scrolls to the middle stays visible there when the window becomes higher.
  const Toolkit::Size size = toolkit.windowSize();
  session.moving.setWindow(PageArea::windowWidth(toolkit, size.width), size.height / 2, PageArea::margin(toolkit));
  session.drawAhead(); // while the plug-ins start
  host::WindowSystem windowSystem(toolkit.shell());
  host::PluginLoader plugins(runtime);
  const Closing closing{session};
  plugins.load(host::pluginDirectories(options.pluginsDirectory));
  app.toolBar()->updateStates(); // an alert may be shown before the event loop updates them

  Windows windows(toolkit, session, app, plugins, options);
  awaitDocument(session);
  fonts.await();
  MainWindow &window = windows.get();
  if (!options.note.empty()) {
    window.awaitPosition();
    window.informations().show("Tavrel", options.note);
  }
  const bool requested = !options.documents.empty() || !options.refused.empty(), embedded = !options.into.empty();
  bool had = false;
  {
    Collector collector(toolkit.context(), session.descriptor(), session.arrivals, app);
    window.loop([&] {
      collector.collectMissed();
      had |= session.documents.front() != nullptr || session.opener.asksPassword();
      if (!had && !embedded && !session.opener.opening()) failures.show(window);
      return false;
    });
  }
  window.watcher = {};
  const bool failed = requested && !had && !embedded && !session.opener.opening();
  return failed ? ViewEnd::noDocument : ViewEnd::closed;
}

} // namespace

ViewEnd view(const ViewOptions &options) {
  try {
    return run(options);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "tavrel: %s\n", error.what());
    return ViewEnd::hostFailure;
  }
}

} // namespace viewer
