// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Chooses how a mark is blended by the colours that it covers.
//
// A highlighter multiplies, which keeps dark text on light paper. On a dark or coloured background the same would
// reduce the text's contrast, or change nothing. There the background gets another colour and the text stays: a pixel
// of an edge, between background and text, changes in proportion, so that edges stay smooth.
#include "host/view/blend.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace host {
namespace {

// Readable text has this contrast after blending, or its original one where that is less: a reserve for rounding and
// for colours that are not sampled.
constexpr double wanted = readable + 0.2;

// A component has to change by so much for a mark to be visible; where the host chooses the colour, by more.
constexpr int visibleChange = 24, clearChange = 40;

// From this contrast on a colour is not a shade of the background. Less than `readable`, because backgrounds in
// pictures vary: text that is readable on a part of one must stay readable.
constexpr double distinct = 2;

constexpr size_t mostBackgrounds = 32, mostTexts = 6;

uint32_t pixelOf(const Rgb &color) { return uint32_t{color.red} << 16U | uint32_t{color.green} << 8U | color.blue; }

Rgb rgbOf(uint32_t pixel) {
  return {static_cast<uint8_t>(pixel >> 16U), static_cast<uint8_t>(pixel >> 8U), static_cast<uint8_t>(pixel)};
}

double luminanceOf(const Rgb &color) {
  static const std::array<double, 256> linear = [] {
    std::array<double, 256> table{};
    for (size_t i = 0; i < table.size(); ++i) {
      const double value = static_cast<double>(i) / 255;
      table[i] = value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    }
    return table;
  }();
  return 0.2126 * linear[color.red] + 0.7152 * linear[color.green] + 0.0722 * linear[color.blue];
}

double contrastOf(double a, double b) { return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05); }

// `share` of the second colour.
Rgb mix(const Rgb &a, const Rgb &b, double share) {
  const auto component = [share](uint8_t from, uint8_t to) {
    return static_cast<uint8_t>(std::lround(from + share * (to - from)));
  };
  return {component(a.red, b.red), component(a.green, b.green), component(a.blue, b.blue)};
}

using Vector = std::array<double, 3>;

Vector difference(const Rgb &from, const Rgb &to) {
  const double red = to.red - from.red, green = to.green - from.green, blue = to.blue - from.blue;
  return {red, green, blue};
}

double dot(const Vector &a, const Vector &b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

bool isVisible(const Rgb &before, const Rgb &after, int least) {
  const Vector change = difference(before, after);
  return std::any_of(change.begin(), change.end(), [least](double one) { return std::abs(one) >= least; });
}

// The colour of a text whose thin strokes are only edges: the farthest one that gives this edge when it is mixed with
// the background.
Rgb extended(const Rgb &background, const Rgb &edge) {
  const Vector way = difference(background, edge);
  const Vector from = difference({}, background);
  double reach = 255;
  for (size_t i = 0; i < way.size(); ++i)
    if (way[i] != 0) reach = std::min(reach, (way[i] > 0 ? 255 - from[i] : -from[i]) / way[i]);
  const auto component = [&](size_t i) { return static_cast<uint8_t>(std::lround(from[i] + reach * way[i])); };
  return {component(0), component(1), component(2)};
}

// Whether a colour lies between the background and a text, or is much the same as that text.
bool isEdge(const Rgb &background, std::span<const Rgb> texts, const Rgb &color) {
  constexpr double sameDirection = 0.97; // cosine
  const Vector way = difference(background, color);
  return std::any_of(texts.begin(), texts.end(), [&](const Rgb &text) {
    const Vector wayToText = difference(background, text);
    return dot(way, wayToText) > sameDirection * std::sqrt(dot(way, way) * dot(wayToText, wayToText));
  });
}

} // namespace

double contrastOf(const Rgb &a, const Rgb &b) { return contrastOf(luminanceOf(a), luminanceOf(b)); }

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
    const Vector way = difference(background, text);
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

Blender::Blender(const Image &image, const Rgb &mark) : image_(image), mark_(mark), bins_(1 << 12) {}

void Blender::count(uint32_t pixel, int times) {
  const uint32_t index = (pixel >> 12U & 0xF00U) | (pixel >> 8U & 0xF0U) | (pixel >> 4U & 0xFU);
  Bin &bin = bins_[index];
  if (bin.count == 0) used_.push_back(static_cast<uint16_t>(index));
  bin.count += times;
  if (bin.pixel == pixel) {
    bin.votes += times;
  } else if (bin.votes < times) {
    bin.pixel = pixel;
    bin.votes = times - bin.votes;
  } else {
    bin.votes -= times;
  }
}

// Every `step`th pixel of a row; most follow one of the same colour.
void Blender::countRow(int y, int left, int right, int step) {
  const uint32_t *row = image_.row(y);
  uint32_t last = row[left];
  int times = 0;
  for (int x = left; x < right; x += step) {
    if (row[x] != last) {
      count(last, times);
      last = row[x];
      times = 0;
    }
    ++times;
  }
  count(last, times);
}

// Samples some thousand pixels of a large box. Text leaves the upper and lower edge free, so pixels there are counted
// again.
std::vector<Blender::Shade> Blender::shadesIn(const PixelBox &box) {
  constexpr double enough = 4096;
  const double area = static_cast<double>(box.right - box.left) * (box.bottom - box.top);
  const int step = std::max(1, static_cast<int>(std::sqrt(area / enough)));
  for (int y = box.top; y < box.bottom; y += step)
    countRow(y, box.left, box.right, step);
  for (const int y : {box.top, box.bottom - 1})
    countRow(y, box.left, box.right, step);

  std::vector<Shade> shades;
  shades.reserve(used_.size());
  for (const uint16_t index : used_) {
    const Rgb color = rgbOf(bins_[index].pixel);
    shades.push_back({color, luminanceOf(color), bins_[index].count});
    bins_[index] = {};
  }
  used_.clear();
  std::sort(shades.begin(), shades.end(), [](const Shade &a, const Shade &b) { return a.count > b.count; });
  return shades;
}

// The background is the colour that, with those of nearly the same lightness, covers most: in a picture the text may be
// the most frequent single colour. The shades are sorted by count.
Blender::Colors Blender::withBackground(std::span<const Shade> shades) {
  constexpr double sameLightness = 1.6; // contrast
  constexpr size_t candidates = 16;
  Colors colors;
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
std::vector<Rgb> Blender::textsOf(const Rgb &background, std::span<const Shade> shades, int few) {
  std::vector<Shade> others;
  const auto isOther = [&](const Shade &shade) { return contrastOf(shade.color, background) >= distinct; };
  std::copy_if(shades.begin(), shades.end(), std::back_inserter(others), isOther);
  // Single pixels are noise, unless nothing else is there.
  if (std::any_of(others.begin(), others.end(), [few](const Shade &shade) { return shade.count > few; }))
    std::erase_if(others, [few](const Shade &shade) { return shade.count <= few; });
  std::sort(others.begin(), others.end(), [&](const Shade &a, const Shade &b) {
    const Vector first = difference(background, a.color), second = difference(background, b.color);
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

Blender::Colors Blender::colorsIn(const PixelBox &box) {
  const std::vector<Shade> shades = shadesIn(box);
  Colors colors = withBackground(shades);
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

// The least share of the wanted contrast that readable colours keep, at most 1; 0 where the mark would not be visible.
double Blender::suitability(const Blend &blend, const Colors &colors, int leastChange) {
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

Blend Blender::blendFor(const Colors &colors) const {
  constexpr Rgb white{255, 255, 255}, black{0, 0, 0};
  constexpr int steps = 10;
  const Rgb background = colors.background;
  // Multiplying would make a dark background black.
  const bool isLight = contrastOf(background, black) > contrastOf(background, white);
  Blend best = Blend::multiply(mark_);
  double bestSuitability = isLight ? suitability(best, colors, visibleChange) : 0;
  const auto suits = [&] { return bestSuitability >= 1; };
  const auto attempt = [&](const Blend &blend, int leastChange) {
    if (suits()) return;
    const double found = suitability(blend, colors, leastChange);
    if (found <= bestSuitability) return;
    best = blend;
    bestSuitability = found;
  };
  const auto tint = [&](const Rgb &towards, int step) {
    return mix(mark_, towards, static_cast<double>(step) / steps);
  };
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

void Blender::choose(const PixelBox &box, std::vector<Patch> &patches) {
  const Colors colors = colorsIn(box);
  const int boxWidth = box.right - box.left, boxHeight = box.bottom - box.top;
  PixelBox first = box, second = box;
  if (colors.isVaried && 2 * boxWidth > 3 * boxHeight)
    first.right = second.left = box.left + boxWidth / 2;
  else if (colors.isVaried && 2 * boxHeight > 3 * boxWidth)
    first.bottom = second.top = box.top + boxHeight / 2;
  else
    return patches.push_back({box, blendFor(colors)});
  choose(first, patches);
  choose(second, patches);
}

} // namespace host
