// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Dialogs are read from their widgets, so that tests see what users see.
#include "viewer/window/testsocket.h"

#include <X11/IntrinsicP.h>

#include <X11/CoreP.h>
#include <X11/ShellP.h>

#include <Xm/Label.h>
#include <Xm/LabelG.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/PushBG.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "viewer/model/state.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"
#include "viewer/window/openlayout.h"

namespace viewer {
namespace {

// With the line feeds, which are no characters of the toolkit's strings.
std::string plainText(XmString string) {
  XmStringContext context = nullptr;
  std::string text;
  if (string == nullptr || XmStringInitContext(&context, string) == 0) return text;
  for (XmStringComponentType type = XmSTRING_COMPONENT_UNKNOWN; type != XmSTRING_COMPONENT_END;) {
    unsigned length = 0;
    XtPointer value = nullptr;
    type = XmStringGetNextTriple(context, &length, &value);
    if (type == XmSTRING_COMPONENT_TEXT || type == XmSTRING_COMPONENT_LOCALE_TEXT)
      text.append(static_cast<const char *>(value), length);
    if (type == XmSTRING_COMPONENT_SEPARATOR) text += '\n';
    XtFree(static_cast<char *>(value));
  }
  XmStringFreeContext(context);
  return text;
}

std::string labelOf(::Widget widget) {
  XmString label = nullptr;
  XtVaGetValues(widget, XmNlabelString, &label, nullptr);
  std::string copy = plainText(label);
  if (label != nullptr) XmStringFree(label);
  return copy;
}

std::vector<std::string> itemsOf(::Widget list) {
  XmStringTable items = nullptr;
  int count = 0;
  XtVaGetValues(list, XmNitems, &items, XmNitemCount, &count, nullptr);
  std::vector<std::string> texts;
  texts.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i)
    texts.push_back(plainText(items[i]));
  return texts;
}

// Collects the texts, buttons, lists and fields below a widget.
void lookBelow(::Widget widget, DialogState &dialog) {
  if (XtIsManaged(widget) == 0) return;
  const auto is = [widget](WidgetClass type) { return XtIsSubclass(widget, type) != 0; };
  if (is(xmPushButtonWidgetClass) || is(xmPushButtonGadgetClass) || is(xmToggleButtonWidgetClass)) {
    dialog.buttons.push_back({labelOf(widget), {}, XtIsSensitive(widget) != 0, placeOf(widget)});
  } else if (is(xmLabelWidgetClass) || is(xmLabelGadgetClass)) {
    dialog.texts.push_back(labelOf(widget));
  } else if (is(xmTextFieldWidgetClass)) {
    dialog.fields.push_back({XtName(widget), textOf(widget), placeOf(widget)});
  } else if (is(xmListWidgetClass)) {
    dialog.lists.push_back({XtName(widget), itemsOf(widget), selectedIn(widget), placeOf(widget)});
  } else if (XtIsComposite(widget) != 0) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal i = 0; i < count; ++i)
      lookBelow(children[i], dialog);
  }
}

std::vector<DialogState> dialogsBelow(::Widget shell) {
  std::vector<DialogState> all;
  for (Cardinal i = 0; i < shell->core.num_popups; ++i) {
    ::Widget popup = shell->core.popup_list[i];
    WidgetList children = nullptr;
    Cardinal count = 0;
    if (XtIsShell(popup) == 0 || reinterpret_cast<ShellWidget>(popup)->shell.popped_up == 0) continue;
    XtVaGetValues(popup, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    if (count == 0) continue;
    all.push_back({XtName(children[0]), {}, {}, {}, placeOf(popup)});
    lookBelow(children[0], all.back());
  }
  return all;
}

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
