// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The outline of a selection on the image of a page.
#pragma once

#include <span>

#include "host/view/painting.h"

namespace host {

/// Draws a line of that colour around boxes, outside of them: one line around boxes that overlap or follow each other
/// on a line of text. The line is about a point thick, or two pixels, but no thicker than the space between lines of
/// text usually is: a sixth of the text's height, and at least one pixel. Where there is more space, a thin white line
/// around it separates it from a dark page; otherwise it is white itself on a dark page.
void paintOutline(Image &image, std::span<const Box> boxes, const Scale &scale, const Rgb &color);

} // namespace host
