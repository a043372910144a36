// A page view. Viewer documents own one each; the TavrelView table and the program that draws work on it.
#include "host/view/pageview.h"

#include <algorithm>
#include <cmath>

#include "host/kernel/geometry.h"
#include "host/view/painting.h"

namespace host {
namespace {

constexpr tavrel::ColorValue black{tavrel::colorSpaceRGB, {0, 0, 0, 0}};

// Whatever way a drawing ends, the next one may start.
class UnderWay {
public:
  UnderWay(Drawing *&place, Drawing *drawing) : place_(place) { place_ = drawing; }
  ~UnderWay() { place_ = nullptr; }
  UnderWay(const UnderWay &) = delete;
  UnderWay &operator=(const UnderWay &) = delete;

private:
  Drawing *&place_;
};

} // namespace

PageView::PageView(Document &document, double dpi, std::function<void()> listener)
    : document_(document), listener_(std::move(listener)), dpi_(dpi), drawColor_(black) {}

void PageView::showPage(int32_t page) {
  if (page < 0 || page >= document_.pageCount())
    throw HostError(tavrel::errBadPage, "no page " + std::to_string(page) + " in the document");
  if (page == page_) return;
  page_ = page;
  scrollX_ = scrollY_ = 0;
  invalidate();
}

void PageView::setDpi(double dpi) {
  if (dpi == dpi_) return;
  const double ratio = dpi / dpi_;
  dpi_ = dpi;
  scrollTo(static_cast<int>(scrollX_ * ratio), static_cast<int>(scrollY_ * ratio));
  invalidate();
}

void PageView::setWindow(int width, int height) {
  if (width == window_.width && height == window_.height) return;
  window_ = {width, height};
  scrollTo(scrollX_, scrollY_);
  invalidate();
}

PageView::Pixels PageView::pagePixels() {
  const PageSize size = document_.pageSize(page());
  return {static_cast<int>(std::ceil(size.width * scale())), static_cast<int>(std::ceil(size.height * scale()))};
}

PageView::Pixels PageView::window() { return window_.width == 0 ? pagePixels() : window_; }

void PageView::scrollTo(int x, int y) {
  const Pixels whole = pagePixels(), part = window();
  const int newX = std::clamp(x, 0, std::max(0, whole.width - part.width));
  const int newY = std::clamp(y, 0, std::max(0, whole.height - part.height));
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
  tellIfInvalid();
}

void PageView::restoreBatchDepth() noexcept {
  // None was saved by a view that was opened during the call.
  batchDepth_ = savedDepths_.empty() ? 0 : savedDepths_.back();
  if (!savedDepths_.empty()) savedDepths_.pop_back();
  tellIfInvalid();
}

void PageView::setDrawColor(const tavrel::ColorValue &color) {
  rgbOf(color); // throws for one that cannot be painted
  drawColor_ = color;
}

void PageView::invalidate() {
  invalid_ = true;
  tellIfInvalid();
}

void PageView::tellIfInvalid() {
  if (invalid_ && batchDepth_ == 0 && listener_) listener_();
}

void PageView::toggleHighlight(const Selection &selection) {
  if (highlighted_.erase(&selection) == 0) highlighted_.insert(&selection);
  if (selection.page == page_) invalidate();
}

void PageView::paint(const Selection &selection) {
  if (drawing_ == nullptr) throw HostError(tavrel::errBadArgument, "no page is being drawn");
  if (selection.page != drawing_->page)
    throw HostError(tavrel::errBadArgument, "the selection is not on the page being drawn");
  multiply(drawing_->image, selection.boxes, {scale(), document_.pageSize(selection.page).height}, rgbOf(drawColor_));
  drawing_->marks += selection.ranges;
}

const Image &PageView::background(int32_t page) {
  if (!rendered_ || rendered_->page != page || rendered_->dpi != dpi_) {
    rendered_.reset();
    rendered_ = {document_.render(page, dpi_), page, dpi_};
  }
  return rendered_->image;
}

std::optional<Drawing> PageView::draw(const std::function<void()> &painters) {
  if (drawing() || batchDepth_ > 0) return std::nullopt;
  invalid_ = false;
  Drawing drawing{background(page_), page_, 0};
  {
    const UnderWay underWay(drawing_, &drawing);
    painters();
  }
  return drawing;
}

} // namespace host
