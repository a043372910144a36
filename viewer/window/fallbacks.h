// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The fonts that stand in for one font of the interface, opened when a character needs them.
#pragma once

#include <X11/Xft/Xft.h>

#include <vector>

namespace viewer {

class Fallbacks {
public:
  /// Keeps another reference to the font, so that no later font gets its address.
  Fallbacks(Display *display, XftFont *font) : display_(display), font_(XftFontCopy(display, font)) {}
  ~Fallbacks();
  Fallbacks(const Fallbacks &) = delete;
  Fallbacks &operator=(const Fallbacks &) = delete;

  bool isOf(Display *display, const XftFont *font) const { return display == display_ && font == font_; }
  bool isOf(Display *display) const { return display == display_; }

  /// The font that draws a character: the interface's if no font has it, which draws its sign for a missing one.
  XftFont *fontFor(FcChar32 character);

private:
  XftFont *open(FcChar32 character);
  void sort();

  Display *display_;
  XftFont *font_;
  FcPattern *wanted_ = nullptr;
  FcFontSet *fonts_ = nullptr; ///< null until a character needs them
  std::vector<XftFont *> others_;
};

} // namespace viewer
