// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/openkeys.h"

#include <X11/Xutil.h>

#include <cctype>
#include <cstdlib>
#include <utility>

#include "viewer/model/onelinetext.h"
#include "viewer/window/motif.h"
#include "viewer/window/translations.h"

namespace viewer {
namespace {

OpenKeys *s_keys; // of the open dialog: the toolkit's action procedures get no client data

constexpr char keysEverywhere[] = "Mod1<Key>osfUp: openDialog(up)\n";
constexpr char keysOfField[] = "<Key>osfUp: openDialog(select, -1)\n"
                               "<Key>osfDown: openDialog(select, 1)\n"
                               "<Key>osfPageUp: openDialog(select, -10)\n"
                               "<Key>osfPageDown: openDialog(select, 10)\n"
                               "<Key>Tab: openDialog(complete)\n"
                               "<Key>osfBackSpace: openDialog(erase)\n";
constexpr char keysOfLists[] = "<Key>osfBackSpace: openDialog(up)\n";

void override(::Widget widget, const std::string &keys) {
  XtOverrideTranslations(widget, XtParseTranslationTable(withoutOtherModifiers(keys).c_str()));
}

void act(::Widget widget, XEvent *event, String *arguments, Cardinal *count) {
  if (s_keys == nullptr || *count == 0) return;
  guarded([&] {
    const std::string what = arguments[0];
    const bool empty = !s_keys->hasText();
    if (what == "up" || (what == "erase" && empty)) s_keys->goUp();
    if (what == "erase" && !empty) XtCallActionProc(widget, "delete-previous-character", event, nullptr, 0);
    if (what == "complete") s_keys->complete();
    if (what == "select" && *count > 1) s_keys->selectBy(std::atoi(arguments[1]));
  });
}

// The list handles the key as well: it selects with a space, and ignores other characters. Tab and the like are no
// text.
void typedInList(::Widget /*list*/, XtPointer /*data*/, XEvent *event, Boolean * /*dispatch*/) {
  char typed[16];
  const int length = XLookupString(&event->xkey, typed, sizeof typed, nullptr, nullptr);
  const bool held = (event->xkey.state & (ControlMask | Mod1Mask | Mod4Mask)) != 0;
  if (s_keys == nullptr || length != 1 || held || std::iscntrl(static_cast<unsigned char>(typed[0])) != 0) return;
  const std::string character = oneLine(utf8OfLatin1(std::string(typed, 1)));
  if (!character.empty() && (character != " " || s_keys->hasText())) guarded([&] { s_keys->type(character); });
}

} // namespace

std::string openTranslations() {
  return withoutOtherModifiers(std::string(keysEverywhere) + keysOfField + keysOfLists);
}

void addKeys(XtAppContext context, const OpenWidgets &widgets, OpenKeys &keys) {
  static bool s_known = false;
  if (!std::exchange(s_known, true)) {
    char name[] = "openDialog";
    XtActionsRec procedures[] = {{name, act}};
    XtAppAddActions(context, procedures, XtNumber(procedures));
  }
  s_keys = &keys;
  for (::Widget one :
       {widgets.all, widgets.up, widgets.open, widgets.cancel, widgets.field, widgets.folders, widgets.files})
    override(one, keysEverywhere);
  override(widgets.field, keysOfField);
  for (::Widget list : {widgets.folders, widgets.files}) {
    override(list, keysOfLists);
    XtAddEventHandler(list, KeyPressMask, False, typedInList, nullptr);
  }
  whenever(widgets.form, XmNdestroyCallback, [](const XEvent *) { s_keys = nullptr; });
}

} // namespace viewer
