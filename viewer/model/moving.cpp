// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Turning pages, scrolling and zooming.
#include <algorithm>
#include <cmath>

#include "viewer/model/session.h"

namespace viewer {
namespace {

// The usual zoom steps.
constexpr double zoomSteps[] = {0.1, 0.25, 0.33, 0.5, 0.67, 0.75, 0.9, 1, 1.1, 1.25, 1.5, 1.75, 2, 2.5, 3, 4, 6, 8};

} // namespace

int32_t Session::pageCount() const { return front() == nullptr ? 0 : front()->model->pageCount(); }

int32_t Session::page() const { return view() == nullptr ? 0 : view()->page(); }

void Session::goToPage(int32_t page) {
  if (view() == nullptr) return;
  try {
    view()->showPage(std::clamp(page, 0, pageCount() - 1));
    if (!message_.empty()) setMessage("");
  } catch (const host::HostError &error) {
    reportError(error.what());
  }
  touch();
}

void Session::turn(int32_t pages) { goToPage(page() + pages); }

void Session::drag(int dx, int dy) {
  if (host::PageView *moved = view()) moved->scrollTo(moved->scrollX() + dx, moved->scrollY() + dy);
}

void Session::scroll(int dx, int dy) {
  host::PageView *moved = view();
  if (moved == nullptr) return;
  const int before = moved->scrollY();
  drag(dx, dy);
  if (dy == 0 || moved->scrollY() != before) return;
  const int32_t other = moved->page() + (dy > 0 ? 1 : -1);
  if (other < 0 || other >= pageCount()) return;
  const int x = moved->scrollX();
  goToPage(other);
  if (moved->page() == other) moved->scrollTo(x, dy > 0 ? 0 : moved->pageHeight());
}

void Session::scrollWindow(int direction) {
  // A tenth of the window stays visible.
  scroll(0, direction * std::max(windowHeight_ * 9 / 10, 1));
}

double Session::position() const {
  return view() == nullptr ? 0 : page() + std::min(0.999, 1.0 * view()->scrollY() / std::max(1, view()->pageHeight()));
}

void Session::setPosition(double position) {
  if (view() == nullptr) return;
  const double clamped = std::clamp(position, 0.0, pageCount() - 1e-3);
  const int x = view()->scrollX();
  goToPage(static_cast<int32_t>(clamped));
  view()->scrollTo(x, static_cast<int>(std::lround((clamped - std::floor(clamped)) * view()->pageHeight())));
}

double Session::visibleShare() const {
  return view() == nullptr || windowHeight_ == 0 ? 1 : std::min(1.0, 1.0 * windowHeight_ / view()->pageHeight());
}

double Session::zoom() const { return view() == nullptr ? 1 : view()->dpi() / screenDpi_; }

void Session::setZoom(double zoom) {
  if (view() == nullptr) return;
  view()->setDpi(zoom * screenDpi_);
  fit_ = host::Fit::none;
  touch();
}

void Session::zoomBy(int steps) {
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

void Session::setFit(host::Fit fit) {
  fit_ = fit;
  if (view() != nullptr) view()->setFit(fit);
  touch();
}

} // namespace viewer
