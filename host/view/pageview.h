// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The part of a viewer document that shows a page: which page, how large, which part of it, and what is painted on it.
//
// Nothing is drawn when something changes. A change marks the view invalid and notifies the listener; the program draws
// later, never within a batch or within another drawing.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "host/document/document.h"
#include "host/view/marks.h"

namespace host {

/// A drawn page, or as much of it as a window shows.
struct Drawing {
  Image image = {};
  int32_t page = 0;
  size_t marks = 0;   ///< how many ranges were painted
  size_t offPage = 0; ///< how many were to be painted and lie outside of the page
  int x = 0, y = 0;   ///< where on the page the image begins, in pixels
  double dpi = 0;
};

/// How the size of a page is chosen.
enum class Fit { none, width, page };

/// Returns a page's image, which is valid until the next call; null where it is not rendered yet. A source that returns
/// null invalidates the view when the image is ready.
using PageSource = std::function<const Image *(int32_t page, double dpi)>;

class PageView {
public:
  /// Shows page 0. The document outlives the view. The listener is notified when there is something to draw.
  PageView(Document &document, double dpi, std::function<void()> listener = {});
  PageView(const PageView &) = delete;
  PageView &operator=(const PageView &) = delete;

  /// The page shown; while a page is drawn, that page.
  int32_t page() const { return drawing_ ? drawing_->page : page_; }
  /// Shows a page from its upper left; the page shown already stays as it is. Throws errBadPage.
  void showPage(int32_t page);

  double dpi() const { return dpi_; }
  /// Shows all pages at that size, in a window at most at largestDpi.
  void setDpi(double dpi);
  Fit fit() const { return fit_; }
  /// Shows every page as large as the window, as long as there is one; Fit::none leaves the size as it is.
  void setFit(Fit fit);
  /// The resolution at which a page is shown, whether it is the current one or not.
  double dpiOf(int32_t page);
  /// Beyond it a page's image has more than `largestImage` pixels or a side that is too long, and a window does not
  /// show it.
  double largestDpi(int32_t page);
  static constexpr double largestImage = 16.0 * 1024 * 1024;

  /// The window's size in pixels; 0, 0 is as large as the page. Until the first drawing the middle of the view stays in
  /// the middle: the view may be scrolled before the window has its final size.
  void setWindow(int width, int height);
  bool inWindow() const { return window_.width != 0; }
  /// Draws that many more pixels on each side, where the page has them; they do not count as visible.
  void setMargin(int pixels) { margin_ = pixels; }
  /// The page's size in pixels.
  int pageWidth() { return pagePixels().width; }
  int pageHeight() { return pagePixels().height; }
  /// Makes a pixel of the page the upper left one of the window, as far as the page reaches.
  void scrollTo(int x, int y);
  /// In pixels of the page.
  tavrel::DeviceRect visible();
  int scrollX() const { return scrollX_; }
  int scrollY() const { return scrollY_; }
  /// From page space to pixels of the page.
  tavrel::FixedMatrix transform();

  void beginBatch() { ++batchDepth_; }
  /// Throws errBadArgument when none is open.
  void endBatch();
  size_t batchDepth() const { return batchDepth_; }
  // Around a call into a plug-in: batches that it leaves open are closed, batches that it closes too often are opened
  // again. expectCall reserves the memory for one call.
  void expectCall() { savedDepths_.reserve(savedDepths_.size() + 1); }
  void saveBatchDepth() { savedDepths_.push_back(batchDepth_); }
  void restoreBatchDepth() noexcept;

  const tavrel::ColorValue &drawColor() const { return drawColor_; }
  /// Throws errBadArgument for a colour that cannot be painted.
  void setDrawColor(const tavrel::ColorValue &color);

  void invalidate();
  bool invalid() const { return invalid_; }

  /// The same on behalf of a plug-in that has changed its marks: highlights end.
  void refresh();

  /// Highlights a selection of the page drawn last, or ends that; no page-draw procedure is called. The next drawing
  /// ends it, too. Where a page-draw procedure has painted the selection, the page is drawn anew instead.
  void highlight(const Selection &selection);
  const std::vector<MarkedArea> &highlights() const { return highlights_; }
  /// Multiplies what is highlighted onto a drawing of this view; pixels in several highlights once.
  void paintHighlights(Drawing &drawing);
  static constexpr Rgb highlightColor{0xB4, 0xD5, 0xFE};

  /// Records a mark of the selection on the page being drawn, in the drawing colour; draw() blends the marks with the
  /// page when all page-draw procedures have been called. Throws errBadArgument when no page or another one is being
  /// drawn.
  void paint(const Selection &selection);
  /// Records a line around the selection in the same way; it is drawn above all marks.
  void outline(const Selection &selection);
  /// The n-th selection that was painted on the page drawn last; null after the last one.
  tavrel::TextSelection painted(size_t index) const { return marks_.selection(index); }
  bool drawing() const { return drawing_ != nullptr; }
  /// Whether nothing keeps draw() from drawing: no batch, no other drawing.
  bool mayDraw() const { return !drawing() && batchDepth_ == 0; }
  /// Where pages come from instead of the document itself.
  void setSource(PageSource source) { source_ = std::move(source); }
  /// Draws the page shown; `painters` is called when the page is there and may paint onto it. Nothing within a batch
  /// or another drawing, or where the source has no image yet. Throws what Document::render throws.
  std::optional<Drawing> draw(const std::function<void()> &painters);

private:
  struct Pixels {
    int width, height;
  };
  Pixels pagePixels(); ///< of the page as page() has it
  Pixels window();
  double scale() const { return (drawing_ ? drawing_->dpi : dpi_) / 72; }
  const Image *background();
  Drawing crop(const Image &page) const;
  void chooseDpi();
  void requireBeingDrawn(const Selection &selection) const;
  void notifyIfChanged();

  Document &document_;
  std::function<void()> listener_;
  double dpi_, wantedDpi_;
  Fit fit_ = Fit::none;
  int32_t page_ = 0;
  Pixels window_{0, 0};
  int margin_ = 0;
  bool drawn_ = false; ///< at least once
  PageSource source_;
  int scrollX_ = 0, scrollY_ = 0;
  size_t batchDepth_ = 0;
  std::vector<size_t> savedDepths_; ///< a value for each call into a plug-in that is under way
  tavrel::ColorValue drawColor_;
  bool invalid_ = true;
  // Not painted into pixels: the next drawing begins without them.
  std::vector<MarkedArea> highlights_;
  bool highlightsChanged_ = false; ///< and the listener is not notified yet
  PageMarks marks_;                ///< of the last drawing
  std::optional<int32_t> drawnPage_;
  Drawing *drawing_ = nullptr; ///< the one under way
  // The page without marks as it was rendered last: marks change more often than pages.
  struct Rendered {
    Image image;
    int32_t page;
    double dpi;
  };
  std::optional<Rendered> rendered_;
};

} // namespace host
