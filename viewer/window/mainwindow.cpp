// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The window: builds its parts, keeps them up to date, and turns events into actions.
#include "viewer/window/mainwindow.h"

#include <X11/Shell.h>
#include <X11/Xatom.h>
#include <Xm/AtomMgr.h>
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/Protocols.h>
#include <Xm/TextF.h>

#include <algorithm>

#include "viewer/window/actions.h"
#include "viewer/window/motif.h"
#include "viewer/window/windowicon.h"

namespace viewer {
namespace {

using Clock = std::chrono::steady_clock;

// Drawing is limited to once per frame. A stream of events must not delay it further, and a plug-in that requests a
// drawing in each drawing must not keep the event loop from waiting.
constexpr auto frame = std::chrono::milliseconds(16), retry = std::chrono::milliseconds(1000);

// The note "rendering" is shown after this time.
constexpr auto noteDelay = std::chrono::milliseconds(300);

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

// Ends the event loop's wait and clears the timer.
void timeIsUp(XtPointer timer, XtIntervalId * /*id*/) { *static_cast<XtIntervalId *>(timer) = 0; }

uint32_t modifiersOf(const XEvent *event) {
  if (event == nullptr || (event->type != ButtonPress && event->type != ButtonRelease)) return 0;
  constexpr struct {
    unsigned state;
    uint32_t key;
  } keys[] = {
      {ShiftMask, tavrel::modifierShift}, {ControlMask, tavrel::modifierControl}, {Mod1Mask, tavrel::modifierAlt}};
  uint32_t held = 0;
  for (const auto &[state, key] : keys)
    if ((event->xbutton.state & state) != 0) held |= key;
  return held;
}

} // namespace

MainWindow::MainWindow(Toolkit &toolkit, const Model &model, host::Application &app, const host::PluginLoader &plugins)
    : toolkit_(toolkit), model_(model), app_(app), plugins_(plugins), dialogs_(std::make_unique<Dialogs>(*this)),
      findDialog_(std::make_unique<FindDialog>(*this)), keysDialog_(toolkit) {
  s_window = this;
  char doName[] = "do", dragName[] = "drag";
  XtActionsRec procedures[] = {{doName, doAction}, {dragName, dragAction}};
  XtAppAddActions(toolkit_.context(), procedures, XtNumber(procedures));
  for (const Action &action : actions()) {
    if (action.button == nullptr) continue;
    if (host::ToolButton *button = app_.toolBar()->find(host::Runtime::current().atoms.atom(action.button))) {
      const Command &command = action.command();
      button->ownAction = [this, &command] { run(command); };
      button->ownTest = [this, &command] { return isPossible(command, model_); };
      button->tip = command.sentence;
      button->enabled = button->ownTest();
      own_.push_back(button);
    }
  }
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

MainWindow::~MainWindow() {
  model_.screen.pageListener = {};
  s_window = nullptr;
  for (host::ToolButton *button : own_) {
    button->ownAction = {};
    button->ownTest = {};
  }
}

void MainWindow::build() {
  form_ = XtVaCreateWidget("window", xmFormWidgetClass, toolkit_.shell(), XmNshadowThickness, 0, nullptr);
  menuBar_ = std::make_unique<MenuBar>(*this, form_);
  XtVaSetValues(menuBar_->widget(), XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                XmNtopAttachment, XmATTACH_FORM, nullptr);
  toolBar_ = std::make_unique<ToolBarView>(*this, form_);
  XtVaSetValues(toolBar_->widget(), XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, menuBar_->widget(), nullptr);
  ::Widget bar = XtVaCreateManagedWidget("statusbar", xmFormWidgetClass, form_, XmNleftAttachment, XmATTACH_FORM,
                                         XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
                                         XmNshadowThickness, 0, nullptr);
  pluginStatus_ =
      XtVaCreateManagedWidget("pluginStatus", xmLabelWidgetClass, bar, XmNalignment, XmALIGNMENT_END,
                              XmNrightAttachment, XmATTACH_FORM, XmNrightOffset, pixels(10), XmNtopAttachment,
                              XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, XmNmarginHeight, pixels(3), nullptr);
  status_ =
      XtVaCreateManagedWidget("status", xmLabelWidgetClass, bar, XmNalignment, XmALIGNMENT_BEGINNING, XmNleftAttachment,
                              XmATTACH_FORM, XmNleftOffset, pixels(10), XmNtopAttachment, XmATTACH_FORM,
                              XmNbottomAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_WIDGET, XmNrightWidget,
                              pluginStatus_, XmNrecomputeSize, False, XmNmarginHeight, pixels(3), nullptr);
  setLabel(status_, " ");
  setLabel(pluginStatus_, " ");
  pageArea_ = std::make_unique<PageArea>(*this, form_);
  XtVaSetValues(pageArea_->widget(), XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, toolBar_->widget(), XmNbottomAttachment,
                XmATTACH_WIDGET, XmNbottomWidget, bar, nullptr);
  toolBar_->update();
  XtVaSetValues(form_, XmNinitialFocus, pageArea_->page(), nullptr);
  XtManageChild(form_);
  // The toolkit handles the help key itself: it never reaches the menu's entry.
  whenever(form_, XmNhelpCallback, [this](const XEvent *) { showKeys(); });
  ::Atom close = XmInternAtom(toolkit_.display(), const_cast<char *>("WM_DELETE_WINDOW"), False);
  const auto quitNow = [](::Widget, XtPointer window, XtPointer) { static_cast<MainWindow *>(window)->quit(); };
  XmAddWMProtocolCallback(toolkit_.shell(), close, quitNow, this);
}

void MainWindow::realize() {
  ::Widget shell = toolkit_.shell();
  const Toolkit::Size size = toolkit_.windowSize();
  XtVaSetValues(shell, XmNwidth, size.width, XmNheight, size.height, nullptr);
  XtVaSetValues(shell, XmNminWidth, pixels(320), XmNminHeight, pixels(240), XmNbaseWidth, 0, XmNbaseHeight, 0, nullptr);
  XtRealizeWidget(shell);
  setWindowIcon(shell);
  pageArea_->layOut();
}

void MainWindow::map() {
  showTitle();
  XtMapWidget(toolkit_.shell());
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
  dialogs_->askFile([this](const std::string &file) { model_.documents.open({file, {}}); });
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

void MainWindow::askPassword(const Target &target, bool again) {
  const std::string name = target.file.filename().string();
  dialogs_->askPassword((again ? "That was not the password. " : "") + name + " is encrypted: a password is needed.",
                        [this, target](const std::string &password) { model_.documents.open(target, password); });
}

int32_t MainWindow::alert(const host::Alert &alert) { return dialogs_->alert(alert); }

void MainWindow::showKeys() {
  fillMenus();
  const auto accelerator = [this](const std::string &command) { return menuBar_->keyOf(command); };
  std::vector<KeyRow> ofPlugins;
  for (const KeyOfButton &button : menuBar_->pluginKeys())
    ofPlugins.push_back({pluginMenu, button.key, button.label, ""});
  keysDialog_.show(keyRows(accelerator, pageArea_->usersTranslations(), ofPlugins));
}

void MainWindow::showPlugins() {
  std::string text;
  for (const host::Plugin &plugin : plugins_.plugins())
    text += (text.empty() ? "" : "\n") + plugin.name + (plugin.version.empty() ? "" : " " + plugin.version) + ":  " +
            host::describe(plugin.state) + (plugin.reason.empty() ? "" : ": " + plugin.reason);
  dialogs_->showInformation("About Plug-Ins", text.empty() ? "There are no plug-ins." : text);
}

void MainWindow::showAbout() {
  dialogs_->showInformation("About Tavrel",
                            "Tavrel " TAVREL_VERSION "\nA PDF viewer that shows where a search's hits are.");
}

void MainWindow::loop(const std::function<bool()> &until) {
  if (!app_.calling()) app_.toolBar()->updateStates();
  update();
  while (!quits_ && !until()) {
    XtAppProcessEvent(toolkit_.context(), XtIMAll); // waits
    const Clock::time_point woken = Clock::now();
    while (!quits_ && !until() && XtAppPending(toolkit_.context()) != 0 && Clock::now() - woken < frame)
      XtAppProcessEvent(toolkit_.context(), XtIMAll);
    update();
    const std::chrono::duration<double, std::milli> took = Clock::now() - woken;
    longestIteration_ = std::max(longestIteration_, took.count());
  }
}

void MainWindow::update() {
  bool shown = false;
  guarded([&] {
    show();
    shown = true;
  });
  // A page-draw procedure may have turned the page or scrolled. A drawing that failed is tried again after a second.
  if (model_.screen.needsDrawing() && redrawTimer_ == 0)
    redrawTimer_ = XtAppAddTimeOut(toolkit_.context(), (shown ? frame : retry).count(), timeIsUp, &redrawTimer_);
  XFlush(toolkit_.display());
  // After the first page, unless that page takes long.
  const auto since = model_.screen.waitingSince();
  constexpr auto soon = std::chrono::milliseconds(100);
  if (!since || Clock::now() - *since > soon) guarded([this] { fillMenus(); });
  if (watcher) watcher();
}

// The tips contain the keys of the menus' entries, which a user may have changed.
void MainWindow::fillMenus() {
  if (!menuBar_->fill()) return;
  for (const Action &action : actions()) {
    const std::string key = menuBar_->keyOf(action.name);
    if (action.button == nullptr || key.empty()) continue;
    if (host::ToolButton *button = app_.toolBar()->find(host::Runtime::current().atoms.atom(action.button)))
      button->tip += " (" + key + ")";
  }
  model_.changes.note(allParts);
  show();
}

void MainWindow::show() {
  const bool drawn = model_.screen.draw();
  if (drawn && model_.screen.shown().drawing && model_.screen.shown().drawing->marks > 0) ++marks_;
  if (model_.screen.showHighlights() || drawn) pageArea_->show();
  watchWaiting();
  const uint32_t changed = model_.changes.take();
  if ((changed & partToolBar) != 0) toolBar_->update();
  if ((changed & partMenus) != 0) menuBar_->update();
  if ((changed & partPage) != 0) pageArea_->update();
  if ((changed & partFind) != 0) findDialog_->update();
  if ((changed & partStatus) != 0) {
    showStatus();
    showTitle();
  }
}

// Shows "rendering" on the outline of a page that takes long; the timer ends the loop's wait when it is time.
void MainWindow::watchWaiting() {
  const auto since = model_.screen.waitingSince();
  if (!since) {
    pageArea_->note(model_.documents.front() == nullptr && !model_.documents.opening() && !app_.calling()
                        ? "Ctrl+O opens a document"
                        : model_.tiles.error());
    return;
  }
  const auto waited = Clock::now() - *since;
  if (waited >= noteDelay)
    pageArea_->note("rendering");
  else if (waitingTimer_ == 0)
    waitingTimer_ =
        XtAppAddTimeOut(toolkit_.context(),
                        static_cast<unsigned long>(
                            std::chrono::duration_cast<std::chrono::milliseconds>(noteDelay - waited).count() + 1),
                        timeIsUp, &waitingTimer_);
}

void MainWindow::showStatus() {
  constexpr size_t longest = 100; // leaves space for the viewer's message
  const std::string &said = model_.status.message();
  std::string plugins = app_.statusText();
  if (plugins.size() > longest) {
    size_t end = longest;
    while (end > 0 && (static_cast<unsigned char>(plugins[end]) & 0xC0U) == 0x80U)
      --end;
    plugins = plugins.substr(0, end) + "\u2026";
  }
  if (said != statusText_) {
    statusText_ = said;
    setLabel(status_, said.empty() ? " " : said);
  }
  if (plugins != pluginText_) {
    pluginText_ = plugins;
    setLabel(pluginStatus_, plugins.empty() ? " " : plugins);
  }
}

void MainWindow::showTitle() {
  const std::string title = model_.documents.title();
  if (title == title_) return;
  title_ = title;
  ::Display *display = toolkit_.display();
  const ::Atom utf8 = XmInternAtom(display, const_cast<char *>("UTF8_STRING"), False);
  XtVaSetValues(toolkit_.shell(), XmNtitle, title.c_str(), XmNiconName, title.c_str(), nullptr);
  if (XtWindow(toolkit_.shell()) != 0)
    XChangeProperty(display, XtWindow(toolkit_.shell()),
                    XmInternAtom(display, const_cast<char *>("_NET_WM_NAME"), False), utf8, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char *>(title.c_str()), static_cast<int>(title.size()));
}

} // namespace viewer
