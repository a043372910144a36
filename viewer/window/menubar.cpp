// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Menus are created once; the entries of plug-ins and documents are updated.
#include "viewer/window/menubar.h"

#include <Xm/CascadeB.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Separator.h>
#include <Xm/ToggleB.h>

#include <algorithm>

#include "viewer/window/actions.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

::Widget addEntry(::Widget menu, const std::string &name, const std::string &label) {
  ::Widget entry = XtCreateManagedWidget(name.c_str(), xmPushButtonWidgetClass, menu, nullptr, 0);
  setLabel(entry, label);
  return entry;
}

} // namespace

MenuBar::MenuBar(MainWindow &window, ::Widget parent) : window_(window) {
  char name[] = "menubar";
  bar_ = XmCreateMenuBar(parent, name, nullptr, 0);
  for (const char *menu : menuNames())
    menus_[menu] = addMenu(menu);
  XtManageChild(bar_);
}

bool MenuBar::fill() {
  if (!entries_.empty()) return false;
  for (const Action &action : actions()) {
    if (action.menu == nullptr) continue;
    ::Widget menu = menus_.at(action.menu);
    if (action.separated) XtCreateManagedWidget("separator", xmSeparatorWidgetClass, menu, nullptr, 0);
    ::Widget entry = addEntry(menu, action.name, action.command().sentence);
    keys_[action.name] = showAccelerator(entry);
    whenever(entry, XmNactivateCallback, [this, &action](const XEvent *) { window_.run(action.command()); });
    entries_[action.name] = entry;
  }
  noPlugins_ = addEntry(menus_.at(pluginMenu), "none", "(no plug-in has a button)");
  noDocuments_ = addEntry(menus_.at(windowMenu), "none", "(no document)");
  setSensitive(noPlugins_, false);
  setSensitive(noDocuments_, false);
  update();
  return true;
}

::Widget MenuBar::addMenu(const std::string &name) {
  ::Widget menu = XmCreatePulldownMenu(bar_, const_cast<char *>((name + "Menu").c_str()), nullptr, 0);
  whenever(menu, XmNunmapCallback, [this](const XEvent *) { window_.toolkit().restoreFocusSoon(); });
  ::Widget cascade = XtVaCreateManagedWidget(name.c_str(), xmCascadeButtonWidgetClass, bar_, XmNsubMenuId, menu,
                                             XmNmnemonic, static_cast<KeySym>(name[0]), nullptr);
  if (name == "Help") XtVaSetValues(bar_, XmNmenuHelpWidget, cascade, nullptr);
  return menu;
}

// The accelerator's text is derived from the key, so that a user changes only one resource.
std::string MenuBar::showAccelerator(::Widget entry) {
  char *key = nullptr;
  XtVaGetValues(entry, XmNaccelerator, &key, nullptr);
  if (key == nullptr) return {};
  std::string name = keyName(key);
  const MotifString text(name);
  XtVaSetValues(entry, XmNacceleratorText, static_cast<XmString>(text), nullptr);
  XtFree(key); // a copy
  return name;
}

std::string MenuBar::keyOf(const std::string &action) const {
  const auto found = keys_.find(action);
  return found == keys_.end() ? "" : found->second;
}

std::vector<KeyOfButton> MenuBar::pluginKeys() const {
  std::vector<KeyOfButton> keys;
  for (const PluginEntry &entry : plugins_)
    if (!entry.key.empty()) keys.push_back({entry.key, entry.tip.empty() ? entry.label : entry.tip});
  return keys;
}

void MenuBar::update() {
  if (entries_.empty()) return;
  for (const Action &action : actions())
    if (action.menu != nullptr) setSensitive(entries_.at(action.name), isPossible(action.command(), window_.model()));
  updatePlugins();
  updateDocuments();
}

void MenuBar::updatePlugins() {
  std::vector<host::ToolButton *> there;
  if (const host::ToolBar *bar = window_.app().toolBar()) {
    there = bar->visible();
    std::erase_if(there, [](const host::ToolButton *button) { return button->action.callback == nullptr; });
  }
  const bool same = std::equal(there.begin(), there.end(), plugins_.begin(), plugins_.end(),
                               [](const host::ToolButton *button, const PluginEntry &entry) {
                                 return button == entry.button && button->tip == entry.tip;
                               });
  if (!same) {
    for (const PluginEntry &entry : plugins_)
      XtDestroyWidget(entry.widget);
    plugins_.clear();
    for (host::ToolButton *button : there) {
      const std::string name = host::Runtime::current().atoms.name(button->name);
      const std::string label = shortLabel(name);
      ::Widget entry = addEntry(menus_.at(pluginMenu), widgetName(name), label);
      const std::string key = showAccelerator(entry);
      // Modifiers of the entry's key are not passed to the button.
      whenever(entry, XmNactivateCallback, [this, button](const XEvent *) { window_.press(*button, nullptr); });
      plugins_.push_back({button, label, button->tip, key, entry});
    }
  }
  for (const PluginEntry &entry : plugins_)
    setSensitive(entry.widget, entry.button->enabled);
  if (plugins_.empty())
    XtManageChild(noPlugins_);
  else
    XtUnmanageChild(noPlugins_);
}

void MenuBar::updateDocuments() {
  const Model &model = window_.model();
  std::vector<std::string> labels;
  for (const host::ViewerDocument *document : model.documents.all())
    labels.push_back(document->file.filename().string());
  // Entries are reused: the toolkit does not free all memory of a widget.
  while (documents_.size() < labels.size()) {
    const size_t i = documents_.size();
    ::Widget entry = XtVaCreateWidget("document", xmToggleButtonWidgetClass, menus_.at(windowMenu), XmNindicatorType,
                                      XmONE_OF_MANY, nullptr);
    whenever(entry, XmNvalueChangedCallback, [this, i](const XEvent *) {
      window_.model().documents.bringToFront(i);
      window_.model().changes.note(allParts);
    });
    documents_.push_back({{}, entry});
  }
  for (size_t i = 0; i < documents_.size(); ++i) {
    DocumentEntry &entry = documents_[i];
    if (i < labels.size() && labels[i] != entry.label) setLabel(entry.widget, entry.label = labels[i]);
    if (i < labels.size())
      XtManageChild(entry.widget);
    else
      XtUnmanageChild(entry.widget);
  }
  for (size_t i = 0; i < documents_.size(); ++i)
    XmToggleButtonSetState(documents_[i].widget, i == model.documents.frontIndex() ? True : False, False);
  if (labels.empty())
    XtManageChild(noDocuments_);
  else
    XtUnmanageChild(noDocuments_);
}

} // namespace viewer
