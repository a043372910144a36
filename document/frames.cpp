// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/frames.h"

#include <algorithm>

namespace document {

Position PageFrame::shown(const Position &unrotated) const {
  const auto [x, y] = unrotated;
  const auto fromEnd = [](double length, const std::optional<double> &at) {
    return at ? std::optional(length - *at) : std::nullopt;
  };
  switch (quarterTurns_) {
  case 1:
    return {y, fromEnd(size_.width, x)};
  case 2:
    return {fromEnd(size_.width, x), fromEnd(size_.height, y)};
  case 3:
    return {fromEnd(size_.height, y), x};
  default:
    return unrotated;
  }
}

PopplerRectangle PageFrame::shown(const PopplerRectangle &unrotated) const {
  const Position one = shown(Position{unrotated.x1, unrotated.y1}), other = shown(Position{unrotated.x2, unrotated.y2});
  return {*one.x, *one.y, *other.x, *other.y};
}

const PageFrame *PageFrames::of(int32_t page) {
  const auto [known, isNew] = known_.try_emplace(page);
  if (isNew)
    if (const OwnedObject<PopplerPage> read(poppler_document_get_page(&pdf_, page)); read != nullptr) {
      PopplerRectangle crop{};
      poppler_page_get_crop_box(read.get(), &crop);
      known->second.emplace(host::PageSize{crop.x2 - crop.x1, crop.y2 - crop.y1}, details_.quarterTurns(page));
    }
  return known->second ? &*known->second : nullptr;
}

std::optional<host::Box> areaOnPage(const PopplerRectangle &area, const host::PageSize &size) {
  const auto [left, right] = std::minmax(area.x1, area.x2);
  const auto [bottom, top] = std::minmax(area.y1, area.y2);
  if (!host::isUsable({left, top, right, bottom})) return std::nullopt;
  const host::Box part{.left = std::max(left, 0.0),
                       .top = std::min(top, size.height),
                       .right = std::min(right, size.width),
                       .bottom = std::max(bottom, 0.0)};
  if (!(part.left < part.right && part.bottom < part.top)) return std::nullopt;
  return part;
}

} // namespace document
