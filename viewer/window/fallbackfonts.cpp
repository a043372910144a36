// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A text is divided into runs of glyphs of one font each. Texts that the interface's font has completely are one run,
// drawn as the library draws them.
#include "viewer/window/fallbackfonts.h"

#include <X11/Xft/Xft.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "viewer/window/fallbacks.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

using Glyphs = std::vector<FT_UInt>;

struct Run {
  XftFont *font;
  Glyphs glyphs;
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

// The library's functions, as the toolkit calls them, which is written in C: no exception may leave them.
extern "C" {

void XftDrawStringUtf8(XftDraw *draw, const XftColor *color, XftFont *font, int x, int y, const FcChar8 *text,
                       int bytes) {
  viewer::guarded([=] {
    const std::vector<FcChar32> characters = viewer::charactersOf(text, bytes);
    viewer::draw(draw, color, font, x, y, characters.data(), characters.size());
  });
}

void XftDrawString32(XftDraw *draw, const XftColor *color, XftFont *font, int x, int y, const FcChar32 *text,
                     int length) {
  viewer::guarded([=] { viewer::draw(draw, color, font, x, y, text, static_cast<size_t>(std::max(0, length))); });
}

void XftTextExtentsUtf8(Display *display, XftFont *font, const FcChar8 *text, int bytes, XGlyphInfo *extents) {
  *extents = {};
  viewer::guarded([=] {
    const std::vector<FcChar32> characters = viewer::charactersOf(text, bytes);
    *extents = viewer::extentsOf(display, viewer::runsOf(display, font, characters.data(), characters.size()));
  });
}

void XftTextExtents32(Display *display, XftFont *font, const FcChar32 *text, int length, XGlyphInfo *extents) {
  *extents = {};
  viewer::guarded([=] {
    *extents =
        viewer::extentsOf(display, viewer::runsOf(display, font, text, static_cast<size_t>(std::max(0, length))));
  });
}

} // extern "C"
