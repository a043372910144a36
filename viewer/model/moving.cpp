// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/moving.h"

#include <algorithm>
#include <cmath>

namespace viewer {
namespace {

// The usual zoom steps.
constexpr double zoomSteps[] = {0.1, 0.25, 0.33, 0.5, 0.67, 0.75, 0.9, 1, 1.1, 1.25, 1.5, 1.75, 2, 2.5, 3, 4, 6, 8};

} // namespace

void Moving::fitToWindow(PageWindow &shown) const {
  shown.setMargin(margin_);
  if (windowWidth_ > 0) shown.setWindow(windowWidth_, windowHeight_);
}

void Moving::fitAtFirst(PageWindow &shown) const {
  fitToWindow(shown);
  shown.setFit(fit_);
}

double Moving::firstDpi(host::Document &document) const {
  PageWindow window(document, documents_.screenDpi);
  fitAtFirst(window);
  return window.dpi();
}

void Moving::opens(const OpenDocument &document) { fitAtFirst(*document.window); }

void Moving::replaces(const OpenDocument &before, const OpenDocument &now) {
  const PageWindow &old = *before.window;
  PageWindow &window = *now.window;
  if (old.fit() == Fit::none)
    window.setDpi(old.dpi());
  else
    window.setFit(old.fit());
  window.showPage(std::min(old.page(), now.document->model->pageCount() - 1));
  window.scrollTo(old.scrollX(), old.scrollY());
}

void Moving::frontChanged() {
  if (window() == nullptr) return;
  fitToWindow(*window());
  documents_.view()->invalidate();
}

void Moving::setWindow(int width, int height, int margin) {
  windowWidth_ = width;
  windowHeight_ = height;
  margin_ = margin;
  if (window() != nullptr) fitToWindow(*window());
  changes_.note(allParts);
}

void Moving::goToPage(int32_t page) {
  if (window() == nullptr) return;
  try {
    window()->showPage(std::clamp(page, 0, documents_.pageCount() - 1));
    if (!status_.message().empty()) status_.set("");
  } catch (const host::HostError &error) {
    status_.report(error.what());
  }
  changes_.note(allParts);
}

void Moving::turn(int32_t pages) { goToPage(documents_.page() + pages); }

void Moving::drag(int dx, int dy) {
  if (PageWindow *moved = window()) moved->scrollTo(moved->scrollX() + dx, moved->scrollY() + dy);
}

void Moving::scroll(int dx, int dy) {
  PageWindow *moved = window();
  if (moved == nullptr) return;
  const int before = moved->scrollY();
  drag(dx, dy);
  if (dy == 0 || moved->scrollY() != before) return;
  const int32_t other = moved->page() + (dy > 0 ? 1 : -1);
  if (other < 0 || other >= documents_.pageCount()) return;
  const int x = moved->scrollX();
  goToPage(other);
  if (moved->page() == other) moved->scrollTo(x, dy > 0 ? 0 : moved->pageHeight());
}

void Moving::scrollWindow(int direction) {
  // A tenth of the window stays visible.
  scroll(0, direction * std::max(windowHeight_ * 9 / 10, 1));
}

Slider Moving::slider() const {
  const ScrollScale scale(documents_.pageCount());
  PageWindow *shown = window();
  if (shown == nullptr) return scale.slider(0, 0, 1, 1);
  return scale.slider(shown->page(), shown->scrollY(), shown->pageHeight(), windowHeight_);
}

void Moving::setSlider(int value, int size) {
  PageWindow *moved = window();
  if (moved == nullptr || value == slider().value) return;
  const ScrollScale scale(documents_.pageCount());
  const bool end = value + size >= slider().range;
  const int32_t page = end ? documents_.pageCount() - 1 : scale.pageAt(value);
  const int x = moved->scrollX();
  goToPage(page);
  if (moved->page() != page) return; // it cannot be shown
  moved->scrollTo(x, end ? moved->pageHeight() : scale.yAt(value, moved->pageHeight()));
}

double Moving::zoom() const { return window() == nullptr ? 1 : window()->dpi() / documents_.screenDpi; }

void Moving::setZoom(double zoom) {
  if (window() == nullptr) return;
  window()->setDpi(zoom * documents_.screenDpi);
  fit_ = Fit::none;
  changes_.note(allParts);
}

void Moving::zoomBy(int steps) {
  constexpr double same = 0.005;
  const double now = zoom();
  if (steps > 0) {
    const auto *const next =
        std::find_if(std::begin(zoomSteps), std::end(zoomSteps), [=](double step) { return step > now + same; });
    if (next != std::end(zoomSteps)) setZoom(*next);
  } else {
    const auto next =
        std::find_if(std::rbegin(zoomSteps), std::rend(zoomSteps), [=](double step) { return step < now - same; });
    if (next != std::rend(zoomSteps)) setZoom(*next);
  }
}

void Moving::setFit(Fit fit) {
  fit_ = fit;
  if (window() != nullptr) window()->setFit(fit);
  changes_.note(allParts);
}

} // namespace viewer
