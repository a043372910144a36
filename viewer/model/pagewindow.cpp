// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/pagewindow.h"

#include <algorithm>
#include <cmath>

namespace viewer {
namespace {

constexpr double pointsPerInch = 72;

} // namespace

void PageWindow::showPage(int32_t page) {
  host::checkedPage(page, document_.pageCount());
  if (page == page_) return;
  page_ = page;
  chooseDpi();
  scrollX_ = scrollY_ = 0;
  noteChange();
}

void PageWindow::setDpi(double dpi) {
  fit_ = Fit::none;
  wantedDpi_ = dpi;
  chooseDpi();
}

void PageWindow::setFit(Fit fit) {
  fit_ = fit;
  if (fit == Fit::none) wantedDpi_ = dpi_;
  chooseDpi();
}

double PageWindow::largestDpi(int32_t page) {
  const host::PageSize size = document_.pageSize(page);
  // A pixel less on each side, because sizes are rounded up.
  const double byArea = std::sqrt(largestImage / (size.width * size.height)) - 1 / std::min(size.width, size.height);
  const double bySide = (host::longestSide - 1) / std::max(size.width, size.height);
  return std::min(byArea, bySide) * pointsPerInch;
}

double PageWindow::dpiOf(int32_t page) {
  if (window_.width <= 0) return wantedDpi_;
  constexpr double smallest = 8;
  const host::PageSize size = document_.pageSize(page);
  const double byWidth = window_.width * pointsPerInch / size.width;
  const double byHeight = window_.height * pointsPerInch / size.height;
  const double dpi = fit_ == Fit::width ? byWidth : fit_ == Fit::page ? std::min(byWidth, byHeight) : wantedDpi_;
  const double largest = largestDpi(page);
  return std::clamp(dpi, std::min(smallest, largest), largest);
}

// Keeps in place what is in the middle of the window; the top of a page stays at the top.
void PageWindow::chooseDpi() {
  const double dpi = dpiOf(page_);
  if (dpi == dpi_) return;
  const host::PixelSize before = window();
  const double ratio = dpi / dpi_;
  dpi_ = dpi;
  const host::PixelSize now = window();
  const auto moved = [&](int scroll, int sizeBefore, int sizeNow) {
    return static_cast<int>(std::lround((scroll + sizeBefore / 2.0) * ratio - sizeNow / 2.0));
  };
  const bool isScrolled = scrollX_ != 0 || drawn_;
  scrollTo(isScrolled ? moved(scrollX_, before.width, now.width) : 0,
           scrollY_ != 0 ? moved(scrollY_, before.height, now.height) : 0);
  noteChange();
}

void PageWindow::sizeIsKnown() {
  chooseDpi();
  scrollTo(scrollX_, scrollY_);
}

void PageWindow::setWindow(int width, int height) {
  if (width == window_.width && height == window_.height) return;
  const host::PixelSize before = window();
  const auto moved = [this](int scroll, int sizeBefore, int sizeNow) {
    return !drawn_ && scroll > 0 ? scroll + (sizeBefore - sizeNow) / 2 : scroll;
  };
  const int x = moved(scrollX_, before.width, width), y = moved(scrollY_, before.height, height);
  window_ = {width, height};
  scrollTo(x, y);
  chooseDpi();
  noteChange();
}

void PageWindow::scrollTo(int x, int y) {
  const host::PixelSize full = pagePixels(), part = window();
  const int newX = std::clamp(x, 0, std::max(0, full.width - part.width));
  const int newY = std::clamp(y, 0, std::max(0, full.height - part.height));
  if (newX == scrollX_ && newY == scrollY_) return;
  scrollX_ = newX;
  scrollY_ = newY;
  noteChange();
}

host::PixelBox PageWindow::visible() {
  const host::PixelSize part = window();
  return {scrollX_, scrollY_, scrollX_ + part.width, scrollY_ + part.height};
}

host::PixelBox PageWindow::beginDrawing() {
  drawn_ = true;
  const host::PixelBox part = visible();
  return {part.left - margin_, part.top - margin_, part.right + margin_, part.bottom + margin_};
}

} // namespace viewer
