// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Everything in the plug-in that calls X: the shell widget and the size of a bitmap.
#include <X11/Intrinsic.h>
#include <X11/Shell.h>
#include <X11/StringDefs.h>

#include <cstdlib>

#include "plugin/md/mdResources.h"
#include "plugin/md/mdUtils.h"
#include "plugin/pi/miPI.h"
#include "tavrel/Desktop.h"

::Widget rootWidget;

namespace {

constexpr char shellName[] = "Highlight";

/// No lines: the defaults are built into the plug-in.
const char *const fallbackResources[] = {nullptr};

} // namespace

tavrel::Widget mdInitUtils() {
  ::Widget topLevel = Desktop::GetTopLevelWidget();
  if (topLevel == nullptr) return nullptr;
  Screen *screen = XtScreen(topLevel);
  Desktop::RegisterResourceClass(shellName, fallbackResources);
  const XtArgVal x = WidthOfScreen(screen) / 2, y = HeightOfScreen(screen) / 2, mapped = False, size = 1;
  if (getenv("TAVREL_PLUGIN_PARENTLESS_ROOT") != nullptr) {
    rootWidget =
        XtVaAppCreateShell(XtName(topLevel), shellName, applicationShellWidgetClass, DisplayOfScreen(screen),
                           XtNmappedWhenManaged, mapped, XtNx, x, XtNy, y, XtNwidth, size, XtNheight, size, nullptr);
  } else {
    ::Widget parent = Desktop::GetTopLevelWidget();
    if (parent == nullptr) return nullptr; // destroyed meanwhile; the toolkit would end the program
    rootWidget = XtVaCreatePopupShell(shellName, applicationShellWidgetClass, parent, XtNmappedWhenManaged, mapped,
                                      XtNx, x, XtNy, y, XtNwidth, size, XtNheight, size, nullptr);
  }
  // GCOVR_EXCL_BR_START: the toolkit ends the program rather than return no widget
  if (rootWidget != nullptr) XtRealizeWidget(rootWidget);
  // GCOVR_EXCL_BR_STOP
  return rootWidget;
}

tavrel::Bool16 mdInit() {
  gData->shell = mdInitUtils();
  return gData->shell != nullptr;
}

void mdTerm() {
  if (gData != nullptr && gData->shell != nullptr) XtDestroyWidget(gData->shell);
}

uint32_t mdGetBitmapSize(tavrel::Bitmap bitmap) {
  if (bitmap == 0 || rootWidget == nullptr) return 0;
  Window root;
  int x, y;
  unsigned width, height = 0, border, depth;
  XGetGeometry(XtDisplay(rootWidget), bitmap, &root, &x, &y, &width, &height, &border, &depth);
  return height;
}
