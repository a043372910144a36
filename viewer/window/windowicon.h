// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The window's icon, for window managers and task bars: that of share/tavrel.svg.
#pragma once

#include <Xm/Xm.h>

#include <cstdint>
#include <vector>

namespace viewer {

/// Pixels 0xAARRGGBB of a square image.
std::vector<uint32_t> windowIcon(int size);

/// Sets the icon of a realised shell in several sizes (_NET_WM_ICON). Window managers that know only pixmaps get one,
/// which is never freed: the shell refers to it as long as it exists.
void setWindowIcon(Widget shell);

} // namespace viewer
