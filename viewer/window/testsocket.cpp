// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/testsocket.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "viewer/model/state.h"
#include "viewer/window/dialogstate.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

WindowState stateOf(MainWindow &window) {
  WindowState state;
  state.ticks = window.pageArea().ticks();
  state.area = placeOf(window.pageArea().page());
  state.page = window.pageArea().pagePlace();
  state.page.x += state.area.x;
  state.page.y += state.area.y;
  state.note = window.pageArea().noted();
  state.marksShown = window.refresh().marksShown();
  state.longestIteration = window.eventLoop().longestIteration();
  for (const ToolBarView::Button &button : window.toolBarView().buttons())
    state.buttons.push_back({button.name, button.tip, button.enabled, placeOf(button.widget)});
  state.panel = window.listPanel().state();
  ::Widget field = window.toolBarView().pageField();
  state.pageField = {XtName(field), textOf(field), placeOf(field)};
  state.dialogs = dialogsBelow(window.toolkit().shell());
  return state;
}

} // namespace

TestSocket::TestSocket(MainWindow &window, const std::filesystem::path &path)
    : window_(window), socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  if (socket_ < 0 || connect(socket_, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
    throw host::HostError(tavrel::errGeneric, path.string() + ": " + std::strerror(errno));
}

TestSocket::~TestSocket() {
  if (waiting_ != 0) XtRemoveInput(waiting_);
  close(socket_);
}

void TestSocket::notify() {
  constexpr size_t most = size_t{16} * 1024 * 1024;   // bytes that wait for a slow reader
  if (waiting_ != 0 && unsent_.size() > most) return; // it gets the latest state once it has read these
  WindowState window = stateOf(window_);
  const double longestIteration = window.longestIteration;
  window.longestIteration = 0; // alone it is no change
  std::string state = viewer::stateOf(window_.model(), window_.app().statusText(), window);
  if (state == last_) return;
  last_ = std::move(state);
  window.longestIteration = longestIteration;
  unsent_ += viewer::stateOf(window_.model(), window_.app().statusText(), window) + "\n";
  send();
}

// Sends what the socket takes, and the rest when it takes more: the window never waits for a reader.
void TestSocket::send() {
  size_t sent = 0;
  while (sent < unsent_.size()) {
    const ssize_t count = ::send(socket_, unsent_.data() + sent, unsent_.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno != EAGAIN) sent = unsent_.size(); // the test has ended
    if (count <= 0) break;
    sent += static_cast<size_t>(count);
  }
  unsent_.erase(0, sent);
  if (!unsent_.empty() && waiting_ == 0) {
    waiting_ = XtAppAddInput(
        window_.toolkit().context(), socket_, reinterpret_cast<XtPointer>(XtInputWriteMask),
        [](XtPointer self, int *, XtInputId *) { static_cast<TestSocket *>(self)->send(); }, this);
  } else if (unsent_.empty() && waiting_ != 0) {
    XtRemoveInput(waiting_);
    waiting_ = 0;
  }
}

} // namespace viewer
