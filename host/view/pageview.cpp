// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A page view. Viewer documents own one each; the TavrelView table and the program that draws work on it.
#include "host/view/pageview.h"

#include <algorithm>

namespace host {
namespace {

constexpr tavrel::ColorValue black{tavrel::colorSpaceRGB, {0, 0, 0, 0}};

} // namespace

PageView::PageView(Document &document, std::unique_ptr<Viewport> viewport, std::function<void()> listener)
    : document_(document), viewport_(std::move(viewport)), listener_(std::move(listener)),
      source_(RenderedPages(document)), drawColor_(black) {
  viewport_->changed = [this] { invalidate(); };
  batches_.closed = [this] { notifyIfChanged(); };
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
  if ((!invalid_ && !highlightsChanged_) || batches_.depth() > 0) return;
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
  highlights_.toggle(std::move(area));
  highlightsChanged_ = true;
  notifyIfChanged();
}

void PageView::requireBeingDrawn(const Selection &selection) const {
  if (drawing_ == nullptr) throw HostError(tavrel::errBadArgument, "no page is being drawn");
  if (selection.page != drawing_->page)
    throw HostError(tavrel::errBadArgument, "the selection is not on the page being drawn");
}

void PageView::paint(const Selection &selection) {
  requireBeingDrawn(selection);
  marks_.add(selection, rgbOf(drawColor_));
  highlights_.remove({selection.page, selection.boxes}); // or both would be visible
}

void PageView::outline(const Selection &selection) {
  requireBeingDrawn(selection);
  marks_.addOutline(selection, rgbOf(drawColor_));
}

void PageView::setSource(PageSource source) {
  source_ = source ? std::move(source) : PageSource(RenderedPages(document_));
}

Scale PageView::scaleOf(const Drawing &drawing) {
  constexpr double pointsPerInch = 72;
  return {drawing.dpi / pointsPerInch, document_.pageSize(drawing.page).height, drawing.x, drawing.y};
}

std::optional<Drawing> PageView::draw(const std::function<void()> &painters) {
  if (!mayDraw()) return std::nullopt;
  SourceImage image = source_(page(), dpi());
  const auto *const kept = std::get_if<const Image *>(&image);
  if (kept != nullptr && *kept == nullptr) return std::nullopt;
  const PixelBox part = viewport_->beginDrawing();
  Drawing drawing = kept != nullptr ? cropped(**kept, part) : cropped(std::get<Image>(std::move(image)), part);
  drawing.page = page();
  drawing.dpi = dpi();
  invalid_ = false;
  drawnPage_ = drawing.page;
  marks_.clear();
  highlights_.clear();
  document_.takeRangesWithoutText(drawing.page); // of requests that are not for this drawing
  try {
    const UnderWay underWay(drawing_, &drawing);
    painters();
    marks_.compose(drawing.image, scaleOf(drawing));
  } catch (...) {
    invalid_ = true;
    throw;
  }
  drawing.marks = marks_.ranges();
  // What covers no text is never painted. Where something is painted, such requests may have been attempts.
  drawing.offPage = marks_.empty() ? document_.takeRangesWithoutText(drawing.page) : marks_.offPage();
  return drawing;
}

} // namespace host
