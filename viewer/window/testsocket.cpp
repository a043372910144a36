// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The state of the viewer as JSON. Dialogs are read from their widgets, so that tests see what users see.
#include "viewer/window/testsocket.h"

#include <X11/IntrinsicP.h>

#include <X11/CoreP.h>
#include <X11/ShellP.h>

#include <Xm/Label.h>
#include <Xm/LabelG.h>
#include <Xm/PushB.h>
#include <Xm/PushBG.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

std::string quoted(const std::string &text) {
  std::string json = "\"";
  for (const char c : text) {
    char code[8];
    std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned char>(c));
    if (c == '"' || c == '\\')
      json += {'\\', c};
    else if (static_cast<unsigned char>(c) < ' ')
      json += code;
    else
      json += c;
  }
  return json + "\"";
}

// Builds an object or a list.
class Json {
public:
  explicit Json(char open) : text_(1, open), close_(open == '{' ? '}' : ']') {}
  Json &member(const std::string &name, const std::string &json) { return item(quoted(name) + ":" + json); }
  Json &member(const std::string &name, double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.10g", value);
    return member(name, std::string(text));
  }
  Json &text(const std::string &name, const std::string &value) { return member(name, quoted(value)); }
  Json &flag(const std::string &name, bool value) { return member(name, std::string(value ? "true" : "false")); }
  Json &item(const std::string &json) {
    if (text_.size() > 1) text_ += ',';
    text_ += json;
    return *this;
  }
  std::string done() const { return text_ + close_; }

private:
  std::string text_;
  char close_;
};

Json &withPlace(Json &json, const Place &place) {
  return json.member("x", place.x).member("y", place.y).member("width", place.width).member("height", place.height);
}

std::string labelOf(::Widget widget) {
  XmString label = nullptr;
  XtVaGetValues(widget, XmNlabelString, &label, nullptr);
  char *text = label == nullptr ? nullptr
                                : static_cast<char *>(XmStringUnparse(label, nullptr, XmCHARSET_TEXT, XmMULTIBYTE_TEXT,
                                                                      nullptr, 0, XmOUTPUT_ALL));
  std::string copy = text == nullptr ? "" : text;
  XtFree(text);
  if (label != nullptr) XmStringFree(label);
  return copy;
}

// Collects the texts, buttons and fields below a widget.
void lookBelow(::Widget widget, Json &texts, Json &buttons, Json &fields) {
  if (XtIsManaged(widget) == 0) return;
  const auto is = [widget](WidgetClass type) { return XtIsSubclass(widget, type) != 0; };
  if (is(xmPushButtonWidgetClass) || is(xmPushButtonGadgetClass) || is(xmToggleButtonWidgetClass)) {
    Json button('{');
    button.text("label", labelOf(widget)).flag("enabled", XtIsSensitive(widget) != 0);
    buttons.item(withPlace(button, placeOf(widget)).done());
  } else if (is(xmLabelWidgetClass) || is(xmLabelGadgetClass)) {
    texts.item(quoted(labelOf(widget)));
  } else if (is(xmTextFieldWidgetClass)) {
    Json field('{');
    field.text("name", XtName(widget)).text("text", textOf(widget));
    fields.item(withPlace(field, placeOf(widget)).done());
  } else if (XtIsComposite(widget) != 0) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal i = 0; i < count; ++i)
      lookBelow(children[i], texts, buttons, fields);
  }
}

std::string dialogsBelow(::Widget shell) {
  Json all('[');
  for (Cardinal i = 0; i < shell->core.num_popups; ++i) {
    ::Widget popup = shell->core.popup_list[i];
    WidgetList children = nullptr;
    Cardinal count = 0;
    if (XtIsShell(popup) == 0 || reinterpret_cast<ShellWidget>(popup)->shell.popped_up == 0) continue;
    XtVaGetValues(popup, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    if (count == 0) continue;
    Json texts('['), buttons('['), fields('['), dialog('{');
    lookBelow(children[0], texts, buttons, fields);
    dialog.text("name", XtName(children[0])).member("texts", texts.done()).member("buttons", buttons.done());
    all.item(withPlace(dialog.member("fields", fields.done()), placeOf(popup)).done());
  }
  return all.done();
}

std::string numbers(const std::vector<int32_t> &values) {
  Json list('[');
  for (const int32_t value : values)
    list.item(std::to_string(value));
  return list.done();
}

std::string stateOf(MainWindow &window) {
  const Model &model = window.model();
  Json state('{');
  state.text("title", model.documents.title())
      .text("status", model.status.message())
      .text("plugins", window.app().statusText());
  Json documents('[');
  for (const host::ViewerDocument *document : model.documents.all())
    documents.item(quoted(document->file.filename().string()));
  state.member("documents", documents.done()).member("front", static_cast<double>(model.documents.frontIndex()));
  state.flag("opening", model.documents.opening());
  state.member("page", model.documents.page() + 1)
      .member("pages", model.documents.pageCount())
      .member("zoom", model.moving.zoom());
  state.member("fit", static_cast<double>(model.moving.fit())).member("ticks", numbers(window.pageArea().ticks()));

  const Shown &shown = model.screen.shown();
  Json drawn('{');
  drawn.flag("there", shown.drawing.has_value()).member("page", shown.page + 1);
  drawn.member("marks", shown.drawing ? static_cast<double>(shown.drawing->marks) : 0);
  drawn.member("scrollX", shown.scrollX).member("scrollY", shown.scrollY);
  const Place area = placeOf(window.pageArea().page());
  Place page = window.pageArea().pagePlace();
  page.x += area.x;
  page.y += area.y;
  state.member("drawn", withPlace(drawn, page).done());
  Json visible('{');
  state.member("area", withPlace(visible, area).done()).text("note", window.pageArea().noted());
  state.member("marksShown", static_cast<double>(window.marksShown()));

  Json buttons('[');
  for (const ToolBarView::Button &button : window.toolBarView().buttons()) {
    Json one('{');
    one.text("name", button.name).text("tip", button.tip).flag("enabled", button.enabled);
    buttons.item(withPlace(one, placeOf(button.widget)).done());
  }
  state.member("buttons", buttons.done());
  Json field('{');
  field.text("text", textOf(window.toolBarView().pageField()));
  state.member("pageField", withPlace(field, placeOf(window.toolBarView().pageField())).done());
  state.text("findMessage", model.finding.message()).member("dialogs", dialogsBelow(window.toolkit().shell()));
  state.member("cacheBytes", static_cast<double>(model.tiles.cache().bytes()));
  return state.done();
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

TestSocket::~TestSocket() { close(socket_); }

void TestSocket::notify() {
  std::string state = stateOf(window_);
  if (state == last_) return;
  last_ = std::move(state);
  char extra[64];
  std::snprintf(extra, sizeof extra, ",\"longestIteration\":%.1f}\n", window_.longestIteration());
  const std::string line = last_.substr(0, last_.size() - 1) + extra;
  for (size_t sent = 0; sent < line.size();) {
    const ssize_t count = send(socket_, line.data() + sent, line.size() - sent, MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return; // the test has ended
    sent += static_cast<size_t>(count);
  }
}

} // namespace viewer
