// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The boxes of words where those of the PDF library are wrong: vertical writing, and fonts without usable metrics.
#pragma once

#include <span>
#include <vector>

#include "host/document/page.h"

namespace document {

/// What the PDF library knows of the font of a word.
struct WordFont {
  double size = 0; ///< points; 0 is unknown
  bool vertical = false;
};

/// Whether a word's boxes, as the PDF library gives them, may be wrong. Then correctBoxes() needs the page's fonts.
bool needsFont(const host::WordText &word);

/// Corrects the boxes of the words of a page that need it; `fonts` has an element for each. Words of vertical writing
/// are moved to their glyphs. A word whose box is a line or a point gets a box from the words before and after it on
/// its line and from its font size, at least two points in each direction.
void correctBoxes(std::vector<host::WordText> &words, std::span<const WordFont> fonts);

} // namespace document
