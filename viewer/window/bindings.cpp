// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/bindings.h"

#include "viewer/window/actions.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

MainWindow *s_window; // for the toolkit's action procedures, which get no client data

void doAction(::Widget /*widget*/, XEvent * /*event*/, String *arguments, Cardinal *count) {
  if (s_window == nullptr || *count == 0) return;
  guarded([&] {
    if (const Command *command = findCommand(arguments[0]))
      s_window->run(*command, *count > 1 ? arguments[1] : "");
    else
      s_window->model().status.report(std::string("no action ") + arguments[0]);
  });
}

void dragAction(::Widget /*widget*/, XEvent *event, String *arguments, Cardinal *count) {
  if (s_window == nullptr || *count == 0) return;
  guarded([&] {
    const std::string step = arguments[0];
    if (step == "begin" && event->type == ButtonPress) s_window->pageArea().beginDrag(*event);
    if (step == "move" && event->type == MotionNotify) s_window->pageArea().drag(*event);
    if (step == "end") s_window->pageArea().endDrag();
  });
}

host::ToolButton *buttonOf(const host::Application &app, const Action &action) {
  return action.button == nullptr ? nullptr : app.toolBar()->find(host::Runtime::current().atoms.atom(action.button));
}

} // namespace

Bindings::Bindings(MainWindow &window) : window_(window) {
  s_window = &window;
  char doName[] = "do", dragName[] = "drag";
  XtActionsRec procedures[] = {{doName, doAction}, {dragName, dragAction}};
  XtAppAddActions(window.toolkit().context(), procedures, XtNumber(procedures));
  for (const Action &action : actions())
    if (host::ToolButton *button = buttonOf(window.app(), action)) {
      const Command &command = action.command();
      button->ownAction = [&window, &command] { window.run(command); };
      button->ownTest = [&window, &command] { return isPossible(command, window.model()); };
      button->tip = command.sentence;
      button->enabled = button->ownTest();
      buttons_.push_back(button);
    }
}

Bindings::~Bindings() {
  s_window = nullptr;
  for (host::ToolButton *button : buttons_) {
    button->ownAction = {};
    button->ownTest = {};
  }
}

void Bindings::addKeysToTips(const std::function<std::string(const std::string &)> &keyOf) {
  for (const Action &action : actions())
    if (const std::string key = keyOf(action.name); !key.empty())
      if (host::ToolButton *button = buttonOf(window_.app(), action)) button->tip += " (" + key + ")";
}

} // namespace viewer
