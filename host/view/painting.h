// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Marks on the image of a page.
#pragma once

#include <cstdint>
#include <span>

#include "host/document/document.h"
#include "host/view/color.h"

namespace host {

/// A component above 1.0 is on the scale 0 to 255, and then all of them are. Throws errBadArgument for a colour space
/// other than RGB.
Rgb rgbOf(const tavrel::ColorValue &color);

/// From page space to the pixels of an image: pixels a point, the height of the page in points, and the pixel of the
/// page at which the image begins.
struct Scale {
  double pixelsPerPoint, pageHeight;
  int x = 0, y = 0;
};

/// Blends a colour with the image in the boxes (Blender), each rounded outwards to whole pixels. Where boxes overlap,
/// it is blended once.
void paintMarks(Image &image, std::span<const Box> boxes, const Scale &scale, const Rgb &color);

} // namespace host
