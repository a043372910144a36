// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The toolkit: locale, display, resources, shell.
#include "viewer/window/toolkit.h"

#include <X11/Shell.h>
#include <Xm/Xm.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>

#include "host/document/descriptor.h"
#include "host/kernel/error.h"
#include "host/view/toplevel.h"
#include "viewer/window/colors.h"
#include "viewer/window/fallbackfonts.h"

namespace viewer {
namespace {

// The toolkit calls this for the locale when it opens a display. Without it, titles are interpreted as Latin-1.
String currentLocale(::Display * /*display*/, String /*language*/, XtPointer /*closure*/) {
  XSetLocaleModifiers("");
  return std::setlocale(LC_CTYPE, nullptr);
}

bool hasNoDescriptors() { return !host::Descriptor(dup(STDERR_FILENO)) && errno == EMFILE; }

// Not through exit: threads still use what it would destroy.
int endWithoutDisplay(::Display *display) {
  std::fprintf(stderr, "tavrel: lost the connection to display %s\n", DisplayString(display));
  _exit(EXIT_FAILURE);
}

// The toolkit warns if a menu is opened while the previous one still grabs the pointer or the keyboard; this is
// harmless: the next attempt succeeds.
void reportWarning(String text) {
  const std::string line = text;
  for (const char *harmless : {"XtGrabPointer failed", "XtGrabKeyboard failed"})
    if (line.find(harmless) != std::string::npos) return;
  std::fprintf(stderr, "tavrel: window toolkit: %s\n", text);
}

// A window manager gives the keyboard to a window by itself, and is disturbed by others that do.
bool hasWindowManager(::Widget shell) {
  ::Display *display = XtDisplay(shell);
  const std::string selection = "WM_S" + std::to_string(DefaultScreen(display));
  return XmIsMotifWMRunning(shell) != 0 ||
         XGetSelectionOwner(display, XInternAtom(display, selection.c_str(), False)) != None;
}

void restoreFocus(XtPointer toolkit, XtIntervalId * /*id*/) {
  ::Widget shell = static_cast<const Toolkit *>(toolkit)->shell();
  ::Window focus = None;
  int revertsTo = 0;
  XGetInputFocus(XtDisplay(shell), &focus, &revertsTo);
  if (focus == None && !hasWindowManager(shell))
    XSetInputFocus(XtDisplay(shell), PointerRoot, RevertToPointerRoot, CurrentTime);
}

int ignoreError(::Display * /*display*/, XErrorEvent * /*event*/) { return 0; }

void merge(XrmDatabase &database, const std::string &lines, bool overrides) {
  XrmDatabase added = XrmGetStringDatabase(lines.c_str());
  XrmCombineDatabase(added, &database, overrides ? True : False);
}

} // namespace

Toolkit::Toolkit(const ToolkitOptions &options) {
  XtToolkitInitialize();
  XtSetLanguageProc(nullptr, currentLocale, nullptr);
  context_ = XtCreateApplicationContext();
  XtAppSetWarningHandler(context_, reportWarning);
  char name[] = "tavrel", className[] = "Tavrel", geometryOption[] = "-geometry";
  std::string geometry = options.geometry;
  char *arguments[] = {name, geometryOption, geometry.data(), nullptr};
  int count = geometry.empty() ? 1 : 3;
  display_ = XtOpenDisplay(context_, options.display.empty() ? nullptr : options.display.c_str(), name, className,
                           nullptr, 0, &count, arguments);
  const char *asked = XDisplayName(options.display.empty() ? nullptr : options.display.c_str());
  if (display_ == nullptr || !Colors::usable(display_)) {
    const std::string reason = *asked == '\0' ? "no DISPLAY is set"
                                              : std::string("display ") + asked +
                                                    (display_ != nullptr  ? ": shows fewer than 24 bits of colour"
                                                     : hasNoDescriptors() ? std::string(": ") + host::noDescriptors
                                                                          : ": cannot be opened");
    XtDestroyApplicationContext(context_);
    throw host::HostError(tavrel::errGeneric, reason);
  }
  host::reportWindowErrors();
  XSetIOErrorHandler(endWithoutDisplay);

  XrmDatabase database = XtScreenDatabase(DefaultScreenOfDisplay(display_));
  merge(database, defaultResources(), false);
  for (const std::string &line : options.resources)
    merge(database, line + "\n", true);
  if (const char *dpi = XGetDefault(display_, "Xft", "dpi"); dpi != nullptr && std::atof(dpi) > 0)
    dpi_ = std::atof(dpi);

  Arg values[4];
  Cardinal number = 0;
  XtSetArg(values[number], XmNmappedWhenManaged, False), ++number;
  XtSetArg(values[number], XmNallowShellResize, False), ++number;
  XtSetArg(values[number], XmNdeleteResponse, XmDO_NOTHING), ++number;
  shell_ = XtAppCreateShell(name, className, applicationShellWidgetClass, display_, values, number);
}

void Toolkit::restoreFocusSoon() { XtAppAddTimeOut(context_, 0, restoreFocus, this); }

Toolkit::~Toolkit() {
  XtDestroyWidget(shell_); // is not destroyed with its context
  closeFallbackFonts(display_);
  XtDestroyApplicationContext(context_);
}

Toolkit::Size Toolkit::windowSize() const {
  const Screen *screen = XtScreen(shell_);
  Size size{std::min(pixels(900), WidthOfScreen(screen) * 9 / 10),
            std::min(pixels(1000), HeightOfScreen(screen) * 85 / 100)};
  char *asked = nullptr;
  XtVaGetValues(shell_, XmNgeometry, &asked, nullptr);
  int x = 0, y = 0;
  unsigned width = 0, height = 0;
  const int said = asked == nullptr ? 0 : XParseGeometry(asked, &x, &y, &width, &height);
  if ((said & WidthValue) != 0) size.width = static_cast<int>(width);
  if ((said & HeightValue) != 0) size.height = static_cast<int>(height);
  return size;
}

void Toolkit::abandon() { XSetErrorHandler(ignoreError); }

} // namespace viewer
