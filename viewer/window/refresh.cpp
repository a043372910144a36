// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/refresh.h"

#include <utility>

#include "viewer/window/mainwindow.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds retry(1000);    // after a drawing that failed
constexpr milliseconds noteDelay(300); // the note "rendering" is shown after this time
constexpr milliseconds menuDelay(100); // the menus do not wait longer for the first page

milliseconds since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
}

} // namespace

Refresh::Refresh(MainWindow &window, std::function<void(uint32_t)> showParts, std::function<bool()> fillMenus)
    : window_(window), showParts_(std::move(showParts)), fillMenus_(std::move(fillMenus)),
      waiting_(window.toolkit().context()), redraw_(window.toolkit().context()) {}

void Refresh::update() {
  bool shown = false;
  guarded([&] {
    show();
    shown = true;
  });
  const Screen &screen = window_.model().screen;
  // A page-draw procedure may have turned the page or scrolled.
  if (screen.needsDrawing()) redraw_.set(shown ? EventLoop::frame : retry);
  XFlush(window_.toolkit().display());
  const auto waiting = screen.waitingSince();
  if (!waiting || since(*waiting) > menuDelay)
    guarded([this] {
      if (fillMenus_()) show();
    });
}

void Refresh::show() {
  const Model &model = window_.model();
  const bool drawn = model.screen.draw();
  if (drawn && model.screen.shown().drawing && model.screen.shown().drawing->marks > 0) ++marks_;
  if (model.screen.showHighlights() || drawn) window_.pageArea().show();
  watchWaiting();
  showParts_(model.changes.take());
}

// Shows "rendering" on the outline of a page that takes long.
void Refresh::watchWaiting() {
  const Model &model = window_.model();
  const auto waiting = model.screen.waitingSince();
  if (!waiting) {
    const bool isEmpty = model.documents.front() == nullptr && !model.opener.opening() && !window_.app().calling();
    window_.pageArea().note(isEmpty ? window_.invitation() : model.tiles.error());
  } else if (const milliseconds waited = since(*waiting); waited >= noteDelay) {
    window_.pageArea().note("rendering");
  } else {
    waiting_.set(noteDelay - waited + milliseconds(1));
  }
}

} // namespace viewer
