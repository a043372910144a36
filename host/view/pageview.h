// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The part of a viewer document that shows a page, as plug-ins have it: what is painted on the page, and when it is
// drawn. Which page it is, how large, and which part of it, is the viewport's.
//
// Nothing is drawn when something changes. A change marks the view invalid and notifies the listener; the program draws
// later, never within a batch or within another drawing.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "host/view/batches.h"
#include "host/view/highlights.h"
#include "host/view/pagesource.h"
#include "host/view/viewport.h"

namespace host {

class PageView {
public:
  /// The document outlives the view. The listener is notified when there is something to draw.
  PageView(Document &document, std::unique_ptr<Viewport> viewport, std::function<void()> listener = {});
  PageView(const PageView &) = delete;
  PageView &operator=(const PageView &) = delete;

  // While a page is drawn, page and resolution are that page's.
  int32_t page() const { return drawing_ ? drawing_->page : viewport_->page(); }
  double dpi() const { return drawing_ ? drawing_->dpi : viewport_->dpi(); }
  void showPage(int32_t page) { viewport_->showPage(page); }
  bool inWindow() const { return viewport_->inWindow(); }
  // In device units of the page.
  tavrel::DeviceRect visible() { return units().rect(viewport_->visible()); }
  void scrollTo(int16_t x, int16_t y) { viewport_->scrollTo(units().pixel(x), units().pixel(y)); }
  tavrel::FixedMatrix transform() { return units().transform(); }

  Batches &batches() { return batches_; }

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
  const std::vector<MarkedArea> &highlights() const { return highlights_.areas(); }
  void paintHighlights(Drawing &drawing) { highlights_.paint(drawing, scaleOf(drawing)); }

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
  bool mayDraw() const { return !drawing() && batches_.depth() == 0; }
  /// Where pages come from; initially, and with an empty source, they are rendered at once.
  void setSource(PageSource source);
  /// Draws the page shown; `painters` is called when the page is there and may paint onto it. Nothing within a batch
  /// or another drawing, or where the source has no image yet. Throws what Document::render throws.
  std::optional<Drawing> draw(const std::function<void()> &painters);

private:
  DeviceUnits units() { return {document_.pageSize(page()), dpi()}; }
  Scale scaleOf(const Drawing &drawing);
  void requireBeingDrawn(const Selection &selection) const;
  void notifyIfChanged();

  Document &document_;
  std::unique_ptr<Viewport> viewport_;
  std::function<void()> listener_;
  PageSource source_;
  Batches batches_;
  tavrel::ColorValue drawColor_;
  bool invalid_ = true;
  Highlights highlights_;
  bool highlightsChanged_ = false; ///< and the listener is not notified yet
  PageMarks marks_;                ///< of the last drawing
  std::optional<int32_t> drawnPage_;
  Drawing *drawing_ = nullptr; ///< the one under way
};

} // namespace host
