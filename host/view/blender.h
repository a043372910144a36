// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Chooses how marks are blended with an image.
#pragma once

#include <vector>

#include "host/view/blend.h"
#include "host/view/boxcolors.h"

namespace host {

/// Chooses blends for the boxes of one image.
class Blender {
public:
  Blender(const Image &image, const Rgb &mark) : shades_(image), mark_(mark) {}

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
  ShadeCounter shades_;
  const Rgb mark_;
};

} // namespace host
