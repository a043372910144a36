// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Two columns of rows, each of a label with the keys and one with what they do: with the same lines, which are so at
// the same height. It scrolls on a screen that is too small for it.
#include "viewer/window/keysdialog.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/ScrolledW.h>

#include <algorithm>
#include <string>
#include <utility>

#include "viewer/window/motif.h"
#include "viewer/window/toolkit.h"

namespace viewer {
namespace {

struct Column {
  std::vector<std::string> keys, sentences; // lines

  void add(const std::string &left, const std::string &right) {
    keys.push_back(left);
    sentences.push_back(right);
  }
};

bool beginsGroup(const std::vector<KeyRow> &rows, size_t i) { return i == 0 || rows[i].group != rows[i - 1].group; }

// Several keys on as many lines as they need.
void add(Column &column, const KeyRow &row) {
  constexpr size_t longest = 24;
  std::string line, sentence = row.sentence;
  size_t start = 0;
  while (start < row.keys.size()) {
    const size_t end = std::min(row.keys.find(", ", start), row.keys.size());
    const std::string key = row.keys.substr(start, end - start);
    if (!line.empty() && line.size() + key.size() > longest) {
      column.add(line + ",", std::exchange(sentence, ""));
      line.clear();
    }
    line += (line.empty() ? "   " : ", ") + key;
    start = end + 2;
  }
  column.add(line, sentence);
}

// Two columns with as many lines. Groups stay together; a heading and an empty line belong to each.
std::vector<Column> columnsOf(const std::vector<KeyRow> &rows) {
  std::vector<Column> columns(1);
  size_t lines = rows.size();
  for (size_t i = 0; i < rows.size(); ++i)
    if (beginsGroup(rows, i)) lines += 2;
  for (size_t i = 0; i < rows.size(); ++i) {
    if (beginsGroup(rows, i)) {
      if (columns.size() == 1 && columns.back().keys.size() >= lines / 2) columns.emplace_back();
      if (!columns.back().keys.empty()) columns.back().add("", "");
      columns.back().add(rows[i].group, "");
    }
    add(columns.back(), rows[i]);
  }
  while (columns.size() == 2 && columns[1].keys.size() < columns[0].keys.size())
    columns[1].add("", "");
  while (columns.size() == 2 && columns[0].keys.size() < columns[1].keys.size())
    columns[0].add("", "");
  return columns;
}

std::string joined(const std::vector<std::string> &lines) {
  std::string text;
  for (const std::string &line : lines)
    text += line + "\n";
  if (!text.empty()) text.pop_back();
  return text;
}

} // namespace

::Widget KeysDialog::build(const std::vector<KeyRow> &rows) const {
  const int gap = toolkit_.pixels(10);
  char name[] = "keys";
  ::Widget form = XmCreateFormDialog(toolkit_.shell(), name, nullptr, 0);
  const MotifString title("Keys");
  XtVaSetValues(form, XmNdialogTitle, static_cast<XmString>(title), XmNautoUnmanage, False, XmNhorizontalSpacing, gap,
                XmNverticalSpacing, gap, XmNdialogStyle, XmDIALOG_MODELESS, nullptr);
  ::Widget close = XtVaCreateManagedWidget("close", xmPushButtonWidgetClass, form, XmNbottomAttachment, XmATTACH_FORM,
                                           XmNrightAttachment, XmATTACH_FORM, XmNmarginWidth, gap, XmNmarginHeight,
                                           toolkit_.pixels(4), nullptr);
  setLabel(close, "OK");
  whenever(close, XmNactivateCallback, [form](const XEvent *) { XtUnmanageChild(form); });
  XtVaSetValues(form, XmNcancelButton, close, XmNdefaultButton, close, nullptr);
  ::Widget scrolled = XtVaCreateManagedWidget("scrolled", xmScrolledWindowWidgetClass, form, XmNscrollingPolicy,
                                              XmAUTOMATIC, XmNshadowThickness, 0, XmNleftAttachment, XmATTACH_FORM,
                                              XmNrightAttachment, XmATTACH_FORM, XmNtopAttachment, XmATTACH_FORM,
                                              XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, close, nullptr);
  ::Widget list = XtVaCreateWidget("list", xmRowColumnWidgetClass, scrolled, XmNorientation, XmHORIZONTAL, XmNpacking,
                                   XmPACK_TIGHT, XmNspacing, toolkit_.pixels(12), nullptr);
  for (const Column &column : columnsOf(rows))
    for (const std::vector<std::string> &lines : {column.keys, column.sentences}) {
      ::Widget label =
          XtVaCreateManagedWidget("keysLabel", xmLabelWidgetClass, list, XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
      setLabel(label, joined(lines));
    }
  XtManageChild(list);
  XtWidgetGeometry wanted{};
  XtQueryGeometry(list, nullptr, &wanted);
  const Screen *screen = XtScreen(form);
  const int frame = toolkit_.pixels(4);
  XtVaSetValues(scrolled, XmNwidth, std::min(wanted.width + frame, WidthOfScreen(screen) * 9 / 10), XmNheight,
                std::min(wanted.height + frame, HeightOfScreen(screen) * 8 / 10), nullptr);
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
