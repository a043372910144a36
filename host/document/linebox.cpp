// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/linebox.h"

namespace host {

LineBox onLine(const Box &box, int quarterTurns) {
  switch (quarterTurns) {
  case 1:
    return {-box.top, -box.bottom, box.left, box.right};
  case 2:
    return {-box.right, -box.left, -box.top, -box.bottom};
  case 3:
    return {box.bottom, box.top, -box.right, -box.left};
  default:
    return {box.left, box.right, box.bottom, box.top};
  }
}

Box onPage(const LineBox &box, int quarterTurns) {
  switch (quarterTurns) {
  case 1:
    return {.left = box.below, .top = -box.start, .right = box.above, .bottom = -box.end};
  case 2:
    return {.left = -box.end, .top = -box.below, .right = -box.start, .bottom = -box.above};
  case 3:
    return {.left = -box.above, .top = box.end, .right = -box.below, .bottom = box.start};
  default:
    return {.left = box.start, .top = box.above, .right = box.end, .bottom = box.below};
  }
}

} // namespace host
