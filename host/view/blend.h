// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// How the pixels under a mark change.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "host/view/color.h"

namespace host {

/// Changes pixels under a mark: multiplies them by a colour, or replaces the colour of their background and leaves text
/// unchanged.
class Blend {
public:
  static Blend multiply(const Rgb &color);
  /// `texts` are the colours that stay; a pixel between one of them and the background changes in part.
  static Blend recolour(const Rgb &background, const Rgb &to, std::span<const Rgb> texts);

  /// A pixel 0xFFRRGGBB.
  uint32_t operator()(uint32_t pixel) const;

private:
  // Towards a text colour, from the background: the vector divided by its squared length.
  using Direction = std::array<float, 3>;

  bool multiplies_ = true;
  std::array<uint8_t, 3> factors_{};
  std::array<int, 3> background_{}, change_{};
  std::vector<Direction> texts_;
};

} // namespace host
