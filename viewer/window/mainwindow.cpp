// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/mainwindow.h"

#include <Xm/Form.h>
#include <Xm/TextF.h>

#include "viewer/window/alert.h"
#include "viewer/window/motif.h"
#include "viewer/window/opendialog.h"
#include "viewer/window/passworddialog.h"
#include "viewer/window/windowicon.h"

namespace viewer {

MainWindow::MainWindow(Toolkit &toolkit, const Model &model, host::Application &app, const host::PluginLoader &plugins)
    : toolkit_(toolkit), model_(model), app_(app), loop_(toolkit.context(), [this] { update(); }), bindings_(*this),
      findDialog_(std::make_unique<FindDialog>(*this)), help_(toolkit, plugins), shell_(toolkit, [this] { quit(); }),
      refresh_(
          *this, [this](uint32_t parts) { show(parts); }, [this] { return fillMenus(); }) {
  build();
  // A plug-in may run for long after it has highlighted something.
  model_.screen.pageListener = [this] {
    guarded([this] {
      if (!model_.screen.showHighlights()) return;
      pageArea_->show();
      XFlush(toolkit_.display());
    });
  };
}

MainWindow::~MainWindow() { model_.screen.pageListener = {}; }

void MainWindow::build() {
  form_ = XtVaCreateWidget("window", xmFormWidgetClass, toolkit_.shell(), XmNshadowThickness, 0, nullptr);
  menuBar_ = std::make_unique<MenuBar>(*this, form_);
  XtVaSetValues(menuBar_->widget(), XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                XmNtopAttachment, XmATTACH_FORM, nullptr);
  toolBar_ = std::make_unique<ToolBarView>(*this, form_);
  XtVaSetValues(toolBar_->widget(), XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, menuBar_->widget(), nullptr);
  statusBar_ = std::make_unique<StatusBar>(toolkit_, form_);
  XtVaSetValues(statusBar_->widget(), XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                XmNbottomAttachment, XmATTACH_FORM, nullptr);
  pageArea_ = std::make_unique<PageArea>(*this, form_);
  XtVaSetValues(pageArea_->widget(), XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, toolBar_->widget(), XmNbottomAttachment,
                XmATTACH_WIDGET, XmNbottomWidget, statusBar_->widget(), nullptr);
  listPanel_ = std::make_unique<ListPanel>(*this, form_, pageArea_->widget());
  toolBar_->update();
  XtVaSetValues(form_, XmNinitialFocus, pageArea_->page(), nullptr);
  XtManageChild(form_);
  // The toolkit handles the help key itself: it never reaches the menu's entry.
  whenever(form_, XmNhelpCallback, [this](const XEvent *) { showKeys(); });
}

void MainWindow::realize() {
  shell_.realize();
  pageArea_->layOut();
}

void MainWindow::map() {
  shell_.title().show(oneLine(model_.documents.title()));
  shell_.map();
  focusPage();
}

void MainWindow::focusPage() { XmProcessTraversal(pageArea_->page(), XmTRAVERSE_CURRENT); }

void MainWindow::run(const Command &command, const std::string &argument) {
  if (!app_.calling()) viewer::run(command, model_, *this, argument); // else an alert of a plug-in waits for its answer
}

void MainWindow::press(host::ToolButton &button, const XEvent *event) {
  if (app_.calling()) return;
  app_.press(button, modifiersOf(event));
  model_.changes.note(allParts);
}

void MainWindow::askForFile() {
  const host::ViewerDocument *front = model_.documents.front();
  OpenDialog::show(toolkit_, front == nullptr ? std::filesystem::path() : front->file.parent_path(),
                   [this](const std::filesystem::path &file, const WhenOpened &opened) {
                     model_.opener.open({file, {}}, {}, opened);
                   });
}

void MainWindow::askForText() { findDialog_->open(); }

void MainWindow::askForPage() {
  ::Widget field = toolBar_->pageField();
  XmProcessTraversal(field, XmTRAVERSE_CURRENT);
  XmTextFieldSetSelection(field, 0, XmTextFieldGetLastPosition(field), XtLastTimestampProcessed(XtDisplay(field)));
}

void MainWindow::leaveFields() {
  toolBar_->restorePage();
  focusPage();
}

void MainWindow::askPassword(const Target &target, bool again, const Questions::Answer &answer) {
  const std::string name = target.file.filename().string();
  awaitPosition();
  askForPassword(toolkit_, (again ? "That was not the password. " : "") + name + " is encrypted: a password is needed.",
                 answer);
}

int32_t MainWindow::alert(const host::Alert &alert) {
  awaitPosition();
  return showAlert(*this, alert);
}

void MainWindow::showKeys() {
  if (fillMenus()) update();
  help_.showKeys(*menuBar_, *pageArea_);
}

void MainWindow::loop(const std::function<bool()> &until) {
  if (!app_.calling()) app_.toolBar()->updateStates();
  update();
  loop_.run(until);
}

void MainWindow::update() {
  refresh_.update();
  if (watcher) watcher();
}

// What takes time and can wait for the first page. The tips contain the keys of the menus' entries, which a user may
// have changed.
bool MainWindow::fillMenus() {
  if (!menuBar_->fill()) return false;
  setWindowIcon(toolkit_.shell());
  bindings_.addKeysToTips([this](const std::string &command) { return menuBar_->keyOf(command); });
  model_.changes.note(allParts);
  return true;
}

std::string MainWindow::invitation() const {
  const std::string key = menuBar_->keyOf("Open");
  return key.empty() ? "" : key + " opens a document";
}

void MainWindow::show(uint32_t parts) {
  if ((parts & partToolBar) != 0) toolBar_->update();
  if ((parts & partMenus) != 0) menuBar_->update();
  if ((parts & partPage) != 0) {
    pageArea_->update();
    listPanel_->update();
  }
  if ((parts & partFind) != 0) findDialog_->update();
  if ((parts & partStatus) != 0) {
    statusBar_->show(model_.status.message(), app_.statusText());
    shell_.title().show(oneLine(model_.documents.title()));
  }
}

} // namespace viewer
