// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/openlayout.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

#include <algorithm>

#include "viewer/window/dialogbox.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

XRectangle extentOf(::Widget label, const std::string &text) {
  XmRenderTable fonts = nullptr;
  XtVaGetValues(label, XmNrenderTable, &fonts, nullptr);
  const MotifString line(text);
  XRectangle extent{};
  XmStringExtent(fonts, line, &extent.width, &extent.height);
  return extent;
}

enum Edge { left, right, top, bottom };

// Attaches an edge of a widget to the nearest edge of another one, or to the form.
void attach(::Widget widget, Edge edge, ::Widget to = nullptr) {
  static const struct {
    const char *how, *where;
  } names[] = {{XmNleftAttachment, XmNleftWidget},
               {XmNrightAttachment, XmNrightWidget},
               {XmNtopAttachment, XmNtopWidget},
               {XmNbottomAttachment, XmNbottomWidget}};
  XtVaSetValues(widget, names[edge].how, to == nullptr ? XmATTACH_FORM : XmATTACH_WIDGET, names[edge].where, to,
                nullptr);
}

::Widget makeList(::Widget form, const char *name, int line) {
  Arg values[5];
  XtSetArg(values[0], XmNlistSizePolicy, XmCONSTANT);
  XtSetArg(values[1], XmNselectionPolicy, XmBROWSE_SELECT);
  XtSetArg(values[2], XmNmatchBehavior, XmNONE);
  XtSetArg(values[3], XmNlistMarginWidth, line / 4);
  XtSetArg(values[4], XmNlistMarginHeight, line / 4);
  ::Widget list = XmCreateScrolledList(form, const_cast<char *>(name), values, XtNumber(values));
  ::Widget vertical = nullptr, horizontal = nullptr;
  XtVaGetValues(XtParent(list), XmNverticalScrollBar, &vertical, XmNhorizontalScrollBar, &horizontal, nullptr);
  const int thickness = line * 4 / 5;
  if (vertical != nullptr) XtVaSetValues(vertical, XmNwidth, thickness, nullptr);
  if (horizontal != nullptr) XtVaSetValues(horizontal, XmNheight, thickness, nullptr);
  XtManageChild(list);
  return list;
}

void layOut(const OpenWidgets &all, ::Widget fieldLabel) {
  constexpr int foldersShare = 27; // of 100
  ::Widget folders = XtParent(all.folders), files = XtParent(all.files);
  attach(all.up, top), attach(all.up, left);
  attach(all.path, top), attach(all.path, left, all.up), attach(all.path, right);
  XtVaSetValues(all.path, XmNbottomAttachment, XmATTACH_OPPOSITE_WIDGET, XmNbottomWidget, all.up, XmNbottomOffset, 0,
                nullptr);
  attach(fieldLabel, top, all.up), attach(fieldLabel, left);
  attach(all.field, top, all.up), attach(all.field, left, fieldLabel), attach(all.field, right);
  attach(all.cancel, bottom), attach(all.cancel, right);
  attach(all.open, bottom), attach(all.open, right, all.cancel);
  attach(all.all, bottom), attach(all.all, left);
  XtVaSetValues(all.all, XmNtopAttachment, XmATTACH_OPPOSITE_WIDGET, XmNtopWidget, all.open, XmNtopOffset, 0, nullptr);
  attach(all.message, bottom, all.open), attach(all.message, left), attach(all.message, right);
  for (::Widget list : {folders, files})
    attach(list, top, all.field), attach(list, bottom, all.message);
  attach(folders, left);
  XtVaSetValues(folders, XmNrightAttachment, XmATTACH_POSITION, XmNrightPosition, foldersShare, XmNrightOffset, 0,
                nullptr);
  attach(files, left, folders), attach(files, right);
}

} // namespace

OpenWidgets makeOpenWidgets(::Widget shell) {
  OpenWidgets all{};
  char name[] = "openFile";
  all.form = XmCreateFormDialog(shell, name, nullptr, 0);
  setTitle(all.form, "Open");
  all.path = XtVaCreateManagedWidget("path", xmLabelWidgetClass, all.form, XmNalignment, XmALIGNMENT_BEGINNING,
                                     XmNrecomputeSize, False, nullptr);
  const std::string sample = "abcdefghijklmnopqrstuvwxyz";
  const XRectangle extent = extentOf(all.path, sample);
  const int character = std::max(1, extent.width / static_cast<int>(sample.size())), line = extent.height,
            gap = line / 2;
  const Screen *screen = XtScreen(shell);
  XtVaSetValues(all.form, XmNresizePolicy, XmRESIZE_NONE, XmNautoUnmanage, False, XmNdialogStyle,
                XmDIALOG_FULL_APPLICATION_MODAL, XmNhorizontalSpacing, gap, XmNverticalSpacing, gap, XmNwidth,
                std::min(110 * character, WidthOfScreen(screen) * 9 / 10), XmNheight,
                std::min(30 * line, HeightOfScreen(screen) * 8 / 10), nullptr);
  XtVaSetValues(XtParent(all.form), XmNminWidth, 50 * character, XmNminHeight, 16 * line, nullptr);

  const auto make = [&](const char *called, WidgetClass type, const char *label) {
    const int margin = type == xmPushButtonWidgetClass ? gap : 0;
    ::Widget widget =
        XtVaCreateManagedWidget(called, type, all.form, XmNmarginHeight, gap / 3, XmNmarginWidth, margin, nullptr);
    setLabel(widget, label);
    return widget;
  };
  all.field = XtVaCreateManagedWidget("fileName", xmTextFieldWidgetClass, all.form, XmNmarginHeight, gap / 3, nullptr);
  ::Widget fieldLabel = make("fileNameLabel", xmLabelWidgetClass, "Name:");
  all.folders = makeList(all.form, "folders", line);
  all.files = makeList(all.form, "files", line);
  all.all = make("allFiles", xmToggleButtonWidgetClass, "All files");
  all.up = make("parent", xmPushButtonWidgetClass, "Up");
  all.message = XtVaCreateManagedWidget("message", xmLabelWidgetClass, all.form, XmNalignment, XmALIGNMENT_BEGINNING,
                                        XmNrecomputeSize, False, nullptr);
  setLabel(all.message, " ");
  all.open = make("open", xmPushButtonWidgetClass, "Open");
  all.cancel = make("cancel", xmPushButtonWidgetClass, "Cancel");
  layOut(all, fieldLabel);
  XtVaSetValues(all.form, XmNinitialFocus, all.field, XmNdefaultButton, all.open, XmNcancelButton, all.cancel, nullptr);
  return all;
}

void fillList(::Widget list, const std::vector<std::string> &names) {
  std::vector<XmString> items;
  items.reserve(names.size());
  for (const std::string &name : names)
    items.push_back(XmStringCreateLocalized(const_cast<char *>(name.c_str())));
  XmListDeleteAllItems(list);
  XmListAddItems(list, items.data(), static_cast<int>(items.size()), 1);
  for (XmString item : items)
    XmStringFree(item);
}

int selectedIn(::Widget list) {
  int *positions = nullptr, count = 0, first = 0;
  if (XmListGetSelectedPos(list, &positions, &count) != False && count > 0) first = positions[0];
  XtFree(reinterpret_cast<char *>(positions));
  return first - 1;
}

void selectIn(::Widget list, int position) {
  XmListDeselectAllItems(list);
  if (position < 0) return;
  const int item = position + 1; // the toolkit counts from 1
  XmListSelectPos(list, item, False);
  XmListSetKbdItemPos(list, item);
  int first = 0, visible = 0;
  XtVaGetValues(list, XmNtopItemPosition, &first, XmNvisibleItemCount, &visible, nullptr);
  if (item < first) XmListSetPos(list, item);
  if (item >= first + visible) XmListSetBottomPos(list, item);
}

void showPath(::Widget label, const std::string &path) {
  Dimension width = 0, margin = 0;
  XtVaGetValues(label, XmNwidth, &width, XmNmarginWidth, &margin, nullptr);
  const int available = width - 2 * margin;
  std::string shown = path;
  for (size_t slash = 0; extentOf(label, shown).width > available; shown = "\u2026" + path.substr(slash)) {
    slash = path.find('/', slash + 1);
    if (slash == std::string::npos) break;
  }
  setLabel(label, shown);
}

} // namespace viewer
