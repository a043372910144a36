// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Chooses how a mark is blended by the colours that it covers.
//
// A highlighter multiplies, which keeps dark text on light paper. On a dark or coloured background the same would
// reduce the text's contrast, or change nothing. There the background gets another colour and the text stays: a pixel
// of an edge, between background and text, changes in proportion, so that edges stay smooth.
#include "host/view/blender.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

// Readable text has this contrast after blending, or its original one where that is less: a reserve for rounding and
// for colours that are not sampled.
constexpr double wanted = readable + 0.2;

// A component has to change by so much for a mark to be visible; where the host chooses the colour, by more.
constexpr int visibleChange = 24, clearChange = 40;

bool isVisible(const Rgb &before, const Rgb &after, int least) {
  const ColorVector change = difference(before, after);
  return std::any_of(change.begin(), change.end(), [least](double one) { return std::abs(one) >= least; });
}

// The least share of the wanted contrast that readable colours keep, at most 1; 0 where the mark would not be visible.
double suitability(const Blend &blend, const BoxColors &colors, int leastChange) {
  struct Luminances {
    double before, after;
  };
  std::vector<Luminances> changes;
  changes.reserve(colors.backgrounds.size() + colors.texts.size());
  int visible = 0, all = 0;
  for (const Shade &shade : colors.backgrounds) {
    const Rgb after = rgbOf(blend(pixelOf(shade.color)));
    changes.push_back({shade.luminance, luminanceOf(after)});
    all += shade.count;
    if (isVisible(shade.color, after, leastChange)) visible += shade.count;
  }
  if (4 * visible < 3 * all) return 0;
  for (const Rgb &text : colors.texts)
    changes.push_back({luminanceOf(text), luminanceOf(rgbOf(blend(pixelOf(text))))});

  double least = 1;
  for (size_t i = 0; i < changes.size(); ++i)
    for (size_t j = 0; j < i; ++j)
      if (const double before = contrastOf(changes[i].before, changes[j].before); before >= readable)
        least = std::min(least, contrastOf(changes[i].after, changes[j].after) / std::min(before, wanted));
  return least;
}

Blend blendFor(const BoxColors &colors, const Rgb &mark) {
  constexpr Rgb white{255, 255, 255}, black{0, 0, 0};
  constexpr int steps = 10;
  const Rgb background = colors.background;
  // Multiplying would make a dark background black.
  const bool isLight = contrastOf(background, black) > contrastOf(background, white);
  Blend best = Blend::multiply(mark);
  double bestSuitability = isLight ? suitability(best, colors, visibleChange) : 0;
  const auto suits = [&] { return bestSuitability >= 1; };
  const auto attempt = [&](const Blend &blend, int leastChange) {
    if (suits()) return;
    const double found = suitability(blend, colors, leastChange);
    if (found <= bestSuitability) return;
    best = blend;
    bestSuitability = found;
  };
  const auto tint = [&](const Rgb &towards, int step) { return mix(mark, towards, static_cast<double>(step) / steps); };
  for (int step = 1; step < steps && isLight && !suits(); ++step)
    attempt(Blend::multiply(tint(white, step)), visibleChange);
  for (const int leastChange : {clearChange, visibleChange})
    for (int step = 0; step < steps && !suits(); ++step)
      for (const Rgb &towards : {black, white})
        attempt(Blend::recolour(background, tint(towards, step), colors.texts), leastChange);
  for (int step = 1; step < steps && !suits(); ++step) // text of several colours leaves little choice
    attempt(Blend::recolour(background, tint(background, step), colors.texts), visibleChange);
  return best;
}

} // namespace

void Blender::choose(const PixelBox &box, std::vector<Patch> &patches) {
  const BoxColors colors = boxColors(shades_.in(box));
  const int boxWidth = box.right - box.left, boxHeight = box.bottom - box.top;
  PixelBox first = box, second = box;
  if (colors.isVaried && 2 * boxWidth > 3 * boxHeight)
    first.right = second.left = box.left + boxWidth / 2;
  else if (colors.isVaried && 2 * boxHeight > 3 * boxWidth)
    first.bottom = second.top = box.top + boxHeight / 2;
  else
    return patches.push_back({box, blendFor(colors, mark_)});
  choose(first, patches);
  choose(second, patches);
}

} // namespace host
