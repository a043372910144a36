// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// How the colour of a mark is blended with what it covers, so that text keeps its contrast and the mark is visible.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "host/document/image.h"

namespace host {

/// A colour as it is painted.
struct Rgb {
  uint8_t red, green, blue;
};

/// The contrast of two colours as WCAG defines it, from 1 to 21.
double contrastOf(const Rgb &a, const Rgb &b);

/// Text of less contrast to its background does not count as readable.
inline constexpr double readable = 3;

/// The pixels from left to right and from top to bottom; right and bottom are exclusive.
struct PixelBox {
  int left, top, right, bottom;
};

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

/// Chooses blends for the boxes of one image.
class Blender {
public:
  Blender(const Image &image, const Rgb &mark);

  /// A part of a box and its blend.
  struct Patch {
    PixelBox box;
    Blend blend;
  };

  /// Appends the patches of a box: one, or several where it covers backgrounds too different for one. Multiplies by the
  /// mark's colour where the background is light, readable text stays readable and the mark is visible. Else multiplies
  /// by a lighter tint of it, or gives the background a lighter or darker one.
  void choose(const PixelBox &box, std::vector<Patch> &patches);

private:
  // Pixels of similar colours: of each component the upper four bits are the same. `pixel` is the most frequent one if
  // one has the majority; the votes find it.
  struct Bin {
    int count = 0, votes = 0;
    uint32_t pixel = 0;
  };
  struct Shade {
    Rgb color{};
    double luminance = 0;
    int count = 0; // of pixels
  };
  // The colours in a box.
  struct Colors {
    Rgb background{};
    bool isVaried = false;          // less than two thirds of the box are nearly as light as the background
    std::vector<Shade> backgrounds; // the background and its shades, without the edges of text
    std::vector<Rgb> texts;         // what is distinct from it
  };

  void count(uint32_t pixel, int times);
  void countRow(int y, int left, int right, int step);
  std::vector<Shade> shadesIn(const PixelBox &box);
  static Colors withBackground(std::span<const Shade> shades);
  static std::vector<Rgb> textsOf(const Rgb &background, std::span<const Shade> shades, int few);
  Colors colorsIn(const PixelBox &box);
  Blend blendFor(const Colors &colors) const;
  static double suitability(const Blend &blend, const Colors &colors, int leastChange);

  const Image &image_;
  const Rgb mark_;
  std::vector<Bin> bins_;
  std::vector<uint16_t> used_; // bins that are not empty
};

} // namespace host
