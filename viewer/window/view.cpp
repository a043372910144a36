// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Creates the viewer and runs it. A thread opens the file while the toolkit and the plug-ins start.
#include "viewer/window/view.h"
#include "viewer/model/session.h"

#include <fcntl.h>
#include <fontconfig/fontconfig.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>

#include "host/view/desktop.h"
#include "viewer/window/embedding.h"
#include "viewer/window/failures.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"
#include "viewer/window/testsocket.h"

namespace viewer {
namespace {

// Wakes the event loop from another thread.
class Waker {
public:
  Waker() {
    if (pipe2(ends_, O_CLOEXEC | O_NONBLOCK) != 0) throw host::HostError(tavrel::errGeneric, "no pipe can be made");
  }
  ~Waker() {
    close(ends_[0]);
    close(ends_[1]);
  }
  Waker(const Waker &) = delete;
  Waker &operator=(const Waker &) = delete;

  int end() const { return ends_[0]; }
  void wake() const {
    const char byte = 0;
    if (write(ends_[1], &byte, 1) < 0) return; // full: a wake-up is pending
  }
  void clear() const {
    char bytes[64];
    while (read(ends_[0], bytes, sizeof bytes) > 0) {
    }
  }

private:
  int ends_[2];
};

struct Collector {
  Waker &waker;
  Session &session;
  host::Application &app;
  bool missed = false; ///< there was a wake-up during a call of a plug-in

  // Documents are not opened or closed during a call of a plug-in.
  void collect() {
    missed = app.calling();
    if (!missed) guarded([this] { session.arrivals.collect(); });
  }
};

void collectResults(XtPointer data, int * /*source*/, XtInputId * /*id*/) {
  auto &collector = *static_cast<Collector *>(data);
  collector.waker.clear();
  collector.collect();
}

// Looks up fonts while everything else starts: reading their configuration takes as long as opening a document.
class FontsAhead {
public:
  FontsAhead()
      : thread_([] {
          FcPattern *pattern = FcNameParse(reinterpret_cast<const FcChar8 *>("DejaVu Sans-10"));
          FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
          FcDefaultSubstitute(pattern);
          FcResult result = FcResultNoMatch;
          if (FcPattern *match = FcFontMatch(nullptr, pattern, &result)) FcPatternDestroy(match);
          FcPatternDestroy(pattern);
        }) {}
  ~FontsAhead() { await(); }
  FontsAhead(const FontsAhead &) = delete;
  FontsAhead &operator=(const FontsAhead &) = delete;
  void await() {
    if (thread_.joinable()) thread_.join();
  }

private:
  std::thread thread_;
};

// Waits up to 100 ms for the first document, so that its page is rendered while the window is created. A document that
// takes longer is shown later.
void awaitDocument(const Waker &waker, Session &session) {
  constexpr int timeout = 100; // milliseconds
  pollfd ready{waker.end(), POLLIN, 0};
  if (!session.documents.opening() || poll(&ready, 1, timeout) <= 0) return;
  waker.clear();
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
    session_.documents.questions = this;
    app_.alert = [this](const host::Alert &asked) { return get().alert(asked); };
  }
  ~Windows() override {
    session_.documents.questions = nullptr;
    app_.alert = host::answerAlerts(false);
  }
  Windows(const Windows &) = delete;
  Windows &operator=(const Windows &) = delete;

  void askPassword(const Target &target, bool again) override { get().askPassword(target, again); }

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
  // Before threads are started, which read the environment and the locale.
  Toolkit::prepare();
  if (!options.into.empty()) setenv("TAVREL_PLUGIN_PARENTLESS_ROOT", "1", 0);
  Waker waker; // outlives the threads, which use it
  FontsAhead fonts;
  host::Runtime runtime;
  host::Application app(runtime);
  host::addHostTables(runtime);
  app.toolBar()->embedded = !options.into.empty();
  Session session(app, [&waker] { waker.wake(); });
  Failures failures(session.status);
  for (const std::string &reason : options.refused)
    session.status.report(reason);
  for (size_t i = 0; i < options.documents.size(); ++i) {
    Target target = options.documents[i];
    if (i == 0 && !options.hits.empty()) addParameter(target, "xml", std::filesystem::absolute(options.hits));
    session.documents.open(target, options.password);
  }
  Toolkit toolkit(options.toolkit);
  session.documents.screenDpi = toolkit.dpi();
  host::WindowSystem windowSystem(toolkit.shell());
  host::PluginLoader plugins(runtime);
  const Closing closing{session};
  plugins.load(host::pluginDirectories(options.pluginsDirectory));
  app.toolBar()->updateStates(); // an alert may be shown before the event loop updates them

  // The final width, or the page would have to be rendered again. Half of the height, because the
  // final one is not known yet: what a plug-in scrolls to the middle stays visible there when the window becomes
  // higher.
  const Toolkit::Size size = toolkit.windowSize();
  session.moving.setWindow(PageArea::windowWidth(toolkit, size.width), size.height / 2, PageArea::margin(toolkit));
  Windows windows(toolkit, session, app, plugins, options);
  awaitDocument(waker, session);
  fonts.await();
  MainWindow &window = windows.get();
  if (!options.note.empty()) window.informations().show("Tavrel", options.note);
  Collector collector{waker, session, app};
  const XtInputId input = XtAppAddInput(toolkit.context(), waker.end(), reinterpret_cast<XtPointer>(XtInputReadMask),
                                        collectResults, &collector);
  const bool requested = !options.documents.empty() || !options.refused.empty(), embedded = !options.into.empty();
  bool had = false;
  window.loop([&] {
    if (collector.missed) collector.collect();
    had |= session.documents.front() != nullptr || session.documents.asksPassword();
    if (!had && !embedded && !session.documents.opening()) failures.show(window.informations());
    return false;
  });
  XtRemoveInput(input);
  window.watcher = {};
  const bool failed = requested && !had && !embedded && !session.documents.opening();
  const ViewEnd end = failed ? ViewEnd::noDocument : ViewEnd::closed;
  session.documents.closeAll();
  constexpr auto timeout = std::chrono::milliseconds(300);
  if (!session.finish(timeout) && options.leave) {
    plugins.unload();
    options.leave(end); // does not wait for a page that takes minutes
  }
  return end;
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
