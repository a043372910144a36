// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Menus are created once; the entries of documents are updated.
#include "viewer/window/menubar.h"

#include <Xm/CascadeB.h>
#include <Xm/RowColumn.h>
#include <Xm/Separator.h>
#include <Xm/ToggleB.h>

#include <set>
#include <utility>

#include "viewer/window/actions.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/menuentry.h"
#include "viewer/window/motif.h"

namespace viewer {
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
  std::set<std::string> taken;
  for (const auto &[name, key] : keys_)
    taken.insert(key);
  plugins_ = std::make_unique<PluginMenu>(window_, menus_.at(pluginMenu), std::move(taken));
  noDocuments_ = addEntry(menus_.at(windowMenu), "none", "(no document)");
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

std::string MenuBar::keyOf(const std::string &action) const {
  const auto found = keys_.find(action);
  return found == keys_.end() ? "" : found->second;
}

void MenuBar::update() {
  if (entries_.empty()) return;
  for (const Action &action : actions())
    if (action.menu != nullptr) setSensitive(entries_.at(action.name), isPossible(action.command(), window_.model()));
  plugins_->update();
  updateDocuments();
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
