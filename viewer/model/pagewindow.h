// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// One page in a window: which page, how large, and which part of it is visible.
#pragma once

#include "host/view/viewport.h"

namespace viewer {

/// How the size of a page is chosen.
enum class Fit { none, width, page };

class PageWindow final : public host::Viewport {
public:
  /// Shows page 0. The document outlives this object.
  PageWindow(host::Document &document, double dpi) : document_(document), dpi_(dpi), wantedDpi_(dpi) {}

  int32_t page() const override { return page_; }
  void showPage(int32_t page) override;

  bool inWindow() const override { return true; }
  double dpi() const override { return dpi_; }
  /// Shows all pages at that size, at most at largestDpi.
  void setDpi(double dpi);
  Fit fit() const { return fit_; }
  /// Shows every page as large as the window, as long as there is one; Fit::none leaves the size as it is.
  void setFit(Fit fit);
  /// The resolution at which a page is shown, whether it is the current one or not.
  double dpiOf(int32_t page);
  /// To be called when the page shown has another size than before.
  void sizeIsKnown();
  /// Beyond it a page's image has more than `largestImage` pixels or a side that is too long, and a window does not
  /// show it.
  double largestDpi(int32_t page);
  static constexpr double largestImage = 16.0 * 1024 * 1024;

  /// The window's size in pixels; 0, 0 is as large as the page. Until the first drawing the middle stays in the middle:
  /// a plug-in may scroll before the window has its final size.
  void setWindow(int width, int height);
  /// Draws that many more pixels on each side; they do not count as visible.
  void setMargin(int pixels) { margin_ = pixels; }
  /// The page's size in pixels.
  int pageWidth() { return pagePixels().width; }
  int pageHeight() { return pagePixels().height; }
  int scrollX() const { return scrollX_; }
  int scrollY() const { return scrollY_; }
  void scrollTo(int x, int y) override;

  host::PixelBox visible() override;
  host::PixelBox beginDrawing() override;

private:
  host::PixelSize pagePixels() { return host::pixelSize(document_.pageSize(page_), dpi_); }
  host::PixelSize window() { return window_.width == 0 ? pagePixels() : window_; }
  void chooseDpi();
  void noteChange() const {
    if (changed) changed();
  }

  host::Document &document_;
  double dpi_, wantedDpi_;
  Fit fit_ = Fit::none;
  int32_t page_ = 0;
  host::PixelSize window_{0, 0};
  int margin_ = 0;
  int scrollX_ = 0, scrollY_ = 0;
  bool drawn_ = false; ///< at least once
};

} // namespace viewer
