// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace viewer {

/// A rectangle, in pixels; its position is that of its upper left corner.
struct Place {
  int x, y, width, height;
};

} // namespace viewer
