// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// From the pages as a file describes them to the pages as shown: rotated, with the origin at the lower left. The PDF
// library has moved the origin to the crop box already.
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>

#include "document/details.h"
#include "document/owned.h"
#include "host/document/page.h"

namespace document {

/// A position of which one coordinate may not be known.
struct Position {
  std::optional<double> x = {}, y = {};
};

class PageFrame {
public:
  /// The size is that before the rotation, in points.
  PageFrame(const host::PageSize &size, int quarterTurns) : size_(size), quarterTurns_(quarterTurns) {}

  Position shown(const Position &unrotated) const;
  PopplerRectangle shown(const PopplerRectangle &unrotated) const;

private:
  host::PageSize size_;
  int quarterTurns_;
};

class PageFrames {
public:
  PageFrames(PopplerDocument &pdf, Details &details) : pdf_(pdf), details_(details) {}

  /// Of a page of the document; null if it is damaged.
  const PageFrame *of(int32_t page);

private:
  PopplerDocument &pdf_;
  Details &details_;
  std::unordered_map<int32_t, std::optional<PageFrame>> known_;
};

/// The part of an area that is on a page of that size, as shown; none if that has no area, or if the numbers are not
/// to be computed with.
std::optional<host::Box> areaOnPage(const PopplerRectangle &area, const host::PageSize &size);

} // namespace document
