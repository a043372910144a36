// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The line of text around a place on a page.
#pragma once

#include <string>

#include "host/document/page.h"

namespace host {

struct TextLine {
  std::string text; ///< its words in reading order, joined by one space, in UTF-8
  size_t start = 0; ///< the byte at which the word begins that the line was looked for by
};

/// The line of the word that a box covers most of; empty if it covers none. A line ends where the next word in reading
/// order is beside none of it, as at the end of a column.
TextLine lineAround(const PageText &page, const Box &box);

} // namespace host
