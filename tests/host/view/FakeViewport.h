// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A viewport whose window a test sets.
#pragma once

#include <algorithm>

#include "host/view/viewport.h"

namespace test {

class FakeViewport : public host::Viewport {
public:
  FakeViewport(host::Document &document, double dpi) : document_(document), dpi_(dpi) {}

  /// The window shows that part of the page, in pixels; 0, 0: the complete page.
  void setWindow(int width, int height, int margin = 0) {
    window_ = {width, height};
    margin_ = margin;
  }
  void setDpi(double dpi) {
    dpi_ = dpi;
    changed();
  }

  int32_t page() const override { return page_; }
  void showPage(int32_t page) override {
    host::checkedPage(page, document_.pageCount());
    if (page == page_) return;
    page_ = page;
    x_ = y_ = 0;
    changed();
  }
  bool inWindow() const override { return window_.width != 0; }
  double dpi() const override { return dpi_; }
  host::PixelBox visible() override {
    const host::PixelSize part = window_.width == 0 ? all() : window_;
    return {x_, y_, x_ + part.width, y_ + part.height};
  }
  void scrollTo(int x, int y) override {
    const host::PixelBox before = visible();
    x_ = std::clamp(x, 0, std::max(0, all().width - before.right + before.left));
    y_ = std::clamp(y, 0, std::max(0, all().height - before.bottom + before.top));
    if (x_ != before.left || y_ != before.top) changed();
  }
  host::PixelBox beginDrawing() override {
    const host::PixelBox part = visible();
    return {part.left - margin_, part.top - margin_, part.right + margin_, part.bottom + margin_};
  }

private:
  host::PixelSize all() { return host::pixelSize(document_.pageSize(page_), dpi_); }
  host::Document &document_;
  double dpi_;
  int32_t page_ = 0;
  host::PixelSize window_{0, 0};
  int margin_ = 0, x_ = 0, y_ = 0;
};

} // namespace test
