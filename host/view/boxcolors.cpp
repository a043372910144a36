// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/boxcolors.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace host {
namespace {

// From this contrast on a colour is not a shade of the background. Less than `readable`, because backgrounds in
// pictures vary: text that is readable on a part of one must stay readable.
constexpr double distinct = 2;

constexpr size_t mostBackgrounds = 32, mostTexts = 6;

// The colour of a text whose thin strokes are only edges: the farthest one that gives this edge when it is mixed with
// the background.
Rgb extended(const Rgb &background, const Rgb &edge) {
  const ColorVector way = difference(background, edge);
  const ColorVector from = difference({}, background);
  double reach = 255;
  for (size_t i = 0; i < way.size(); ++i)
    if (way[i] != 0) reach = std::min(reach, (way[i] > 0 ? 255 - from[i] : -from[i]) / way[i]);
  const auto component = [&](size_t i) { return static_cast<uint8_t>(std::lround(from[i] + reach * way[i])); };
  return {component(0), component(1), component(2)};
}

// Whether a colour lies between the background and a text, or is much the same as that text.
bool isEdge(const Rgb &background, std::span<const Rgb> texts, const Rgb &color) {
  constexpr double sameDirection = 0.97; // cosine
  const ColorVector way = difference(background, color);
  return std::any_of(texts.begin(), texts.end(), [&](const Rgb &text) {
    const ColorVector wayToText = difference(background, text);
    return dot(way, wayToText) > sameDirection * std::sqrt(dot(way, way) * dot(wayToText, wayToText));
  });
}

// The background is the colour that, with those of nearly the same lightness, covers most: in a picture the text may be
// the most frequent single colour. The shades are sorted by count.
BoxColors withBackground(std::span<const Shade> shades) {
  constexpr double sameLightness = 1.6; // contrast
  constexpr size_t candidates = 16;
  BoxColors colors;
  int most = 0, all = 0;
  for (const Shade &candidate : shades.first(std::min(shades.size(), candidates))) {
    int covered = 0;
    for (const Shade &shade : shades)
      if (contrastOf(shade.luminance, candidate.luminance) < sameLightness) covered += shade.count;
    if (covered <= most) continue;
    most = covered;
    colors.background = candidate.color;
  }
  for (const Shade &shade : shades)
    all += shade.count;
  colors.isVaried = 3 * most < 2 * all;
  return colors;
}

// Of the shades that are distinct from the background the farthest ones are text; what is between it and them is the
// edge of text. The shades are sorted by count.
std::vector<Rgb> textsOf(const Rgb &background, std::span<const Shade> shades, int few) {
  std::vector<Shade> others;
  const auto isOther = [&](const Shade &shade) { return contrastOf(shade.color, background) >= distinct; };
  std::copy_if(shades.begin(), shades.end(), std::back_inserter(others), isOther);
  // Single pixels are noise, unless nothing else is there.
  if (std::any_of(others.begin(), others.end(), [few](const Shade &shade) { return shade.count > few; }))
    std::erase_if(others, [few](const Shade &shade) { return shade.count <= few; });
  std::sort(others.begin(), others.end(), [&](const Shade &a, const Shade &b) {
    const ColorVector first = difference(background, a.color), second = difference(background, b.color);
    return dot(first, first) > dot(second, second);
  });
  std::vector<Rgb> texts;
  for (size_t i = 0; i < others.size() && texts.size() < mostTexts; ++i) {
    const Rgb &farthest = others[i].color;
    if (isEdge(background, texts, farthest)) continue;
    int edges = 0;
    for (size_t j = i; j < others.size(); ++j)
      if (isEdge(background, {&farthest, 1}, others[j].color)) edges += others[j].count;
    texts.push_back(2 * others[i].count < edges ? extended(background, farthest) : farthest);
  }
  return texts;
}

} // namespace

BoxColors boxColors(std::span<const Shade> shades) {
  BoxColors colors = withBackground(shades);
  int all = 0;
  for (const Shade &shade : shades)
    all += shade.count;
  colors.texts = textsOf(colors.background, shades, all / 500);
  // The edges of text are no background. Where they are a large part of the box they are not edges: it is a picture,
  // unless the background is white, as under the smallest text.
  const auto isShade = [&](const Shade &shade) { return contrastOf(shade.color, colors.background) < distinct; };
  const auto isTextEdge = [&](const Shade &shade) { return isEdge(colors.background, colors.texts, shade.color); };
  int edges = 0;
  for (const Shade &shade : shades)
    if (isShade(shade) && isTextEdge(shade)) edges += shade.count;
  const bool isPaper = contrastOf(colors.background, {255, 255, 255}) < 1.1;
  const bool isPicture = !isPaper && 5 * edges > all;
  for (const Shade &shade : shades)
    if (isShade(shade) && (isPicture || !isTextEdge(shade)) && colors.backgrounds.size() < mostBackgrounds)
      colors.backgrounds.push_back(shade);
  return colors;
}

} // namespace host
