// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/dialogstate.h"

#include <X11/IntrinsicP.h>

#include <X11/CoreP.h>
#include <X11/ShellP.h>

#include <Xm/Label.h>
#include <Xm/LabelG.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/PushBG.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

#include <string>

#include "viewer/window/motif.h"
#include "viewer/window/openlayout.h"

namespace viewer {
namespace {

// With the line feeds, which are no characters of the toolkit's strings.
std::string plainText(XmString string) {
  XmStringContext context = nullptr;
  std::string text;
  if (string == nullptr || XmStringInitContext(&context, string) == 0) return text;
  for (XmStringComponentType type = XmSTRING_COMPONENT_UNKNOWN; type != XmSTRING_COMPONENT_END;) {
    unsigned length = 0;
    XtPointer value = nullptr;
    type = XmStringGetNextTriple(context, &length, &value);
    if (type == XmSTRING_COMPONENT_TEXT || type == XmSTRING_COMPONENT_LOCALE_TEXT)
      text.append(static_cast<const char *>(value), length);
    if (type == XmSTRING_COMPONENT_SEPARATOR) text += '\n';
    XtFree(static_cast<char *>(value));
  }
  XmStringFreeContext(context);
  return text;
}

std::string labelOf(::Widget widget) {
  XmString label = nullptr;
  XtVaGetValues(widget, XmNlabelString, &label, nullptr);
  std::string copy = plainText(label);
  if (label != nullptr) XmStringFree(label);
  return copy;
}

std::vector<std::string> itemsOf(::Widget list) {
  XmStringTable items = nullptr;
  int count = 0;
  XtVaGetValues(list, XmNitems, &items, XmNitemCount, &count, nullptr);
  std::vector<std::string> texts;
  texts.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i)
    texts.push_back(plainText(items[i]));
  return texts;
}

// Collects the texts, buttons, lists and fields below a widget.
void lookBelow(::Widget widget, DialogState &dialog) {
  if (XtIsManaged(widget) == 0) return;
  const auto is = [widget](WidgetClass type) { return XtIsSubclass(widget, type) != 0; };
  if (is(xmPushButtonWidgetClass) || is(xmPushButtonGadgetClass) || is(xmToggleButtonWidgetClass)) {
    dialog.buttons.push_back({labelOf(widget), {}, XtIsSensitive(widget) != 0, placeOf(widget)});
  } else if (is(xmLabelWidgetClass) || is(xmLabelGadgetClass)) {
    dialog.texts.push_back(labelOf(widget));
  } else if (is(xmTextFieldWidgetClass)) {
    dialog.fields.push_back({XtName(widget), textOf(widget), placeOf(widget)});
  } else if (is(xmListWidgetClass)) {
    dialog.lists.push_back({XtName(widget), itemsOf(widget), selectedIn(widget), placeOf(widget)});
  } else if (XtIsComposite(widget) != 0) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal i = 0; i < count; ++i)
      lookBelow(children[i], dialog);
  }
}

} // namespace

std::vector<DialogState> dialogsBelow(::Widget shell) {
  std::vector<DialogState> all;
  for (Cardinal i = 0; i < shell->core.num_popups; ++i) {
    ::Widget popup = shell->core.popup_list[i];
    WidgetList children = nullptr;
    Cardinal count = 0;
    if (XtIsShell(popup) == 0 || reinterpret_cast<ShellWidget>(popup)->shell.popped_up == 0) continue;
    XtVaGetValues(popup, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    if (count == 0) continue;
    all.push_back({XtName(children[0]), {}, {}, {}, placeOf(popup)});
    lookBelow(children[0], all.back());
  }
  return all;
}

} // namespace viewer
