// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Line breaks for a message box, which is as wide as its longest line.
#pragma once

#include <cstddef>
#include <string>

namespace viewer {

inline constexpr size_t longestLine = 60; ///< characters

/// The text (UTF-8) with line feeds in long lines: in place of the last space, otherwise after the last slash,
/// otherwise between two characters.
std::string wrapped(const std::string &text);

} // namespace viewer
