// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/findkeys.h"

#include <string>

#include "viewer/window/motif.h"

namespace viewer {
namespace {

std::function<void(bool backwards)> s_find; // of the only dialog: the toolkit's action procedures get no client data

constexpr char keysEverywhere[] = "Ctrl Shift ~Mod1<Key>g: findDialog(previous)\n"
                                  "Ctrl ~Shift ~Mod1<Key>g: findDialog(next)\n"
                                  "~Ctrl Shift ~Mod1<Key>F3: findDialog(previous)\n"
                                  "~Ctrl ~Shift ~Mod1<Key>F3: findDialog(next)\n";
constexpr char keysOfField[] = "~Ctrl Shift ~Mod1<Key>Return: findDialog(previous)\n"
                               "~Ctrl Shift ~Mod1<Key>KP_Enter: findDialog(previous)\n"
                               "~Ctrl Shift ~Mod1<Key>osfActivate: findDialog(previous)\n";

void act(::Widget /*widget*/, XEvent * /*event*/, String *arguments, Cardinal *count) {
  if (s_find && *count == 1) guarded([&] { s_find(std::string(arguments[0]) == "previous"); });
}

} // namespace

void addFindKeys(::Widget field, std::initializer_list<::Widget> others,
                 const std::function<void(bool backwards)> &find) {
  char name[] = "findDialog";
  XtActionsRec procedures[] = {{name, act}};
  XtAppAddActions(XtWidgetToApplicationContext(field), procedures, XtNumber(procedures));
  s_find = find;
  XtOverrideTranslations(field, XtParseTranslationTable(keysEverywhere));
  XtOverrideTranslations(field, XtParseTranslationTable(keysOfField));
  for (::Widget other : others)
    XtOverrideTranslations(other, XtParseTranslationTable(keysEverywhere));
  whenever(field, XmNdestroyCallback, [](const XEvent *) { s_find = {}; });
}

} // namespace viewer
