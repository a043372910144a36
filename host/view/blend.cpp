// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/blend.h"

#include <algorithm>
#include <cmath>

namespace host {

Blend Blend::multiply(const Rgb &color) {
  Blend blend;
  blend.factors_ = {color.red, color.green, color.blue};
  return blend;
}

Blend Blend::recolour(const Rgb &background, const Rgb &to, std::span<const Rgb> texts) {
  Blend blend;
  blend.multiplies_ = false;
  blend.background_ = {background.red, background.green, background.blue};
  blend.change_ = {to.red - background.red, to.green - background.green, to.blue - background.blue};
  for (const Rgb &text : texts) {
    const ColorVector way = difference(background, text);
    const double square = dot(way, way);
    blend.texts_.push_back({static_cast<float>(way[0] / square), static_cast<float>(way[1] / square),
                            static_cast<float>(way[2] / square)});
  }
  return blend;
}

uint32_t Blend::operator()(uint32_t pixel) const {
  const std::array<int, 3> given = {static_cast<int>(pixel >> 16U & 0xFFU), static_cast<int>(pixel >> 8U & 0xFFU),
                                    static_cast<int>(pixel & 0xFFU)};
  std::array<int, 3> result{};
  if (multiplies_) {
    for (size_t i = 0; i < result.size(); ++i)
      result[i] = (given[i] * factors_[i] + 127) / 255;
  } else {
    float coverage = 0; // by text, from 0 to 1
    for (const Direction &text : texts_)
      coverage = std::max(coverage, static_cast<float>(given[0] - background_[0]) * text[0] +
                                        static_cast<float>(given[1] - background_[1]) * text[1] +
                                        static_cast<float>(given[2] - background_[2]) * text[2]);
    const int share = static_cast<int>(std::lround(256 * (1 - std::min(coverage, 1.0F)))); // in 256ths
    for (size_t i = 0; i < result.size(); ++i)
      result[i] = std::clamp(given[i] + ((change_[i] * share + 128) >> 8), 0, 255);
  }
  return (pixel & 0xFF000000U) | static_cast<uint32_t>(result[0]) << 16U | static_cast<uint32_t>(result[1]) << 8U |
         static_cast<uint32_t>(result[2]);
}

} // namespace host
