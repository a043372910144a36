// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A button of the tool bar, and the calls of its functions.
#pragma once

#include <functional>
#include <set>
#include <span>
#include <string>

#include "host/view/registration.h"
#include "tavrel/TavrelView.h"

namespace host {

struct ToolButton {
  tavrel::Atom name = 0;
  tavrel::Bitmap icon = 0;
  std::string tip;
  std::string label; ///< short, for menus; empty: the tip
  std::string key;   ///< "Shift<Key>F3", or empty
  std::set<int32_t> attributes;
  bool enabled = true; ///< the last result of its test
  /// The plug-in with which it is removed: the one whose callback was attached last, else the one that made it. The
  /// host's own number for a button of the application itself.
  tavrel::ExtensionID owner = hostExtension;
  // A plug-in's button has these two, a button of the application itself the two after them.
  Registration action, test;
  std::function<void()> ownAction;
  std::function<bool()> ownTest;

  /// Throws errBadArgument for a text that is neither empty nor a key.
  void setKey(const std::string &text);
};

/// A button that the application has from the beginning.
struct OwnButton {
  const char *name; ///< of its atom
  const char *tip;
};

/// From left to right. Plug-ins put their buttons beside these: the names are part of the interface.
std::span<const OwnButton> ownButtons();

/// Asks the button's test. Without a test the button is enabled; if the test fails, it is disabled. The handle is the
/// button's own.
bool mayBePressed(const ToolButton &button, tavrel::ToolButton handle);
/// Calls what a press calls, whatever the test says.
void callAction(const ToolButton &button, tavrel::ToolButton handle);

} // namespace host
