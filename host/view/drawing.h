// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A page as it is drawn.
#pragma once

#include "host/document/image.h"

namespace host {

/// A drawn page, or as much of it as a window shows.
struct Drawing {
  Image image = {};
  int32_t page = 0;
  size_t marks = 0;   ///< how many ranges were painted
  size_t offPage = 0; ///< how many were to be painted and lie outside of the page, or beyond its text
  int x = 0, y = 0;   ///< where on the page the image begins, in pixels
  double dpi = 0;
};

/// The part of a page's image, as far as the page reaches. Page and resolution are not set. An image that is not needed
/// any more is not copied if the part is all of it.
Drawing cropped(const Image &page, const PixelBox &part);
Drawing cropped(Image &&page, const PixelBox &part);

/// Names the drawing that is under way, until it is destroyed.
class UnderWay {
public:
  UnderWay(Drawing *&current, Drawing *drawing) : current_(current) { current_ = drawing; }
  ~UnderWay() { current_ = nullptr; }
  UnderWay(const UnderWay &) = delete;
  UnderWay &operator=(const UnderWay &) = delete;

private:
  Drawing *&current_;
};

} // namespace host
