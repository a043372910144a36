// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/findkeys.h"

#include <string>

#include "viewer/window/motif.h"
#include "viewer/window/translations.h"

namespace viewer {
namespace {

std::function<void(bool backwards)> s_find; // of the only dialog: the toolkit's action procedures get no client data

constexpr char keysEverywhere[] = "Ctrl<Key>g: findDialog(next)\n"
                                  "<Key>F3: findDialog(next)\n"
                                  "Ctrl Shift<Key>g: findDialog(previous)\n"
                                  "Shift<Key>F3: findDialog(previous)\n";
constexpr char keysOfField[] = "Shift<Key>Return: findDialog(previous)\n"
                               "Shift<Key>KP_Enter: findDialog(previous)\n"
                               "Shift<Key>osfActivate: findDialog(previous)\n";

void override(::Widget widget, const std::string &keys) {
  XtOverrideTranslations(widget, XtParseTranslationTable(withoutOtherModifiers(keys).c_str()));
}

void act(::Widget /*widget*/, XEvent * /*event*/, String *arguments, Cardinal *count) {
  if (s_find && *count == 1) guarded([&] { s_find(std::string(arguments[0]) == "previous"); });
}

} // namespace

std::string findTranslations() { return withoutOtherModifiers(std::string(keysEverywhere) + keysOfField); }

void addFindKeys(::Widget field, std::initializer_list<::Widget> others,
                 const std::function<void(bool backwards)> &find) {
  char name[] = "findDialog";
  XtActionsRec procedures[] = {{name, act}};
  XtAppAddActions(XtWidgetToApplicationContext(field), procedures, XtNumber(procedures));
  s_find = find;
  override(field, std::string(keysEverywhere) + keysOfField);
  for (::Widget other : others)
    override(other, keysEverywhere);
  whenever(field, XmNdestroyCallback, [](const XEvent *) { s_find = {}; });
}

} // namespace viewer
