// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The model of a tool bar: its buttons, their order, texts and actions. It draws nothing.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "host/kernel/handles.h"
#include "host/view/toolbutton.h"

namespace host {

class ToolBar {
public:
  /// The number of buttons and separators that fit.
  static constexpr size_t capacity = 32;

  /// A tool bar with the application's own buttons: those of `ownButtons`, without actions yet.
  explicit ToolBar(Atoms &atoms);
  ToolBar(const ToolBar &) = delete;
  ToolBar &operator=(const ToolBar &) = delete;

  /// The button of that name, on the tool bar, or null.
  ToolButton *find(tavrel::Atom name) const;
  /// A new button of a plug-in, not on the tool bar; a name that is taken gives the button that has it.
  ToolButton &create(tavrel::Atom name, tavrel::Bitmap icon, tavrel::ExtensionID owner = hostExtension);
  /// Sets what a press calls.
  void attachAction(ToolButton &button, const Registration &action);
  /// Sets the test of whether the button is enabled.
  void attachTest(ToolButton &button, const Registration &test);
  /// Removes a plug-in's buttons from the tool bar, and its callbacks from the others. The objects stay: a window may
  /// show them until it is drawn anew.
  void retire(tavrel::ExtensionID extension);
  /// Puts a button before or after another, at the end without one. Throws errBadArgument when the other is not on the
  /// tool bar, or when that is full.
  void insert(ToolButton &button, bool before, ToolButton *reference);
  void detach(ToolButton &button);
  bool hasSpace(int32_t buttons, int32_t separators) const;

  bool test(ToolButton &button) const { return mayBePressed(button, handles_.handle(&button)); }
  void press(ToolButton &button) const { callAction(button, handles_.handle(&button)); }
  /// Asks the test of every button on the tool bar, then notifies the listener.
  void updateStates();

  /// On the tool bar, from left to right.
  const std::vector<ToolButton *> &order() const { return order_; }
  /// Those of them that are visible: in a viewer that is embedded in another window, of the plug-ins' buttons only
  /// those with buttonAlsoInBrowser.
  std::vector<ToolButton *> visible() const;
  /// Whether the viewer is embedded in another window.
  bool embedded = false;
  Handles<tavrel::ToolButton, ToolButton> &handles() { return handles_; }
  /// Called when buttons are added, removed, moved or change their state.
  std::function<void()> listener;
  /// To be called after changing a button: notifies the listener.
  void changed() const;

private:
  static void attach(ToolButton &button, Registration ToolButton::*member, const Registration &registration);

  Handles<tavrel::ToolButton, ToolButton> handles_{"tool button"};
  std::vector<std::unique_ptr<ToolButton>> buttons_;
  std::vector<std::unique_ptr<ToolButton>> retired_;
  std::vector<ToolButton *> order_;
  bool updating_ = false;
};

} // namespace host
