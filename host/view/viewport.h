// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Which page is shown, how large, and which part of it: what a page view needs to know of a window. The program that
// has the window implements it; a program without one shows whole pages.
#pragma once

#include <functional>

#include "host/document/document.h"

namespace host {

/// Implementations call `changed` after each change.
class Viewport {
public:
  Viewport() = default;
  virtual ~Viewport() = default;
  Viewport(const Viewport &) = delete;
  Viewport &operator=(const Viewport &) = delete;

  std::function<void()> changed;

  virtual int32_t page() const = 0;
  /// Shows a page from its upper left; the page shown already stays as it is. Throws errBadPage.
  virtual void showPage(int32_t page) = 0;
  /// Whether a user looks at it; else the pages are drawn to files.
  virtual bool inWindow() const = 0;
  /// The resolution of the page shown.
  virtual double dpi() const = 0;
  /// The part of the page shown that is visible, in its pixels. A window larger than the page is visible completely.
  virtual PixelBox visible() = 0;
  /// Makes a pixel of the page the upper left one of the window, as far as the page reaches.
  virtual void scrollTo(int x, int y) = 0;
  /// Called when the page shown is drawn. The part to draw, in pixels of the page: what is visible, and pixels beyond
  /// it as the window likes; those that the page lacks are left out.
  virtual PixelBox beginDrawing() = 0;
};

/// Each page completely, at one resolution.
class WholePages final : public Viewport {
public:
  /// Shows page 0. The document outlives this object.
  WholePages(Document &document, double dpi) : document_(document), dpi_(dpi) {}

  int32_t page() const override { return page_; }
  void showPage(int32_t page) override;
  bool inWindow() const override { return false; }
  double dpi() const override { return dpi_; }
  PixelBox visible() override;
  void scrollTo(int /*x*/, int /*y*/) override {}
  PixelBox beginDrawing() override { return visible(); }

private:
  Document &document_;
  double dpi_;
  int32_t page_ = 0;
};

/// The units in which plug-ins have positions on a page: 16 bits. A unit is a pixel, unless the page has more than
/// `most` pixels on a side; then it is as much larger as is needed.
class DeviceUnits {
public:
  static constexpr double most = 30'000;
  DeviceUnits(const PageSize &size, double dpi);

  /// From page space, whose origin is the lower left, to units, whose origin is the upper left.
  tavrel::FixedMatrix transform() const;
  tavrel::DeviceRect rect(const PixelBox &box) const;
  int pixel(int16_t unit) const;

private:
  double perPixel_, perPoint_, pageHeight_;
};

} // namespace host
