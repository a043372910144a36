// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Which of the colours in a part of an image are background, and which are text.
#pragma once

#include <span>
#include <vector>

#include "host/view/shades.h"

namespace host {

struct BoxColors {
  Rgb background{};
  bool isVaried = false;          ///< less than two thirds of the box are nearly as light as the background
  std::vector<Shade> backgrounds; ///< the background and its shades, without the edges of text
  std::vector<Rgb> texts;         ///< what is distinct from it
};

/// `shades` are those of the box, the most frequent one first.
BoxColors boxColors(std::span<const Shade> shades);

} // namespace host
