// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Truncates a text that is wider than the space for it. Nothing here uses the display.
#pragma once

#include <functional>
#include <string>

namespace viewer {

/// The text (UTF-8) if it is not wider than `width`, else as much of it as fits before an ellipsis, with the ellipsis.
/// @param widthOf gives the width of a text, in the same unit; no text is wider than a longer one that it begins
std::string fitted(const std::string &text, int width, const std::function<int(const std::string &text)> &widthOf);

} // namespace viewer
