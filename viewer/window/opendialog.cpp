// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/opendialog.h"

#include <Xm/List.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

#include <algorithm>
#include <utility>

#include "viewer/model/onelinetext.h"
#include "viewer/model/recentfolders.h"
#include "viewer/window/dialogbox.h"
#include "viewer/window/motif.h"
#include "viewer/window/textediting.h"
#include "viewer/window/toolkit.h"

namespace viewer {
namespace {

bool s_open; // a dialog

} // namespace

void OpenDialog::show(Toolkit &toolkit, const std::filesystem::path &front, const Take &take) {
  if (!s_open) new OpenDialog(toolkit, front, take); // deletes itself
}

OpenDialog::OpenDialog(Toolkit &toolkit, const std::filesystem::path &front, Take take)
    : recentFile_(recentFoldersFile()), usual_(usualFolders(front, recentFolders(recentFile_))),
      chooser_(firstFolder(front, recentFolders(recentFile_))), take_(std::move(take)),
      widgets_(makeOpenWidgets(toolkit.shell())) {
  s_open = true;
  editAsUsual(widgets_.field);
  addKeys(toolkit.context(), widgets_, *this);
  react();
  std::vector<std::string> labels;
  for (const NamedFolder &folder : usual_)
    labels.push_back(folder.label);
  fillList(widgets_.folders, labels);
  XtManageChild(widgets_.form);
  update();
}

OpenDialog::~OpenDialog() {
  s_open = false;
  *self_ = nullptr;
}

void OpenDialog::react() {
  ::Widget form = widgets_.form;
  whenever(widgets_.field, XmNvalueChangedCallback, [this](const XEvent *) {
    if (updating_) return;
    chooser_.setText(editedText(widgets_.field));
    update();
  });
  for (const char *callback : {XmNbrowseSelectionCallback, XmNdefaultActionCallback})
    whenever(widgets_.folders, callback, [this](const XEvent *) { goToUsual(); });
  whenever(widgets_.files, XmNbrowseSelectionCallback, [this](const XEvent *) { selected_ = true; });
  whenever(widgets_.files, XmNdefaultActionCallback, [this](const XEvent *event) {
    if (event == nullptr || event->type == KeyPress) return; // then the default button is pressed, too
    selected_ = true;
    accept();
  });
  whenever(widgets_.all, XmNvalueChangedCallback, [this](const XEvent *) {
    chooser_.setFiles(XmToggleButtonGetState(widgets_.all) != 0 ? Files::all : Files::pdf);
    update();
  });
  whenever(widgets_.up, XmNactivateCallback, [this](const XEvent *) { goUp(); });
  whenever(widgets_.open, XmNactivateCallback, [this](const XEvent *) { accept(); });
  whenever(widgets_.cancel, XmNactivateCallback, [form](const XEvent *) { destroyDialog(form); });
  destroyWhenUnmapped(form);
  whenever(form, XmNdestroyCallback, [this](const XEvent *) { delete this; });
}

void OpenDialog::update() {
  updating_ = true;
  if (editedText(widgets_.field) != chooser_.text())
    XmTextFieldSetString(widgets_.field, std::string(chooser_.text()).data());
  std::vector<std::string> names;
  for (const FolderEntry *entry : chooser_.shown())
    names.push_back(entry->shown + (entry->folder ? "/" : ""));
  fillList(widgets_.files, names);
  selectIn(widgets_.files, chooser_.suggested() ? static_cast<int>(*chooser_.suggested()) : -1);
  showPath(widgets_.path, oneLine(chooser_.folder().string()));
  showMessage();
  selected_ = false;
  updating_ = false;
}

void OpenDialog::showMessage() {
  setLabel(widgets_.message, chooser_.message().empty() ? " " : oneLine(chooser_.message()));
}

void OpenDialog::goToUsual() {
  const int position = selectedIn(widgets_.folders);
  if (position < 0 || static_cast<size_t>(position) >= usual_.size()) return;
  chooser_.goTo(usual_[static_cast<size_t>(position)].folder);
  update();
}

void OpenDialog::goUp() {
  chooser_.goUp();
  update();
}

// Where there is nothing to complete, the key goes to the next widget as everywhere.
void OpenDialog::complete() {
  const std::string text = chooser_.completed();
  if (text == chooser_.text())
    XmProcessTraversal(widgets_.field, XmTRAVERSE_NEXT_TAB_GROUP);
  else
    replaceText(widgets_.field, text);
}

void OpenDialog::selectBy(int positions) {
  const int count = static_cast<int>(chooser_.shown().size()), now = selectedIn(widgets_.files);
  if (count == 0) return;
  selectIn(widgets_.files, now < 0 ? (positions < 0 ? count - 1 : 0) : std::clamp(now + positions, 0, count - 1));
  selected_ = true;
}

void OpenDialog::type(const std::string &character) {
  replaceText(widgets_.field, chooser_.text() + character);
  XmProcessTraversal(widgets_.field, XmTRAVERSE_CURRENT);
}

void OpenDialog::accept() {
  const int position = selectedIn(widgets_.files);
  const bool byName = position >= 0 && (selected_ || chooser_.text().empty());
  const auto file = byName ? chooser_.choose(static_cast<size_t>(position)) : chooser_.chooseTyped();
  if (!file) return update();
  chooser_.sayOpening(*file);
  showMessage();
  try {
    take_(*file, [self = self_, chosen = *file, choice = ++choices_](const std::string &failure) {
      if (*self != nullptr && (*self)->choices_ == choice) guarded([&] { (*self)->opened(chosen, failure); });
    });
  } catch (const std::exception &error) {
    opened(*file, error.what());
    throw;
  }
}

void OpenDialog::opened(const std::filesystem::path &file, const std::string &failure) {
  if (failure.empty()) {
    rememberFolder(recentFile_, file.parent_path());
    return destroyDialog(widgets_.form); // with this object
  }
  chooser_.sayFailure(file, failure);
  showMessage();
}

} // namespace viewer
