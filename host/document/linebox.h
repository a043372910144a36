// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Boxes in the frame of their line, so that one rule holds for every direction of writing.
#pragma once

#include "host/document/page.h"

namespace host {

/// A box in the frame of its line: `start` to `end` in the direction of reading, `below` to `above` across it. Points,
/// with an origin that boxes of the same direction share.
struct LineBox {
  double start = 0, end = 0, below = 0, above = 0;
};

LineBox onLine(const Box &box, int quarterTurns);
Box onPage(const LineBox &box, int quarterTurns);

} // namespace host
