// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Columns of rows, each of a label with the keys and one with what they do: with as many lines, which are therefore at
// the same height. There are as many columns as fit on the screen; a list that is still too high scrolls.
#include "viewer/window/keysdialog.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/ScrollBar.h>
#include <Xm/ScrolledW.h>

#include <algorithm>
#include <string>

#include "viewer/window/keycolumns.h"
#include "viewer/window/motif.h"
#include "viewer/window/toolkit.h"
#include "viewer/window/translations.h"

namespace viewer {
namespace {

std::string joined(const std::vector<std::string> &lines) {
  std::string text;
  for (const std::string &line : lines)
    text += line + "\n";
  if (!text.empty()) text.pop_back();
  return text;
}

struct Size {
  int width, height;
};

::Widget makeList(const Toolkit &toolkit, ::Widget scrolled, const std::vector<KeyColumn> &columns) {
  ::Widget list = XtVaCreateWidget("list", xmRowColumnWidgetClass, scrolled, XmNorientation, XmHORIZONTAL, XmNpacking,
                                   XmPACK_TIGHT, XmNspacing, toolkit.pixels(12), nullptr);
  for (const KeyColumn &column : columns)
    for (const std::vector<std::string> &lines : {column.keys, column.sentences}) {
      ::Widget label =
          XtVaCreateManagedWidget("keysLabel", xmLabelWidgetClass, list, XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
      setLabel(label, joined(lines));
    }
  return list;
}

Size sizeOf(::Widget list) {
  XtWidgetGeometry wanted{};
  XtQueryGeometry(list, nullptr, &wanted);
  return {wanted.width, wanted.height};
}

// As few columns as the height of the screen allows, but no more than its width does.
::Widget makeFittingList(const Toolkit &toolkit, ::Widget scrolled, const std::vector<KeyRow> &rows, const Size &most) {
  constexpr size_t mostColumns = 4;
  ::Widget list = makeList(toolkit, scrolled, keyColumns(rows, 1));
  for (size_t count = 2; count <= mostColumns && sizeOf(list).height > most.height; ++count) {
    ::Widget more = makeList(toolkit, scrolled, keyColumns(rows, count));
    const bool fits = sizeOf(more).width <= most.width;
    XtDestroyWidget(fits ? list : more);
    if (!fits) break;
    list = more;
  }
  XtManageChild(list);
  return list;
}

constexpr char keys[] = "<Key>osfUp: keysDialog(-1)\n"
                        "<Key>osfDown: keysDialog(1)\n"
                        "<Key>osfPageUp: keysDialog(-page)\n"
                        "<Key>osfPageDown: keysDialog(page)\n"
                        "<Key>Home: keysDialog(-all)\n"
                        "<Key>osfBeginLine: keysDialog(-all)\n"
                        "<Key>End: keysDialog(all)\n"
                        "<Key>osfEndLine: keysDialog(all)\n";

// Scrolls the list that the widget has as its user data.
void scroll(::Widget widget, XEvent * /*event*/, String *arguments, Cardinal *count) {
  ::Widget scrolled = nullptr, bar = nullptr;
  XtVaGetValues(widget, XmNuserData, &scrolled, nullptr);
  if (scrolled == nullptr || *count == 0) return;
  XtVaGetValues(scrolled, XmNverticalScrollBar, &bar, nullptr);
  if (bar == nullptr || XtIsManaged(bar) == 0) return;
  int value = 0, size = 0, line = 0, page = 0, least = 0, most = 0;
  XmScrollBarGetValues(bar, &value, &size, &line, &page);
  XtVaGetValues(bar, XmNminimum, &least, XmNmaximum, &most, nullptr);
  const std::string what = arguments[0];
  const int distance = what.ends_with("1") ? line : what.ends_with("page") ? page : most - least;
  value = std::clamp(what.starts_with('-') ? value - distance : value + distance, least, most - size);
  XmScrollBarSetValues(bar, value, size, line, page, True);
}

} // namespace

// The button has the keyboard, and the keys that scroll.
::Widget KeysDialog::build(const std::vector<KeyRow> &rows) const {
  const int gap = toolkit_.pixels(10);
  char name[] = "keys", action[] = "keysDialog";
  XtActionsRec procedures[] = {{action, scroll}};
  XtAppAddActions(toolkit_.context(), procedures, XtNumber(procedures));
  ::Widget form = XmCreateFormDialog(toolkit_.shell(), name, nullptr, 0);
  const MotifString title("Keys");
  XtVaSetValues(form, XmNdialogTitle, static_cast<XmString>(title), XmNautoUnmanage, False, XmNhorizontalSpacing, gap,
                XmNverticalSpacing, gap, XmNdialogStyle, XmDIALOG_MODELESS, nullptr);
  ::Widget close = XtVaCreateManagedWidget("close", xmPushButtonWidgetClass, form, XmNbottomAttachment, XmATTACH_FORM,
                                           XmNrightAttachment, XmATTACH_FORM, XmNmarginWidth, gap, XmNmarginHeight,
                                           toolkit_.pixels(4), nullptr);
  setLabel(close, "OK");
  whenever(close, XmNactivateCallback, [form](const XEvent *) { XtUnmanageChild(form); });
  XtVaSetValues(form, XmNcancelButton, close, XmNdefaultButton, close, XmNinitialFocus, close, nullptr);
  ::Widget scrolled = XtVaCreateManagedWidget("scrolled", xmScrolledWindowWidgetClass, form, XmNscrollingPolicy,
                                              XmAUTOMATIC, XmNshadowThickness, 0, XmNleftAttachment, XmATTACH_FORM,
                                              XmNrightAttachment, XmATTACH_FORM, XmNtopAttachment, XmATTACH_FORM,
                                              XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, close, nullptr);
  XtVaSetValues(close, XmNuserData, scrolled, nullptr);
  XtOverrideTranslations(close, XtParseTranslationTable(withoutOtherModifiers(keys).c_str()));
  ::Widget bar = nullptr;
  XtVaGetValues(scrolled, XmNverticalScrollBar, &bar, nullptr);
  Dimension barWidth = 0, spacing = 0;
  XtVaGetValues(bar, XmNwidth, &barWidth, nullptr);
  XtVaGetValues(scrolled, XmNspacing, &spacing, nullptr);
  XtVaSetValues(bar, XmNtraversalOn, False, nullptr);
  const Screen *screen = XtScreen(form);
  const int frame = toolkit_.pixels(4);
  const Size most{WidthOfScreen(screen) * 9 / 10 - barWidth - spacing - frame, HeightOfScreen(screen) * 8 / 10 - frame};
  const Size wanted = sizeOf(makeFittingList(toolkit_, scrolled, rows, most));
  const bool scrolls = wanted.height > most.height;
  XtVaSetValues(scrolled, XmNwidth, std::min(wanted.width, most.width) + frame + (scrolls ? barWidth + spacing : 0),
                XmNheight, std::min(wanted.height, most.height) + frame, nullptr);
  return form;
}

void KeysDialog::show(const std::vector<KeyRow> &rows) {
  if (*open_ != nullptr) {
    XRaiseWindow(XtDisplay(*open_), XtWindow(XtParent(*open_)));
    return;
  }
  ::Widget form = build(rows);
  *open_ = form;
  whenever(form, XmNunmapCallback, [form](const XEvent *) { XtDestroyWidget(XtParent(form)); });
  whenever(form, XmNdestroyCallback, [open = open_](const XEvent *) { *open = nullptr; });
  XtManageChild(form);
}

} // namespace viewer
