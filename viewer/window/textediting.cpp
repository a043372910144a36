// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The keys, and the text fields that have them.
#include "viewer/window/textediting.h"

#include <map>
#include <memory>

#include "viewer/window/motif.h"
#include "viewer/window/paste.h"
#include "viewer/window/translations.h"

namespace viewer {
namespace {

// Ctrl+Insert and its like are older than Ctrl+C. The toolkit keeps the selection when the cursor is already where a
// key moves it: the next character would replace all.
constexpr char keys[] = "Ctrl Shift<Key>z: edit(redo)\n"
                        "Ctrl<Key>z: edit(undo)\n"
                        "Ctrl<Key>y: edit(redo)\n"
                        "Ctrl<Key>c: edit(copy)\n"
                        "Ctrl<Key>x: edit(cut)\n"
                        "Ctrl<Key>v: edit(paste)\n"
                        "Ctrl<Key>a: edit(selectAll)\n"
                        "Ctrl<Key>osfInsert: edit(copy)\n"
                        "Shift<Key>osfInsert: edit(paste)\n"
                        "Shift<Key>osfDelete: edit(cut)\n"
                        "<Key>osfCopy: edit(copy)\n"
                        "<Key>osfCut: edit(cut)\n"
                        "<Key>osfPaste: edit(paste)\n"
                        "<Key>osfUndo: edit(undo)\n"
                        "Ctrl<Key>osfBackSpace: delete-previous-word()\n"
                        "Ctrl<Key>osfDelete: delete-next-word()\n"
                        "<Key>osfLeft: deselect-all() backward-character()\n"
                        "<Key>osfRight: deselect-all() forward-character()\n"
                        "<Key>osfBeginLine: deselect-all() beginning-of-line()\n"
                        "<Key>osfEndLine: deselect-all() end-of-line()\n";

// The toolkit's translations ignore these modifiers: they would move the cursor nevertheless. Nothing is typed with
// Alt, which is Mod1, and with Mod4; AltGr, which is Mod5, types characters.
constexpr char otherKeys[] = "Mod1<Key>: edit()\n"
                             "Mod4<Key>: edit()\n"
                             "Mod5<Key>osfLeft: edit()\n"
                             "Mod5<Key>osfRight: edit()\n"
                             "Mod5<Key>osfBeginLine: edit()\n"
                             "Mod5<Key>osfEndLine: edit()\n"
                             "Mod5<Key>osfBackSpace: edit()\n"
                             "Mod5<Key>osfDelete: edit()\n"
                             "Mod5<Key>osfActivate: edit()\n"
                             "Mod5<Key>Return: edit()\n"
                             "Mod5<Key>KP_Enter: edit()\n";

std::map<::Widget, std::unique_ptr<TextField>> &fields() {
  static std::map<::Widget, std::unique_ptr<TextField>> s_fields;
  return s_fields;
}

// The answer may arrive when the field is no longer there.
void paste(::Widget field, ::Time time) {
  const unsigned number = fields().at(field)->number();
  pasteFromClipboard(field, time, [field, number](const std::string &text) {
    const auto there = fields().find(field);
    if (there != fields().end() && there->second->number() == number) there->second->insert(text);
  });
}

void edit(::Widget field, XEvent *event, String *arguments, Cardinal *count) {
  const auto found = fields().find(field);
  if (found == fields().end() || *count == 0) return;
  TextField &text = *found->second;
  const ::Time time = event != nullptr && event->type == KeyPress ? event->xkey.time : CurrentTime;
  const std::string what = arguments[0];
  guarded([&] {
    if (what == "copy") text.copy(time);
    if (what == "cut") text.cut(time);
    if (what == "paste") paste(field, time);
    if (what == "selectAll") text.selectAll(time);
    if (what == "undo") text.undo();
    if (what == "redo") text.redo();
  });
}

} // namespace

void editAsUsual(::Widget field, Shows shows) {
  static unsigned s_number = 0;
  if (s_number == 0) {
    char name[] = "edit";
    XtActionsRec procedures[] = {{name, edit}};
    XtAppAddActions(XtWidgetToApplicationContext(field), procedures, XtNumber(procedures));
  }
  fields()[field] = std::make_unique<TextField>(field, shows, ++s_number);
  whenever(field, XmNdestroyCallback, [field](const XEvent *) { fields().erase(field); });
  XtOverrideTranslations(field, XtParseTranslationTable((fieldTranslations() + otherKeys).c_str()));
}

std::string fieldTranslations() { return withoutOtherModifiers(keys); }

std::string editedText(::Widget field) { return fields().at(field)->text(); }

void replaceText(::Widget field, const std::string &text) { fields().at(field)->replace(text); }

} // namespace viewer
