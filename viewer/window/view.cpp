// Puts the viewer together and runs it. The file is opened by a thread while the toolkit and the plug-ins start.
#include "viewer/window/view.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "host/view/desktop.h"
#include "viewer/window/embedding.h"
#include "viewer/window/mainwindow.h"
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
};

void collectResults(XtPointer data, int * /*source*/, XtInputId * /*id*/) {
  const auto &collector = *static_cast<Collector *>(data);
  if (collector.app.calling()) { // a plug-in waits for an answer: documents do not come and go meanwhile
    usleep(1000);
    return;
  }
  collector.bell.silence();
  collector.session.collect();
}

ViewEnd run(const ViewOptions &options) {
  Bell bell; // the threads ring it to their end
  host::Runtime runtime;
  Toolkit toolkit(options.toolkit);
  host::WindowSystem windows(toolkit.shell());
  host::Application app(runtime);
  host::addHostTables(runtime);
  host::PluginLoader plugins(runtime);
  Session session(runtime, app, toolkit.dpi(), [&bell] { bell.ring(); });
  for (size_t i = 0; i < options.documents.size(); ++i) {
    Target target = targetOf(options.documents[i]);
    if (i == 0 && !options.hits.empty()) addParameter(target, "xml", std::filesystem::absolute(options.hits));
    session.open(target, options.password);
  }
  if (!options.into.empty()) setenv("TAVREL_PLUGIN_PARENTLESS_ROOT", "1", 0);
  plugins.load(host::pluginDirectories(options.pluginsDirectory));

  MainWindow window(toolkit, session, app, plugins);
  window.realize();
  std::unique_ptr<Embedding> embedding;
  if (!options.into.empty()) embedding = std::make_unique<Embedding>(toolkit, window, options.into);
  std::unique_ptr<TestSocket> socket;
  if (!options.testSocket.empty()) {
    socket = std::make_unique<TestSocket>(window, options.testSocket);
    window.watcher = [&] { socket->tell(); };
  }
  Collector collector{bell, session, app};
  const XtInputId input = XtAppAddInput(toolkit.context(), bell.end(), reinterpret_cast<XtPointer>(XtInputReadMask),
                                        collectResults, &collector);
  window.map();
  // Without a document and without hope of one there is nothing to show, but inside another program's window.
  const bool staysEmpty = options.documents.empty() || !options.into.empty();
  bool had = false;
  window.loop([&] {
    had |= session.front() != nullptr || session.asksPassword();
    return !staysEmpty && !had && !session.opening();
  });
  XtRemoveInput(input);
  window.watcher = {};
  const bool nothing = !staysEmpty && !had;
  embedding.reset();
  return nothing ? ViewEnd::noDocument : ViewEnd::closed;
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
