// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/fallbacks.h"

namespace viewer {

Fallbacks::~Fallbacks() {
  for (XftFont *font : others_)
    XftFontClose(display_, font);
  XftFontClose(display_, font_);
  if (fonts_ != nullptr) FcFontSetDestroy(fonts_);
  if (wanted_ != nullptr) FcPatternDestroy(wanted_);
}

XftFont *Fallbacks::fontFor(FcChar32 character) {
  constexpr FcChar32 space = 0x20; // and control characters, which no font draws
  if (character <= space || XftCharExists(display_, font_, character) != 0) return font_;
  for (XftFont *other : others_)
    if (XftCharExists(display_, other, character) != 0) return other;
  XftFont *found = open(character);
  return found == nullptr ? font_ : others_.emplace_back(found);
}

// The first of the system's fonts that has the character, as large as the interface's; null: there is none. Fonts of
// coloured pictures are left out: older versions of the library cannot draw them.
XftFont *Fallbacks::open(FcChar32 character) {
  if (fonts_ == nullptr) sort();
  for (int i = 0; fonts_ != nullptr && i < fonts_->nfont; ++i) {
    FcPattern *font = fonts_->fonts[i];
    FcCharSet *characters = nullptr;
    FcBool colored = FcFalse;
    FcPatternGetBool(font, FC_COLOR, 0, &colored);
    if (colored != FcFalse || FcPatternGetCharSet(font, FC_CHARSET, 0, &characters) != FcResultMatch ||
        FcCharSetHasChar(characters, character) == FcFalse)
      continue;
    FcPattern *prepared = FcFontRenderPrepare(nullptr, wanted_, font);
    XftFont *opened = XftFontOpenPattern(display_, prepared);
    if (opened == nullptr) {
      FcPatternDestroy(prepared); // else the font owns it
      continue;
    }
    if (XftCharExists(display_, opened, character) != 0) return opened;
    XftFontClose(display_, opened);
  }
  return nullptr;
}

// Sorts the system's fonts by how well they stand in for the interface's.
void Fallbacks::sort() {
  wanted_ = FcPatternCreate();
  for (const char *property : {FC_FAMILY, FC_PIXEL_SIZE, FC_WEIGHT, FC_SLANT}) {
    FcValue value{};
    if (FcPatternGet(font_->pattern, property, 0, &value) == FcResultMatch) FcPatternAdd(wanted_, property, value, 1);
  }
  FcConfigSubstitute(nullptr, wanted_, FcMatchPattern);
  XftDefaultSubstitute(display_, DefaultScreen(display_), wanted_);
  FcResult result = FcResultNoMatch;
  fonts_ = FcFontSort(nullptr, wanted_, FcTrue, nullptr, &result);
}

} // namespace viewer
