// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A text is divided into runs of glyphs of one font each. Texts that the interface's font has completely are one run,
// drawn as the library draws them.
#include "viewer/window/fallbackfonts.h"

#include <X11/Xft/Xft.h>

#include <algorithm>
#include <memory>
#include <set>
#include <vector>

namespace viewer {
namespace {

using Glyphs = std::vector<FT_UInt>;

struct Run {
  XftFont *font;
  Glyphs glyphs;
};

// The fonts that stand in for one font of the interface, opened when a character needs them.
class Fallbacks {
public:
  // Another reference to the font, so that no later font gets its address.
  Fallbacks(Display *display, XftFont *font) : display_(display), font_(XftFontCopy(display, font)) {}
  ~Fallbacks() {
    for (XftFont *font : others_)
      XftFontClose(display_, font);
    XftFontClose(display_, font_);
  }
  Fallbacks(const Fallbacks &) = delete;
  Fallbacks &operator=(const Fallbacks &) = delete;

  bool isOf(Display *display, const XftFont *font) const { return display == display_ && font == font_; }
  bool isOf(Display *display) const { return display == display_; }

  // The interface's font if no font has the character: it draws its sign for a missing one.
  XftFont *fontFor(FcChar32 character) {
    constexpr FcChar32 space = 0x20; // and control characters, which no font draws
    if (character <= space || XftCharExists(display_, font_, character) != 0) return font_;
    for (XftFont *other : others_)
      if (XftCharExists(display_, other, character) != 0) return other;
    if (nowhere_.contains(character)) return font_;
    if (XftFont *found = open(character)) return others_.emplace_back(found);
    nowhere_.insert(character);
    return font_;
  }

private:
  // The font that the system prefers for the character, as large as the interface's; null: there is none.
  XftFont *open(FcChar32 character) const {
    FcPattern *wanted = FcPatternCreate();
    for (const char *property : {FC_FAMILY, FC_PIXEL_SIZE, FC_WEIGHT, FC_SLANT}) {
      FcValue value{};
      if (FcPatternGet(font_->pattern, property, 0, &value) == FcResultMatch) FcPatternAdd(wanted, property, value, 1);
    }
    FcCharSet *characters = FcCharSetCreate();
    FcCharSetAddChar(characters, character);
    FcPatternAddCharSet(wanted, FC_CHARSET, characters);
    FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
    XftDefaultSubstitute(display_, DefaultScreen(display_), wanted);
    FcResult result = FcResultNoMatch;
    FcPattern *match = FcFontMatch(nullptr, wanted, &result);
    FcCharSetDestroy(characters);
    FcPatternDestroy(wanted);
    XftFont *font = match == nullptr ? nullptr : XftFontOpenPattern(display_, match);
    if (font == nullptr) {
      if (match != nullptr) FcPatternDestroy(match);
      return nullptr;
    }
    if (XftCharExists(display_, font, character) != 0) return font;
    XftFontClose(display_, font);
    return nullptr;
  }

  Display *display_;
  XftFont *font_;
  std::vector<XftFont *> others_;
  std::set<FcChar32> nowhere_;
};

std::vector<std::unique_ptr<Fallbacks>> s_fallbacks;

Fallbacks &fallbacksOf(Display *display, XftFont *font) {
  for (const auto &one : s_fallbacks)
    if (one->isOf(display, font)) return *one;
  return *s_fallbacks.emplace_back(std::make_unique<Fallbacks>(display, font));
}

std::vector<FcChar32> charactersOf(const FcChar8 *text, int bytes) {
  std::vector<FcChar32> characters;
  while (bytes > 0) {
    FcChar32 character = 0;
    const int length = FcUtf8ToUcs4(text, &character, bytes);
    if (length <= 0) break; // not UTF-8: the library, too, ends there
    characters.push_back(character);
    text += length;
    bytes -= length;
  }
  return characters;
}

std::vector<Run> runsOf(Display *display, XftFont *font, const FcChar32 *text, size_t length) {
  Fallbacks &fallbacks = fallbacksOf(display, font);
  std::vector<Run> runs;
  for (size_t i = 0; i < length; ++i) {
    XftFont *used = fallbacks.fontFor(text[i]);
    if (runs.empty() || runs.back().font != used) runs.push_back({used, {}});
    runs.back().glyphs.push_back(XftCharIndex(display, used, text[i]));
  }
  return runs;
}

// Of all runs, one after the other.
XGlyphInfo extentsOf(Display *display, const std::vector<Run> &runs) {
  XGlyphInfo all{};
  int left = 0, top = 0, right = 0, bottom = 0, at = 0;
  for (const Run &run : runs) {
    XGlyphInfo one{};
    XftGlyphExtents(display, run.font, run.glyphs.data(), static_cast<int>(run.glyphs.size()), &one);
    const bool first = &run == &runs.front();
    left = first ? at - one.x : std::min(left, at - one.x);
    top = first ? -one.y : std::min(top, -one.y);
    right = first ? at - one.x + one.width : std::max(right, at - one.x + one.width);
    bottom = first ? one.height - one.y : std::max(bottom, one.height - one.y);
    at += one.xOff;
  }
  all.x = static_cast<short>(-left);
  all.y = static_cast<short>(-top);
  all.width = static_cast<unsigned short>(right - left);
  all.height = static_cast<unsigned short>(bottom - top);
  all.xOff = static_cast<short>(at);
  return all;
}

void draw(XftDraw *target, const XftColor *color, XftFont *font, int x, int y, const FcChar32 *text, size_t length) {
  Display *display = XftDrawDisplay(target);
  for (const Run &run : runsOf(display, font, text, length)) {
    const int count = static_cast<int>(run.glyphs.size());
    XftDrawGlyphs(target, color, run.font, x, y, run.glyphs.data(), count);
    XGlyphInfo extents{};
    XftGlyphExtents(display, run.font, run.glyphs.data(), count, &extents);
    x += extents.xOff;
  }
}

} // namespace

void closeFallbackFonts(Display *display) {
  std::erase_if(s_fallbacks, [display](const auto &one) { return one->isOf(display); });
}

} // namespace viewer

// The library's functions, as the toolkit calls them.
extern "C" {

void XftDrawStringUtf8(XftDraw *draw, const XftColor *color, XftFont *font, int x, int y, const FcChar8 *text,
                       int bytes) {
  const std::vector<FcChar32> characters = viewer::charactersOf(text, bytes);
  viewer::draw(draw, color, font, x, y, characters.data(), characters.size());
}

void XftDrawString32(XftDraw *draw, const XftColor *color, XftFont *font, int x, int y, const FcChar32 *text,
                     int length) {
  viewer::draw(draw, color, font, x, y, text, static_cast<size_t>(length));
}

void XftTextExtentsUtf8(Display *display, XftFont *font, const FcChar8 *text, int bytes, XGlyphInfo *extents) {
  const std::vector<FcChar32> characters = viewer::charactersOf(text, bytes);
  *extents = viewer::extentsOf(display, viewer::runsOf(display, font, characters.data(), characters.size()));
}

void XftTextExtents32(Display *display, XftFont *font, const FcChar32 *text, int length, XGlyphInfo *extents) {
  *extents = viewer::extentsOf(display, viewer::runsOf(display, font, text, static_cast<size_t>(std::max(0, length))));
}

} // extern "C"
