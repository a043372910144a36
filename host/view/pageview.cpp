// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A page view. Viewer documents own one each; the TavrelView table and the program that draws work on it.
#include "host/view/pageview.h"

#include <algorithm>
#include <cmath>

#include "host/kernel/geometry.h"

namespace host {
namespace {

constexpr double pointsPerInch = 72;
constexpr tavrel::ColorValue black{tavrel::colorSpaceRGB, {0, 0, 0, 0}};

// Ends a drawing also when an exception is thrown, so that the next one may start.
class UnderWay {
public:
  UnderWay(Drawing *&current, Drawing *drawing) : current_(current) { current_ = drawing; }
  ~UnderWay() { current_ = nullptr; }
  UnderWay(const UnderWay &) = delete;
  UnderWay &operator=(const UnderWay &) = delete;

private:
  Drawing *&current_;
};

} // namespace

PageView::PageView(Document &document, double dpi, std::function<void()> listener)
    : document_(document), listener_(std::move(listener)), dpi_(dpi), wantedDpi_(dpi), drawColor_(black) {
  constexpr size_t usualDepth = 16; // nested calls into plug-ins then need no allocation
  savedDepths_.reserve(usualDepth);
}

void PageView::showPage(int32_t page) {
  if (page < 0 || page >= document_.pageCount())
    throw HostError(tavrel::errBadPage, "no page " + std::to_string(page) + " in the document");
  if (page == page_) return;
  page_ = page;
  chooseDpi();
  scrollX_ = scrollY_ = 0;
  invalidate();
}

void PageView::setDpi(double dpi) {
  fit_ = Fit::none;
  wantedDpi_ = dpi;
  chooseDpi();
}

void PageView::setFit(Fit fit) {
  fit_ = fit;
  if (fit == Fit::none) wantedDpi_ = dpi_;
  chooseDpi();
}

double PageView::largestDpi(int32_t page) {
  const PageSize size = document_.pageSize(page);
  // A pixel less on each side, because sizes are rounded up.
  const double byArea = std::sqrt(largestImage / (size.width * size.height)) - 1 / std::min(size.width, size.height);
  const double bySide = (longestSide - 1) / std::max(size.width, size.height);
  return std::min(byArea, bySide) * pointsPerInch;
}

double PageView::dpiOf(int32_t page) {
  if (window_.width <= 0) return wantedDpi_;
  constexpr double smallest = 8;
  const PageSize size = document_.pageSize(page);
  const double byWidth = window_.width * pointsPerInch / size.width;
  const double byHeight = window_.height * pointsPerInch / size.height;
  const double dpi = fit_ == Fit::width ? byWidth : fit_ == Fit::page ? std::min(byWidth, byHeight) : wantedDpi_;
  const double largest = largestDpi(page);
  return std::clamp(dpi, std::min(smallest, largest), largest);
}

// Keeps in place what is in the middle of the window.
void PageView::chooseDpi() {
  const double dpi = dpiOf(page_);
  if (dpi == dpi_) return;
  const Pixels before = window();
  const double ratio = dpi / dpi_;
  dpi_ = dpi;
  const Pixels now = window();
  const auto moved = [&](int scroll, int sizeBefore, int sizeNow) {
    if (scroll == 0 && !drawn_) return 0; // not scrolled yet
    return static_cast<int>(std::lround((scroll + sizeBefore / 2.0) * ratio - sizeNow / 2.0));
  };
  scrollTo(moved(scrollX_, before.width, now.width), moved(scrollY_, before.height, now.height));
  invalidate();
}

void PageView::setWindow(int width, int height) {
  if (width == window_.width && height == window_.height) return;
  const Pixels before = window();
  const auto moved = [this](int scroll, int sizeBefore, int sizeNow) {
    return !drawn_ && scroll > 0 ? scroll + (sizeBefore - sizeNow) / 2 : scroll;
  };
  const int x = moved(scrollX_, before.width, width), y = moved(scrollY_, before.height, height);
  window_ = {width, height};
  scrollTo(x, y);
  chooseDpi();
  invalidate();
}

PageView::Pixels PageView::pagePixels() {
  const PageSize size = document_.pageSize(page());
  // Minus an epsilon, as the images are rendered.
  return {static_cast<int>(std::ceil(size.width * scale() - 1e-6)),
          static_cast<int>(std::ceil(size.height * scale() - 1e-6))};
}

PageView::Pixels PageView::window() { return window_.width == 0 ? pagePixels() : window_; }

void PageView::scrollTo(int x, int y) {
  const Pixels full = pagePixels(), part = window();
  const int newX = std::clamp(x, 0, std::max(0, full.width - part.width));
  const int newY = std::clamp(y, 0, std::max(0, full.height - part.height));
  if (newX == scrollX_ && newY == scrollY_) return;
  scrollX_ = newX;
  scrollY_ = newY;
  invalidate();
}

tavrel::DeviceRect PageView::visible() {
  const Pixels part = window();
  return {saturate16(scrollX_), saturate16(scrollY_), saturate16(double{1} * scrollX_ + part.width),
          saturate16(double{1} * scrollY_ + part.height)};
}

tavrel::FixedMatrix PageView::transform() {
  return {fixedOf(scale()), 0, 0, fixedOf(-scale()), 0, fixedOf(document_.pageSize(page()).height * scale())};
}

void PageView::endBatch() {
  if (batchDepth_ == 0) throw HostError(tavrel::errBadArgument, "no batch is open");
  --batchDepth_;
  notifyIfChanged();
}

void PageView::restoreBatchDepth() noexcept {
  // A view that was opened during the call has saved none.
  batchDepth_ = savedDepths_.empty() ? 0 : savedDepths_.back();
  if (!savedDepths_.empty()) savedDepths_.pop_back();
  notifyIfChanged();
}

void PageView::setDrawColor(const tavrel::ColorValue &color) {
  rgbOf(color); // throws for one that cannot be painted
  drawColor_ = color;
}

void PageView::invalidate() {
  invalid_ = true;
  notifyIfChanged();
}

void PageView::notifyIfChanged() {
  if ((!invalid_ && !highlightsChanged_) || batchDepth_ > 0) return;
  highlightsChanged_ = false;
  if (listener_) listener_();
}

void PageView::refresh() {
  highlights_.clear();
  invalidate();
}

void PageView::highlight(const Selection &selection) {
  if (drawnPage_ != selection.page) return;
  MarkedArea area{selection.page, selection.boxes};
  if (marks_.has(area)) return invalidate();
  if (std::erase(highlights_, area) == 0) highlights_.push_back(std::move(area));
  highlightsChanged_ = true;
  notifyIfChanged();
}

void PageView::paintHighlights(Drawing &drawing) {
  std::vector<Box> boxes;
  for (const MarkedArea &area : highlights_)
    if (area.page == drawing.page) boxes.insert(boxes.end(), area.boxes.begin(), area.boxes.end());
  const double perPoint = drawing.dpi / pointsPerInch;
  paintMarks(drawing.image, boxes, {perPoint, document_.pageSize(drawing.page).height, drawing.x, drawing.y},
             highlightColor);
}

void PageView::requireBeingDrawn(const Selection &selection) const {
  if (drawing_ == nullptr) throw HostError(tavrel::errBadArgument, "no page is being drawn");
  if (selection.page != drawing_->page)
    throw HostError(tavrel::errBadArgument, "the selection is not on the page being drawn");
}

void PageView::paint(const Selection &selection) {
  requireBeingDrawn(selection);
  marks_.add(selection, rgbOf(drawColor_));
  std::erase(highlights_, MarkedArea{selection.page, selection.boxes}); // or both would be visible
}

void PageView::outline(const Selection &selection) {
  requireBeingDrawn(selection);
  marks_.addOutline(selection, rgbOf(drawColor_));
}

const Image *PageView::background() {
  if (source_) return source_(page_, dpi_);
  if (!rendered_ || rendered_->page != page_ || rendered_->dpi != dpi_) {
    rendered_.reset();
    rendered_ = {document_.render(page_, dpi_), page_, dpi_};
  }
  return &rendered_->image;
}

Drawing PageView::crop(const Image &page) const {
  Drawing drawing{.page = page_, .dpi = dpi_};
  if (window_.width == 0) {
    drawing.image = page;
    return drawing;
  }
  drawing.x = std::clamp(scrollX_ - margin_, 0, page.width);
  drawing.y = std::clamp(scrollY_ - margin_, 0, page.height);
  drawing.image.width = std::clamp(scrollX_ + window_.width + margin_, drawing.x, page.width) - drawing.x;
  drawing.image.height = std::clamp(scrollY_ + window_.height + margin_, drawing.y, page.height) - drawing.y;
  drawing.image.pixels.reserve(static_cast<size_t>(drawing.image.width) * static_cast<size_t>(drawing.image.height));
  for (int y = 0; y < drawing.image.height; ++y) {
    const uint32_t *row = page.row(drawing.y + y) + drawing.x;
    drawing.image.pixels.insert(drawing.image.pixels.end(), row, row + drawing.image.width);
  }
  return drawing;
}

std::optional<Drawing> PageView::draw(const std::function<void()> &painters) {
  if (!mayDraw()) return std::nullopt;
  const Image *page = background();
  if (page == nullptr) return std::nullopt;
  Drawing drawing = crop(*page);
  invalid_ = false;
  drawn_ = true;
  drawnPage_ = page_;
  marks_.clear();
  highlights_.clear();
  try {
    const UnderWay underWay(drawing_, &drawing);
    painters();
    marks_.compose(drawing.image, {scale(), document_.pageSize(drawing.page).height, drawing.x, drawing.y});
  } catch (...) {
    invalid_ = true;
    throw;
  }
  drawing.marks = marks_.ranges();
  drawing.offPage = marks_.offPage();
  return drawing;
}

} // namespace host
