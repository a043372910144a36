// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/rowskeys.h"

#include <Xm/Xm.h>

#include "viewer/window/motif.h"
#include "viewer/window/translations.h"

namespace viewer {
namespace {

constexpr char table[] = "<Key>osfUp: rows(up)\n"
                         "<Key>osfDown: rows(down)\n"
                         "<Key>osfPageUp: rows(pageUp)\n"
                         "<Key>osfPageDown: rows(pageDown)\n"
                         "<Key>Home: rows(first)\n"
                         "<Key>osfBeginLine: rows(first)\n"
                         "<Key>End: rows(last)\n"
                         "<Key>osfEndLine: rows(last)\n"
                         "<Key>Return: rows(choose)\n"
                         "<Key>KP_Enter: rows(choose)\n"
                         "<Key>osfActivate: rows(choose)\n"
                         "<Key>osfCancel: rows(leave)\n";

void act(::Widget widget, XEvent * /*event*/, String *arguments, Cardinal *count) {
  RowsKeys *keys = nullptr;
  XtVaGetValues(widget, XmNuserData, &keys, nullptr);
  if (keys != nullptr && *count > 0) guarded([&] { keys->act(arguments[0]); });
}

} // namespace

std::string rowsTranslations() { return withoutOtherModifiers(table); }

void addRowsKeys(XtAppContext context, ::Widget rows, RowsKeys &keys) {
  char name[] = "rows";
  XtActionsRec procedures[] = {{name, act}};
  XtAppAddActions(context, procedures, XtNumber(procedures));
  XtVaSetValues(rows, XmNuserData, &keys, nullptr);
  XtOverrideTranslations(rows, XtParseTranslationTable(rowsTranslations().c_str()));
}

} // namespace viewer
