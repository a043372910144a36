// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/rowpainter.h"

#include "viewer/window/colors.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

constexpr double margin = 8, leading = 5; // in pixels at 96 dots per inch

} // namespace

RowPainter::RowPainter(MainWindow &window, ::Widget rows, ::Widget label)
    : window_(window), rows_(rows),
      context_(XCreateGC(window.toolkit().display(), DefaultRootWindow(window.toolkit().display()), 0, nullptr)),
      currentColor_(colorResource(window.toolkit().shell(), "currentRowColor", "CurrentRowColor", "#CFE0FA")),
      noteColor_(colorResource(window.toolkit().shell(), "noteColor", "NoteColor", "#70757C")) {
  XtVaGetValues(label, XmNrenderTable, &fonts_, nullptr);
  XtVaGetValues(rows_, XmNbackground, &background_, XmNforeground, &foreground_, nullptr);
  const MotifString high("\u00C5g");
  rowHeight_ = XmStringHeight(fonts_, high) + window_.pixels(leading);
  margin_ = window_.pixels(margin);
}

RowPainter::~RowPainter() { XFreeGC(window_.toolkit().display(), context_); }

int RowPainter::digits(int count) const {
  const MotifString text(std::string(static_cast<size_t>(count), '0'));
  return XmStringWidth(fonts_, text);
}

void RowPainter::draw(const std::string &text, Pixel color, int x, int y, bool toTheLeft) {
  const MotifString string(text);
  const Dimension width = XmStringWidth(fonts_, string);
  XSetForeground(XtDisplay(rows_), context_, color);
  XmStringDraw(XtDisplay(rows_), XtWindow(rows_), fonts_, string, context_,
               static_cast<Position>(toTheLeft ? x - width : x), static_cast<Position>(y + window_.pixels(leading / 2)),
               width, XmALIGNMENT_BEGINNING, XmSTRING_DIRECTION_L_TO_R, nullptr);
}

void RowPainter::paint(const host::ListText *text, int y, const RowMarks &marks) {
  Dimension width = 0;
  XtVaGetValues(rows_, XmNwidth, &width, nullptr);
  const auto height = static_cast<unsigned>(rowHeight_);
  XSetForeground(XtDisplay(rows_), context_, marks.current ? currentColor_ : background_);
  XFillRectangle(XtDisplay(rows_), XtWindow(rows_), context_, 0, y, width, height);
  const int widest = static_cast<int>(std::to_string(window_.model().documents.pageCount()).size());
  const int numbers = margin_ + digits(widest);
  if (text != nullptr && text->page >= 0) draw(std::to_string(text->page + 1), noteColor_, numbers, y, true);
  draw(text == nullptr ? "\u2026" : text->text, text == nullptr ? noteColor_ : foreground_, numbers + margin_, y);
  if (!marks.cursor) return;
  XSetForeground(XtDisplay(rows_), context_, noteColor_);
  XDrawRectangle(XtDisplay(rows_), XtWindow(rows_), context_, 0, y, width - 1U, height - 1U);
}

} // namespace viewer
