// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/opendialog.h"

#include <Xm/FileSB.h>
#include <Xm/TextF.h>

#include <filesystem>

#include "viewer/window/dialogbox.h"
#include "viewer/window/motif.h"
#include "viewer/window/toolkit.h"

namespace viewer {

void OpenDialog::show(const std::function<void(const std::string &)> &take) {
  char name[] = "openFile";
  ::Widget box = XmCreateFileSelectionDialog(toolkit_.shell(), name, nullptr, 0);
  const std::string directory = directory_.empty() ? std::filesystem::current_path().string() : directory_;
  const MotifString pattern("*.pdf"), shown(directory), open("Open");
  XtVaSetValues(box, XmNdirectory, static_cast<XmString>(shown), XmNpattern, static_cast<XmString>(pattern),
                XmNokLabelString, static_cast<XmString>(open), XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL,
                nullptr);
  setTitle(box, "Open");
  XtUnmanageChild(XmFileSelectionBoxGetChild(box, XmDIALOG_HELP_BUTTON));
  ::Widget field = XmFileSelectionBoxGetChild(box, XmDIALOG_TEXT);
  whenever(box, XmNokCallback, [this, box, field, take](const XEvent *) {
    char *chosen = XmTextFieldGetString(field);
    const std::string file = chosen == nullptr ? "" : chosen;
    XtFree(chosen);
    if (file.empty() || file.back() == '/') return;
    directory_ = std::filesystem::path(file).parent_path();
    destroyDialog(box);
    take(file);
  });
  whenever(box, XmNcancelCallback, [box](const XEvent *) { destroyDialog(box); });
  destroyWhenUnmapped(box);
  XtManageChild(box);
}

} // namespace viewer
