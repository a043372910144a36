// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Marks on an image.
#include <gtest/gtest.h>

#include <algorithm>

#include "host/view/painting.h"

namespace {

using host::Box;
using host::Image;
using host::Rgb;

constexpr uint32_t white = 0xFFFFFFFF, black = 0xFF000000, yellow = 0xFFFFFF00;
constexpr Rgb yellowPen{255, 255, 0};

Image blank(int width, int height, uint32_t color = white) {
  return {width, height, std::vector<uint32_t>(static_cast<size_t>(width) * static_cast<size_t>(height), color)};
}

// left, top, right, bottom in page space; the page is as high as the image.
void mark(Image &image, const std::vector<Box> &boxes, const Rgb &color, double scale = 1) {
  host::paintMarks(image, boxes, {scale, image.height / scale}, color);
}

tavrel::ColorValue rgb(double red, double green, double blue) {
  const auto f = [](double value) { return static_cast<tavrel::Fixed>(value * tavrel::fixedOne); };
  return {tavrel::colorSpaceRGB, {f(red), f(green), f(blue), 0}};
}

void expectRgb(const Rgb &actual, int red, int green, int blue) {
  EXPECT_EQ(actual.red, red);
  EXPECT_EQ(actual.green, green);
  EXPECT_EQ(actual.blue, blue);
}

TEST(Painting, WhiteTakesTheColour) {
  Image image = blank(4, 4);
  mark(image, {{0, 4, 4, 0}}, yellowPen);
  EXPECT_EQ(image.pixels, blank(4, 4, yellow).pixels);
}

TEST(Painting, BlackOnWhiteStaysBlack) {
  Image image = blank(4, 4);
  image.pixels[5] = black;
  mark(image, {{0, 4, 4, 0}}, yellowPen);
  Image expected = blank(4, 4, yellow);
  expected.pixels[5] = black;
  EXPECT_EQ(image.pixels, expected.pixels);
}

TEST(Painting, AColourOnWhiteIsMultipliedComponentByComponent) {
  Image image = blank(4, 4);
  image.pixels[5] = 0xFF804020;
  mark(image, {{0, 4, 4, 0}}, {0x80, 0xFF, 0x00});
  Image expected = blank(4, 4, 0xFF80FF00);
  expected.pixels[5] = 0xFF404000;
  EXPECT_EQ(image.pixels, expected.pixels);
}

TEST(Painting, EachBoxIsBlendedByWhatItCovers) {
  Image image = blank(8, 4);
  for (int y = 0; y < 4; ++y)
    std::fill_n(image.row(y) + 4, 4, black);
  mark(image, {{0, 4, 4, 0}, {4, 4, 8, 0}}, {0xFF, 0, 0});
  EXPECT_EQ(image.pixels, blank(8, 4, 0xFFFF0000).pixels);
}

TEST(Painting, OverlappingBoxesAreJudgedByThePageWithoutMarks) {
  Image image = blank(4, 4, black);
  mark(image, {{0, 4, 4, 0}, {0, 4, 4, 1}}, yellowPen);
  EXPECT_EQ(image.pixels, blank(4, 4, yellow).pixels);
}

TEST(Painting, TheUpperEdgeOfThePageIsTheFirstRow) {
  Image image = blank(2, 3);
  mark(image, {{0, 3, 1, 2}}, yellowPen);
  EXPECT_EQ(image.pixels, (std::vector<uint32_t>{yellow, white, white, white, white, white}));
}

TEST(Painting, BoxesAreRoundedOutwards) {
  Image image = blank(4, 1);
  mark(image, {{1.9, 1, 2.1, 0}}, yellowPen);
  EXPECT_EQ(image.pixels, (std::vector<uint32_t>{white, yellow, yellow, white}));
}

TEST(Painting, ABoxThatEndsOnAPixelsEdgeDoesNotReachIntoTheNext) {
  Image image = blank(4, 1);
  mark(image, {{1.0000001, 1, 2.0000001, 0}}, yellowPen);
  EXPECT_EQ(image.pixels, (std::vector<uint32_t>{white, yellow, white, white}));
}

TEST(Painting, BoxesGrowWithTheScale) {
  Image image = blank(4, 2);
  mark(image, {{1, 1, 2, 0}}, yellowPen, 2);
  EXPECT_EQ(image.pixels, (std::vector<uint32_t>{white, white, yellow, yellow, white, white, yellow, yellow}));
}

TEST(Painting, PositionsGrowWithTheScale) {
  Image image = blank(4, 4);
  mark(image, {{1, 1, 2, 0}}, yellowPen, 2);
  Image expected = blank(4, 4);
  for (const size_t pixel : {10U, 11U, 14U, 15U})
    expected.pixels[pixel] = yellow;
  EXPECT_EQ(image.pixels, expected.pixels);
}

TEST(Painting, MarksApartFromEachOtherAreComplete) {
  Image image = blank(4, 4);
  mark(image, {{0, 4, 1, 3}, {2, 2, 4, 0}}, yellowPen);
  Image expected = blank(4, 4);
  for (const size_t pixel : {0U, 10U, 11U, 14U, 15U})
    expected.pixels[pixel] = yellow;
  EXPECT_EQ(image.pixels, expected.pixels);
}

TEST(Painting, AMarkFarFromTheUpperLeftIsComplete) {
  constexpr int side = 2048, begin = 1024;
  Image image = blank(side, side);
  mark(image, {{begin, begin, side, 0}}, yellowPen);
  Image expected = blank(side, side);
  for (int y = begin; y < side; ++y)
    std::fill_n(expected.row(y) + begin, side - begin, yellow);
  EXPECT_TRUE(image.pixels == expected.pixels) << "too many to be printed";
}

TEST(Painting, AnImageWithoutPixelsHasNoMarks) {
  for (const auto &[width, height] : {std::pair(0, 4), std::pair(4, 0), std::pair(0, 0)}) {
    Image image = blank(width, height);
    host::paintMarks(image, std::vector<Box>{{0, 4, 4, 0}}, {1, 4}, yellowPen);
    EXPECT_TRUE(image.pixels.empty());
  }
}

TEST(Painting, OverlappingBoxesAreMarkedOnce) {
  Image image = blank(3, 1);
  mark(image, {{0, 1, 2, 0}, {1, 1, 3, 0}}, {0x80, 0x80, 0x80});
  EXPECT_EQ(image.pixels, blank(3, 1, 0xFF808080).pixels);
}

TEST(Painting, ASecondMarkIsMultipliedOntoTheFirst) {
  Image image = blank(1, 1);
  mark(image, {{0, 1, 1, 0}}, yellowPen);
  mark(image, {{0, 1, 1, 0}}, {0, 255, 255});
  EXPECT_EQ(image.pixels[0], 0xFF00FF00U);
}

TEST(Painting, WhatLiesOffThePageIsClipped) {
  Image image = blank(2, 2);
  mark(image, {{-1e12, 1e12, 1, 1}, {5, 9, 6, 8}}, yellowPen);
  EXPECT_EQ(image.pixels, (std::vector<uint32_t>{yellow, white, white, white}));
}

TEST(Painting, BoxesBesideThePageAreNotMarked) {
  for (const Box &box : std::vector<Box>{{-3, 2, -1, 0}, {3, 2, 5, 0}, {0, 5, 2, 3}, {0, -1, 2, -3}}) {
    Image image = blank(2, 2);
    mark(image, {box}, yellowPen);
    EXPECT_EQ(image.pixels, blank(2, 2).pixels) << box.left << ", " << box.top;
  }
}

TEST(Painting, BoxesWithoutAreaAreNotMarked) {
  Image image = blank(2, 2);
  mark(image, {{0.5, 2, 0.5, 0}, {0, 0.5, 2, 0.5}}, yellowPen);
  EXPECT_EQ(image.pixels, blank(2, 2).pixels);
}

TEST(Painting, ComponentsUpToOneAreFractions) { expectRgb(host::rgbOf(rgb(1, 0.5, 0)), 255, 128, 0); }

TEST(Painting, IfAnyComponentIsAboveOneAllAreOnTheScaleTo255) { expectRgb(host::rgbOf(rgb(255, 0.5, 1)), 255, 1, 1); }

TEST(Painting, AColourBeyondItsScaleIsClamped) { expectRgb(host::rgbOf(rgb(4000, -1, 255)), 255, 0, 255); }

TEST(Painting, TheFourthComponentOfAColourIsIgnored) {
  tavrel::ColorValue color = rgb(1, 1, 0);
  color.component[3] = 200 * tavrel::fixedOne;
  expectRgb(host::rgbOf(color), 255, 255, 0);
}

TEST(Painting, AnotherColourSpaceIsRefused) { EXPECT_THROW(host::rgbOf({2, {0, 0, 0, 0}}), host::HostError); }

} // namespace
