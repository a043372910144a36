// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/viewport.h"

#include <algorithm>
#include <cmath>

#include "host/kernel/geometry.h"

namespace host {
namespace {

constexpr double pointsPerInch = 72;

} // namespace

void WholePages::showPage(int32_t page) {
  checkedPage(page, document_.pageCount());
  if (page == page_) return;
  page_ = page;
  if (changed) changed();
}

PixelBox WholePages::visible() {
  const auto [width, height] = pixelSize(document_.pageSize(page_), dpi_);
  return {0, 0, width, height};
}

DeviceUnits::DeviceUnits(const PageSize &size, double dpi)
    : perPixel_(std::min(1.0, most / (std::max(size.width, size.height) * dpi / pointsPerInch))),
      perPoint_(perPixel_ * dpi / pointsPerInch), pageHeight_(size.height) {}

tavrel::FixedMatrix DeviceUnits::transform() const {
  return {fixedOf(perPoint_), 0, 0, fixedOf(-perPoint_), 0, fixedOf(pageHeight_ * perPoint_)};
}

tavrel::DeviceRect DeviceUnits::rect(const PixelBox &box) const {
  const auto unit = [this](int pixel) { return saturate16(std::round(pixel * perPixel_)); };
  return {unit(box.left), unit(box.top), unit(box.right), unit(box.bottom)};
}

int DeviceUnits::pixel(int16_t unit) const { return static_cast<int>(std::lround(unit / perPixel_)); }

} // namespace host
