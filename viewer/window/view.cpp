// Puts the viewer together and runs it. The file is opened by a thread while the toolkit and the plug-ins start.
#include "viewer/window/view.h"

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
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"
#include "viewer/window/testsocket.h"

namespace viewer {
namespace {

// Wakes the event loop from another thread.
class Bell {
public:
  Bell() {
    if (pipe2(ends_, O_CLOEXEC | O_NONBLOCK) != 0) throw host::HostError(tavrel::errGeneric, "no pipe can be made");
  }
  ~Bell() {
    close(ends_[0]);
    close(ends_[1]);
  }
  Bell(const Bell &) = delete;
  Bell &operator=(const Bell &) = delete;

  int end() const { return ends_[0]; }
  void ring() const {
    const char byte = 0;
    if (write(ends_[1], &byte, 1) < 0) return; // full: it rings already
  }
  void silence() const {
    char bytes[64];
    while (read(ends_[0], bytes, sizeof bytes) > 0) {
    }
  }

private:
  int ends_[2];
};

struct Collector {
  Bell &bell;
  Session &session;
  host::Application &app;
  bool missed = false; ///< it rang while a plug-in waited for an answer

  // Documents do not come and go while a plug-in is being called.
  void collect() {
    missed = app.calling();
    if (!missed) guarded([this] { session.collect(); });
  }
};

void collectResults(XtPointer data, int * /*source*/, XtInputId * /*id*/) {
  auto &collector = *static_cast<Collector *>(data);
  collector.bell.silence();
  collector.collect();
}

// Fonts are looked up while everything else starts: reading their configuration takes as long as opening a document.
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

// Waits a little for the first document, so that its page is rendered while the window is being made. A document that
// takes longer arrives later.
void awaitDocument(const Bell &bell, Session &session) {
  constexpr int timeout = 100; // milliseconds
  pollfd ready{bell.end(), POLLIN, 0};
  if (!session.opening() || poll(&ready, 1, timeout) <= 0) return;
  bell.silence();
  session.collect();
  session.draw(); // asks for the page
}

// The window, made when it is wanted: a plug-in or a document may ask something before it would be time.
class Windows : public Questions {
public:
  Windows(Toolkit &toolkit, Session &session, host::Application &app, const host::PluginLoader &plugins,
          const ViewOptions &options)
      : toolkit_(toolkit), session_(session), app_(app), plugins_(plugins), options_(options) {
    session_.questions = this;
    app_.alert = [this](const host::Alert &asked) { return get().alert(asked); };
  }
  ~Windows() override {
    session_.questions = nullptr;
    app_.alert = host::answerAlerts(false);
  }
  Windows(const Windows &) = delete;
  Windows &operator=(const Windows &) = delete;

  void askPassword(const Target &target, bool again) override { get().askPassword(target, again); }

  /// On the screen.
  MainWindow &get() {
    if (window_) return *window_;
    window_ = std::make_unique<MainWindow>(toolkit_, session_, app_, plugins_);
    window_->realize();
    if (!options_.into.empty()) embedding_ = std::make_unique<Embedding>(toolkit_, *window_, options_.into);
    if (!options_.testSocket.empty()) {
      socket_ = std::make_unique<TestSocket>(*window_, options_.testSocket);
      window_->watcher = [this] { socket_->tell(); };
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

// Ends the session before the plug-ins go, whichever way the viewer ends.
struct Closing {
  Session &session;
  ~Closing() { session.closeAll(); }
};

ViewEnd run(const ViewOptions &options) {
  // Before there are threads, which read the environment and the locale.
  Toolkit::prepare();
  if (!options.into.empty()) setenv("TAVREL_PLUGIN_PARENTLESS_ROOT", "1", 0);
  Bell bell; // the threads ring it to their end
  FontsAhead fonts;
  host::Runtime runtime;
  host::Application app(runtime);
  host::addHostTables(runtime);
  app.toolBar()->embedded = !options.into.empty();
  Session session(app, [&bell] { bell.ring(); });
  for (size_t i = 0; i < options.documents.size(); ++i) {
    Target target = targetOf(options.documents[i]);
    if (i == 0 && !options.hits.empty()) addParameter(target, "xml", std::filesystem::absolute(options.hits));
    session.open(target, options.password);
  }
  Toolkit toolkit(options.toolkit);
  session.setScreenDpi(toolkit.dpi());
  host::WindowSystem windowSystem(toolkit.shell());
  host::PluginLoader plugins(runtime);
  const Closing closing{session};
  plugins.load(host::pluginDirectories(options.pluginsDirectory));
  app.toolBar()->updateStates(); // a question may come up before anything else asks the buttons

  // As wide as it is going to be, or the page would have to be rendered again. Only half as high, because nobody knows
  // yet: what a plug-in brings into the middle of that is in sight, and in the middle, when the window is higher.
  const Toolkit::Size size = toolkit.windowSize();
  session.setWindow(PageArea::windowWidth(toolkit, size.width), size.height / 2, PageArea::margin(toolkit));
  Windows windows(toolkit, session, app, plugins, options);
  awaitDocument(bell, session);
  fonts.await();
  MainWindow &window = windows.get();
  if (!options.note.empty()) window.dialogs().tell("Tavrel", options.note);
  Collector collector{bell, session, app};
  const XtInputId input = XtAppAddInput(toolkit.context(), bell.end(), reinterpret_cast<XtPointer>(XtInputReadMask),
                                        collectResults, &collector);
  // Without a document and without hope of one there is nothing to show, but inside another program's window.
  const bool staysEmpty = options.documents.empty() || !options.into.empty();
  bool hopeless = false, had = false;
  window.loop([&] {
    if (collector.missed) collector.collect();
    had |= session.front() != nullptr || session.asksPassword();
    return hopeless = !staysEmpty && !had && !session.opening();
  });
  XtRemoveInput(input);
  window.watcher = {};
  const ViewEnd end = hopeless ? ViewEnd::noDocument : ViewEnd::closed;
  session.closeAll();
  constexpr auto timeout = std::chrono::milliseconds(300);
  if (!session.finish(timeout) && options.leave) {
    plugins.unload();
    options.leave(end); // a page that takes minutes is not waited for
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
