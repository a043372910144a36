// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/pluginmenu.h"

#include <Xm/PushB.h>

#include <algorithm>
#include <utility>

#include "viewer/window/actions.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/menuentry.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

std::string labelOf(const host::ToolButton &button) {
  return button.label.empty() ? shortLabel(host::Runtime::current().atoms.name(button.name)) : button.label;
}

} // namespace

PluginMenu::PluginMenu(MainWindow &window, ::Widget menu, std::set<std::string> taken)
    : window_(window), menu_(menu), none_(addEntry(menu, "none", "(no plug-in has a button)")),
      taken_(std::move(taken)) {
  setSensitive(none_, false);
}

bool PluginMenu::isShown(const host::ToolButton *button, const Entry &entry) {
  return button == entry.button && labelOf(*button) == entry.label && button->key == entry.key;
}

void PluginMenu::update() {
  std::vector<host::ToolButton *> there;
  if (const host::ToolBar *bar = window_.app().toolBar()) {
    there = bar->visible();
    std::erase_if(there, [](const host::ToolButton *button) { return button->action.callback == nullptr; });
  }
  if (!std::equal(there.begin(), there.end(), entries_.begin(), entries_.end(), isShown)) {
    for (const Entry &entry : entries_)
      XtDestroyWidget(entry.widget);
    entries_.clear();
    for (host::ToolButton *button : there)
      add(button);
  }
  for (const Entry &entry : entries_)
    setSensitive(entry.widget, entry.button->enabled);
  if (entries_.empty())
    XtManageChild(none_);
  else
    XtUnmanageChild(none_);
}

void PluginMenu::add(host::ToolButton *button) {
  const std::string label = labelOf(*button);
  ::Widget entry = addEntry(menu_, widgetName(host::Runtime::current().atoms.name(button->name)), label);
  // Modifiers of the entry's key are not passed to the button.
  whenever(entry, XmNactivateCallback, [this, button](const XEvent *) { window_.press(*button, nullptr); });
  entries_.push_back({button, label, button->key, entry, attachKey(entry, button->key)});
}

// A key of the user's resources is there already.
std::string PluginMenu::attachKey(::Widget entry, const std::string &key) const {
  std::string shown = showAccelerator(entry), wanted = keyName(key);
  const bool isOthers =
      taken_.contains(wanted) ||
      std::any_of(entries_.begin(), entries_.end(), [&](const Entry &other) { return other.shownKey == wanted; });
  char *users = nullptr;
  XtVaGetValues(entry, XmNaccelerator, &users, nullptr);
  const bool isUsers = users != nullptr;
  XtFree(users); // a copy
  if (isUsers || key.empty() || isOthers) return shown;
  XtVaSetValues(entry, XmNaccelerator, key.c_str(), nullptr);
  return showAccelerator(entry);
}

std::vector<KeyOfButton> PluginMenu::keys() const {
  std::vector<KeyOfButton> keys;
  for (const Entry &entry : entries_)
    if (!entry.shownKey.empty()) keys.push_back({entry.shownKey, entry.label});
  return keys;
}

} // namespace viewer
