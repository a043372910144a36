// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Where a dialog does not cover what it has found.
#pragma once

#include "viewer/model/place.h"

namespace viewer {

inline bool covers(const Place &dialog, const Place &area) {
  return dialog.x < area.x + area.width && area.x < dialog.x + dialog.width && dialog.y < area.y + area.height &&
         area.y < dialog.y + dialog.height;
}

/// The place of a dialog that does not cover an area: its own, or else the first such corner of `around`: at the right
/// and the left, at the top and the bottom. Its own if all of them cover the area, or if it does not fit into `around`.
inline Place asideOf(const Place &dialog, const Place &area, const Place &around) {
  if (dialog.width > around.width || dialog.height > around.height) return dialog;
  const int right = around.x + around.width - dialog.width, bottom = around.y + around.height - dialog.height;
  for (const Place &corner :
       {dialog, Place{right, around.y, dialog.width, dialog.height}, Place{right, bottom, dialog.width, dialog.height},
        Place{around.x, around.y, dialog.width, dialog.height}, Place{around.x, bottom, dialog.width, dialog.height}})
    if (!covers(corner, area)) return corner;
  return dialog;
}

} // namespace viewer
