// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/rowpainter.h"

#include <algorithm>

#include "viewer/window/colors.h"
#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"
#include "viewer/window/textfit.h"

namespace viewer {
namespace {

constexpr double margin = 8, leading = 5; // in pixels at 96 dots per inch

} // namespace

RowPainter::RowPainter(MainWindow &window, ::Widget rows, ::Widget label)
    : window_(window), rows_(rows),
      context_(XCreateGC(window.toolkit().display(), DefaultRootWindow(window.toolkit().display()), 0, nullptr)),
      currentColor_(colorResource(window.toolkit().shell(), "currentRowColor", "CurrentRowColor", "#6894DA")),
      markColor_(colorResource(window.toolkit().shell(), "rowMarkColor", "RowMarkColor", "#FFE98A")),
      noteColor_(colorResource(window.toolkit().shell(), "noteColor", "NoteColor", "#70757C")) {
  XtVaGetValues(label, XmNrenderTable, &fonts_, nullptr);
  XtVaGetValues(rows_, XmNbackground, &background_, XmNforeground, &foreground_, nullptr);
  const MotifString high("\u00C5g");
  rowHeight_ = XmStringHeight(fonts_, high) + window_.pixels(leading);
  margin_ = window_.pixels(margin);
}

RowPainter::~RowPainter() { XFreeGC(window_.toolkit().display(), context_); }

int RowPainter::digits(int count) const { return widthOf(std::string(static_cast<size_t>(count), '0')); }

int RowPainter::widthOf(const std::string &text) const {
  const MotifString string(text);
  return XmStringWidth(fonts_, string);
}

void RowPainter::draw(const std::string &text, Pixel color, int x, int y) {
  const MotifString string(text);
  XSetForeground(XtDisplay(rows_), context_, color);
  XmStringDraw(XtDisplay(rows_), XtWindow(rows_), fonts_, string, context_, static_cast<Position>(x),
               static_cast<Position>(y + window_.pixels(leading / 2)), XmStringWidth(fonts_, string),
               XmALIGNMENT_BEGINNING, XmSTRING_DIRECTION_L_TO_R, nullptr);
}

void RowPainter::fill(Pixel color, int x, int y, int width) {
  XSetForeground(XtDisplay(rows_), context_, color);
  XFillRectangle(XtDisplay(rows_), XtWindow(rows_), context_, x, y, static_cast<unsigned>(std::max(0, width)),
                 static_cast<unsigned>(rowHeight_));
}

// The text is drawn at once, over the marks: its characters are where they would be without marks.
void RowPainter::paintText(const host::ListText &text, int x, int y, int width) {
  const std::string shown = fitted(text.text, width, [this](const std::string &part) { return widthOf(part); });
  const size_t ellipsis = shown == text.text ? 0 : std::string("\u2026").size(), whole = shown.size() - ellipsis;
  const size_t start = std::min(text.markStart, whole), end = std::min(text.markStart + text.markLength, whole);
  const int left = widthOf(shown.substr(0, start)), right = widthOf(shown.substr(0, end));
  if (end > start) fill(markColor_, x + left, y, right - left);
  draw(shown, foreground_, x, y);
}

void RowPainter::paint(const host::ListText *text, int y, const RowMarks &marks) {
  Dimension width = 0;
  XtVaGetValues(rows_, XmNwidth, &width, nullptr);
  fill(marks.current ? currentColor_ : background_, 0, y, width);
  const int widest = static_cast<int>(std::to_string(window_.model().documents.pageCount()).size());
  const int numbers = margin_ + digits(widest), begin = numbers + margin_;
  const Pixel quiet = marks.current ? foreground_ : noteColor_; // the note's colour is too weak on that of the row
  if (text != nullptr && text->page >= 0) {
    const std::string number = std::to_string(text->page + 1);
    draw(number, quiet, numbers - widthOf(number), y);
  }
  if (text != nullptr)
    paintText(*text, begin, y, width - begin - margin_ / 2);
  else
    draw("\u2026", quiet, begin, y);
  if (!marks.cursor) return;
  XSetForeground(XtDisplay(rows_), context_, quiet);
  XDrawRectangle(XtDisplay(rows_), XtWindow(rows_), context_, 0, y, width - 1U, static_cast<unsigned>(rowHeight_ - 1));
}

} // namespace viewer
