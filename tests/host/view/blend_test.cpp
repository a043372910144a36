// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Marks over text on backgrounds of all kinds: readable text stays readable, and the mark is visible.
#include "host/view/blend.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <random>
#include <string>

#include "Colors.h"
#include "host/view/painting.h"

namespace host {

namespace {

constexpr Rgb markColors[] = {red, yellow, green, blue};

// A word of strokes from top to bottom, each three pixels wide with an edge of mixed pixels, eight pixels apart.
constexpr int width = 64, height = 20, stroke = 4, period = 8;

using ColorAt = std::function<Rgb(int x, int y)>;

Image wordOn(const ColorAt &background, const std::vector<Rgb> &texts) {
  Image image{width, height, std::vector<uint32_t>(size_t{width} * height)};
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const Rgb &text = texts[static_cast<size_t>(x / period) % texts.size()];
      const int position = x % period;
      const bool inStroke = y >= 3 && y < height - 3 && position >= stroke - 1 && position <= stroke + 2;
      const double coverage = !inStroke ? 0 : position == stroke - 1 || position == stroke + 2 ? 0.5 : 1;
      image.row(y)[x] = pixelOf(between(background(x, y), text, coverage));
    }
  return image;
}

ColorAt plain(const Rgb &color) {
  return [color](int, int) { return color; };
}

Image marked(Image image, const Rgb &mark) {
  paintMarks(image, std::vector<Box>{{0, height, width, 0}}, {1, height}, mark);
  return image;
}

constexpr int middle = height / 2; // a row

// ---- plain backgrounds ----

// Eight grades of grey, and every colour of three levels a component.
std::vector<Rgb> palette() {
  std::vector<Rgb> colors;
  for (int level = 0; level < 256; level += 36)
    colors.push_back({static_cast<uint8_t>(level), static_cast<uint8_t>(level), static_cast<uint8_t>(level)});
  constexpr uint8_t levels[] = {0, 128, 255};
  for (const uint8_t r : levels)
    for (const uint8_t g : levels)
      for (const uint8_t b : levels)
        colors.push_back({r, g, b});
  return colors;
}

class OnPlainBackground : public testing::TestWithParam<Rgb> {};

TEST_P(OnPlainBackground, ReadableTextStaysReadableAndTheMarkIsVisible) {
  for (const Rgb &background : palette())
    for (const Rgb &text : palette()) {
      if (contrastOf(background, text) < readable) continue;
      const Image image = marked(wordOn(plain(background), {text}), GetParam());
      const Rgb now = rgbOf(image.row(middle)[0]), textNow = rgbOf(image.row(middle)[stroke]);
      EXPECT_GE(contrastOf(now, textNow), readable)
          << testing::PrintToString(text) << " on " << testing::PrintToString(background);
      EXPECT_GE(change(background, now), 24)
          << testing::PrintToString(text) << " on " << testing::PrintToString(background);
    }
}

TEST_P(OnPlainBackground, EdgesStayBetweenTextAndBackground) {
  for (const Rgb &background : {white, black, red, Rgb{128, 128, 128}, Rgb{0, 0, 128}})
    for (const Rgb &text : {black, white}) {
      if (contrastOf(background, text) < readable) continue;
      const Image image = marked(wordOn(plain(background), {text}), GetParam());
      const Rgb now = rgbOf(image.row(middle)[0]), edge = rgbOf(image.row(middle)[stroke - 1]),
                textNow = rgbOf(image.row(middle)[stroke]);
      EXPECT_LE(change(edge, between(now, textNow, 0.5)), 2)
          << testing::PrintToString(text) << " on " << testing::PrintToString(background);
    }
}

TEST_P(OnPlainBackground, TextOfTwoColoursStaysReadable) {
  for (const std::vector<Rgb> &texts : {std::vector<Rgb>{black, red}, {black, blue}, {black, {0, 128, 0}}})
    for (size_t i = 0; i < texts.size(); ++i) {
      const Image image = marked(wordOn(plain(white), texts), GetParam());
      const Rgb now = rgbOf(image.row(middle)[0]);
      EXPECT_GE(contrastOf(now, rgbOf(image.row(middle)[static_cast<int>(i) * period + stroke])), readable)
          << testing::PrintToString(texts[i]);
    }
}

std::string nameOf(const testing::TestParamInfo<Rgb> &instance) { return testing::PrintToString(instance.param); }

INSTANTIATE_TEST_SUITE_P(Marks, OnPlainBackground,
                         testing::Values(red, yellow, green, blue, black, white, Rgb{255, 192, 203}), nameOf);

// ---- light paper ----

TEST(OnPaper, BlackTextIsMultiplied) {
  for (const Rgb &paper : {white, Rgb{255, 253, 240}, Rgb{224, 224, 224}})
    for (const Rgb &mark : {red, yellow, green}) {
      const Image before = wordOn(plain(paper), {black}), after = marked(before, mark);
      const Blend multiply = Blend::multiply(mark);
      for (size_t i = 0; i < before.pixels.size(); ++i)
        ASSERT_EQ(after.pixels[i], multiply(before.pixels[i])) << testing::PrintToString(mark);
    }
}

// Black strokes thinner than a pixel are nowhere black.
TEST(OnPaper, ThinBlackTextIsMultipliedLikeAnyOther) {
  Image before = wordOn(plain(white), {white});
  constexpr uint8_t greys[] = {0x80, 0x90, 0x98, 0xA0, 0xA8, 0xB0, 0x90, 0xA0};
  for (int y = 3; y < height - 3; ++y)
    for (int x = 0; x < width; x += 4) {
      const uint8_t grey = greys[static_cast<size_t>(x / 4 + y) % std::size(greys)];
      before.row(y)[x] = pixelOf({grey, grey, grey});
    }
  const Image after = marked(before, red);
  const Blend multiply = Blend::multiply(red);
  for (size_t i = 0; i < before.pixels.size(); ++i)
    ASSERT_EQ(after.pixels[i], multiply(before.pixels[i]));
}

TEST(OnPaper, AColourTooDarkForBlackTextIsLightened) {
  const Image image = marked(wordOn(plain(white), {black}), blue);
  const Rgb now = rgbOf(image.row(middle)[0]);
  EXPECT_EQ(now.blue, 255);
  EXPECT_EQ(now.red, now.green);
  EXPECT_GT(now.red, 0);
  EXPECT_LT(now.red, 128);
}

TEST(OnPaper, TextInTheMarksColourStaysReadable) {
  const Image image = marked(wordOn(plain(white), {red}), red);
  EXPECT_GE(contrastOf(rgbOf(image.row(middle)[0]), rgbOf(image.row(middle)[stroke])), readable);
}

// ---- dark backgrounds ----

TEST(OnBlack, TheBackgroundTakesTheColourAndTheTextStays) {
  const Image image = marked(wordOn(plain(black), {white}), red);
  EXPECT_EQ(image.row(middle)[0], pixelOf(red));
  EXPECT_EQ(image.row(middle)[stroke], pixelOf(white));
}

TEST(OnBlack, WhereNothingIsWrittenTheMarkIsVisible) {
  EXPECT_EQ(marked(wordOn(plain(black), {black}), green).row(middle)[0], pixelOf(green));
}

TEST(OnABarOfTheMarksColour, TheBarGetsDarkerAndTheTextStays) {
  const Image image = marked(wordOn(plain(red), {white}), red);
  const Rgb now = rgbOf(image.row(middle)[0]);
  EXPECT_LT(now.red, 255 - 24);
  EXPECT_EQ(now.green, 0);
  EXPECT_EQ(image.row(middle)[stroke], pixelOf(white));
}

// ---- pictures ----

struct Picture {
  const char *name;
  ColorAt colorAt;
  Rgb text;
};

void PrintTo(const Picture &picture, std::ostream *out) { *out << picture.name; }

uint8_t clamped(double value) { return static_cast<uint8_t>(std::clamp(value, 0.0, 255.0)); }

// Noise is a function of the position, so that every run has the same.
ColorAt noisy(const ColorAt &from, int amplitude) {
  return [=](int x, int y) {
    std::minstd_rand random(static_cast<unsigned>(x * 131 + y * 7919 + 1));
    random.discard(3);
    std::uniform_int_distribution<int> noise(-amplitude, amplitude);
    const Rgb color = from(x, y);
    const int lightness = noise(random);
    return Rgb{clamped(color.red + lightness), clamped(color.green + lightness),
               clamped(color.blue + lightness + noise(random) / 2)};
  };
}

ColorAt gradient(const Rgb &left, const Rgb &right) {
  return [=](int x, int) { return between(left, right, static_cast<double>(x) / width); };
}

class OnPicture : public testing::TestWithParam<Picture> {};

// A stroke is compared with the pixel of background beside it.
TEST_P(OnPicture, ReadableTextStaysReadableAndMostOfTheMarkIsVisible) {
  for (const Rgb &mark : markColors) {
    const Image before = wordOn(GetParam().colorAt, {GetParam().text}), after = marked(before, mark);
    int compared = 0, lost = 0, visible = 0;
    for (int y = 3; y < height - 3; ++y)
      for (int x = stroke; x < width; x += period) {
        const int beside = x - 2;
        visible += change(rgbOf(before.row(y)[beside]), rgbOf(after.row(y)[beside])) >= 24 ? 1 : 0;
        ++compared;
        if (contrastOf(rgbOf(before.row(y)[beside]), rgbOf(before.row(y)[x])) < readable) continue;
        if (contrastOf(rgbOf(after.row(y)[beside]), rgbOf(after.row(y)[x])) < readable) ++lost;
      }
    EXPECT_EQ(lost, 0) << testing::PrintToString(mark) << " of " << compared;
    EXPECT_GT(visible, compared * 3 / 4) << testing::PrintToString(mark);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Pictures, OnPicture,
    testing::Values(Picture{"NightSky", noisy(gradient({10, 15, 40}, {40, 40, 80}), 10), white},
                    Picture{"Forest", noisy(gradient({20, 60, 20}, {60, 90, 40}), 20), white},
                    Picture{"Sand", noisy(gradient({220, 200, 150}, {250, 230, 190}), 15), black},
                    Picture{"Sky", noisy(gradient({120, 180, 240}, {230, 240, 255}), 8), black},
                    Picture{"FromNightToDusk", noisy(gradient({0, 0, 30}, {130, 140, 180}), 8), white},
                    Picture{"FromDayToDusk", noisy(gradient({255, 240, 200}, {120, 105, 100}), 8), black},
                    Picture{"Gravel", noisy(gradient({70, 70, 70}, {80, 75, 70}), 45), white},
                    Picture{"Snow", noisy(gradient({200, 205, 210}, {215, 215, 215}), 40), black},
                    Picture{"Dusk", noisy(gradient({30, 20, 60}, {120, 60, 60}), 10), white}),
    [](const testing::TestParamInfo<Picture> &instance) { return std::string(instance.param.name); });

} // namespace
} // namespace host
