// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The steps by which a blend is chosen, on small images: counting, background, text, choice. And blending one pixel.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <vector>

#include "Colors.h"
#include "host/view/blender.h"

namespace host {
namespace {

// ---- contrast, with the values of WCAG's definition ----

struct Contrast {
  Rgb a, b;
  double ratio;
};

TEST(ContrastOfColours, IsTheRatioOfWcag) {
  constexpr Contrast table[] = {
      {white, black, 21},
      {black, white, 21},
      {white, white, 1},
      {red, white, 3.9985},
      {green, white, 1.3722},
      {blue, white, 8.5925},
      {yellow, white, 1.0738},
      {red, black, 5.252},
      {green, black, 15.304},
      {blue, black, 2.444},
      {{0x77, 0x77, 0x77}, white, 4.4781},
      {{0x76, 0x76, 0x76}, white, 4.5422},
      {{10, 10, 10}, black, 1.0607}, // the last grey of the linear part
      {{11, 11, 11}, black, 1.0669},
  };
  for (const auto &[a, b, ratio] : table)
    EXPECT_NEAR(contrastOf(a, b), ratio, 1e-4) << testing::PrintToString(a) << " and " << testing::PrintToString(b);
}

// ---- one pixel ----

TEST(Blending, MultipliesAndRoundsToTheNearest) {
  EXPECT_EQ(Blend::multiply({1, 1, 1})(0xFF7F80FF), 0xFF000101U);
  EXPECT_EQ(Blend::multiply({0x80, 0xFF, 0x40})(0xFF402080), 0xFF202020U);
}

TEST(Blending, KeepsTheAlphaOfAPixel) {
  EXPECT_EQ(Blend::multiply(red)(0x00FFFFFF), 0x00FF0000U);
  EXPECT_EQ(Blend::recolour(white, red, {})(0x80FFFFFF), 0x80FF0000U);
}

struct Recoloured {
  const char *name;
  Rgb background, to;
  std::vector<Rgb> texts;
  Rgb given, expected;
};

TEST(Blending, RecoloursAPixelInProportionToItsDistanceFromText) {
  const Rgb paper{10, 30, 50}, text{210, 130, 90}, other{10, 30, 250};
  const Rgb to{200, 0, 255};
  const std::vector<Recoloured> table = {
      {"the background", paper, to, {text}, paper, to},
      {"the text", paper, to, {text}, text, text},
      {"half of the text", paper, to, {text}, {110, 80, 70}, {205, 65, 173}},
      {"a quarter of the text", paper, to, {text}, {60, 55, 60}, {203, 33, 214}},
      {"the nearer of two texts", paper, to, {text, other}, {10, 30, 150}, {105, 15, 253}},
      {"the nearer of two texts, in another order", paper, to, {other, text}, {10, 30, 150}, {105, 15, 253}},
      {"beyond the text", black, red, {{128, 128, 128}}, white, white},
      {"away from the text", {100, 100, 100}, {150, 160, 170}, {black}, {140, 140, 140}, {190, 200, 210}},
      {"above the scale", {100, 100, 100}, {200, 210, 220}, {black}, {180, 180, 180}, white},
      {"below the scale", {100, 100, 100}, black, {white}, {50, 60, 70}, black},
      {"no text", {1, 2, 3}, {200, 100, 50}, {}, {11, 12, 13}, {210, 110, 60}},
      {"less than a half", black, {1, 1, 1}, {white}, {128, 128, 128}, {128, 128, 128}},
      {"more than a half", black, {1, 1, 1}, {white}, {127, 127, 127}, {128, 128, 128}},
  };
  for (const Recoloured &row : table) {
    const Blend blend = Blend::recolour(row.background, row.to, row.texts);
    EXPECT_EQ(testing::PrintToString(rgbOf(blend(pixelOf(row.given)))), testing::PrintToString(row.expected))
        << row.name;
  }
}

// ---- counting pixels ----

struct Run {
  Rgb color;
  int count;
};

using Row = std::vector<Run>;

Image imageOf(const std::vector<Row> &rows) {
  Image image;
  for (const Row &row : rows)
    for (const auto &[color, count] : row)
      image.pixels.insert(image.pixels.end(), static_cast<size_t>(count), pixelOf(color));
  image.height = static_cast<int>(rows.size());
  image.width = static_cast<int>(image.pixels.size()) / image.height;
  return image;
}

std::vector<Blender::Patch> patchesOf(const Image &image, const PixelBox &box, const Rgb &mark) {
  std::vector<Blender::Patch> patches;
  Blender(image, mark).choose(box, patches);
  return patches;
}

Blend blendOf(const Image &image, const PixelBox &box, const Rgb &mark) {
  return patchesOf(image, box, mark).at(0).blend;
}

PixelBox allOf(const Image &image) { return {0, 0, image.width, image.height}; }

Rgb blended(const Blend &blend, const Rgb &color) { return rgbOf(blend(pixelOf(color))); }

// Of dark shades without text the background is the one that gets exactly the mark's colour.
constexpr Rgb midGrey{128, 128, 128};

bool isBackground(const Rgb &color, const Image &image, const PixelBox &box) {
  return change(blended(blendOf(image, box, midGrey), color), midGrey) == 0;
}

bool isBackground(const Rgb &color, const Image &image) { return isBackground(color, image, allOf(image)); }

// The shades are equally dark: the most frequent one is the background.
constexpr Rgb shadeA{0x12, 0x12, 0x12}, shadeB{0x21, 0x12, 0x12}, shadeC{0x12, 0x12, 0x32}, shadeD{0x12, 0x12, 0x52};

TEST(Counting, TheUpperFourBitsOfEachComponentDecideWhichColoursAreCountedTogether) {
  constexpr Rgb base{0x12, 0x12, 0x12}, third{0x12, 0x02, 0x32};
  for (int bit = 0; bit < 7; ++bit)
    for (const int component : {0, 1, 2}) {
      if (component == 1 && bit == 6) continue; // is distinct from the others
      Rgb similar = base;
      uint8_t &changed = component == 0 ? similar.red : component == 1 ? similar.green : similar.blue;
      changed = static_cast<uint8_t>(changed ^ 1U << bit);
      const Image image = imageOf({{{third, 4}, {base, 3}, {similar, 2}}});
      EXPECT_EQ(isBackground(base, image), bit < 4) << component << ", bit " << bit;
      EXPECT_EQ(isBackground(third, image), bit >= 4) << component << ", bit " << bit;
    }
}

TEST(Counting, OfColoursThatAreCountedTogetherTheMajorityStandsForAll) {
  constexpr Rgb a{0x12, 0x12, 0x12}, b{0x1E, 0x1E, 0x1E}, c{0x18, 0x18, 0x18};
  EXPECT_TRUE(isBackground(b, imageOf({{{a, 2}, {b, 3}}})));
  EXPECT_TRUE(isBackground(a, imageOf({{{a, 3}, {b, 2}}})));
  EXPECT_TRUE(isBackground(a, imageOf({{{a, 2}, {b, 3}, {a, 2}}})));
  EXPECT_TRUE(isBackground(b, imageOf({{{a, 2}, {c, 1}, {b, 3}}})));
  EXPECT_TRUE(isBackground(a, imageOf({{{a, 2}, {b, 2}}}))) << "the first one, if none has the majority";
}

TEST(Counting, EachPixelOfARowCountsOnce) {
  EXPECT_TRUE(isBackground(
      shadeC, imageOf({{{shadeA, 1}, {shadeB, 1}, {shadeA, 1}, {shadeB, 1}, {shadeA, 1}, {shadeB, 1}, {shadeC, 4}}})));
  EXPECT_TRUE(isBackground(shadeC, imageOf({{{shadeA, 4}, {shadeC, 5}}, {{shadeA, 4}, {shadeC, 5}}})));
  EXPECT_TRUE(isBackground(shadeC, imageOf({{{shadeA, 4}, {shadeC, 5}},
                                            {{shadeA, 5}, {shadeD, 1}, {shadeC, 3}},
                                            {{shadeA, 3}, {shadeC, 5}, {shadeD, 1}}})));
}

TEST(Counting, TheUpperAndTheLowerRowCountAgain) {
  const Row a = {{shadeA, 3}}, c = {{shadeC, 3}};
  EXPECT_TRUE(isBackground(shadeA, imageOf({a, c, c, c, a})));
  EXPECT_TRUE(isBackground(shadeC, imageOf({a, c, c, c, c, c, a})));
  EXPECT_TRUE(isBackground(shadeA, imageOf({a, c, c, a, c, c, a})));
}

TEST(Counting, PixelsOutsideOfTheBoxDoNotCount) {
  const Row outside = {{shadeC, 7}};
  const Image image = imageOf({outside,
                               {{shadeC, 1}, {shadeA, 3}, {shadeC, 3}},
                               {{shadeC, 1}, {shadeA, 3}, {shadeB, 2}, {shadeC, 1}},
                               outside});
  EXPECT_TRUE(isBackground(shadeA, image, {1, 1, 6, 2}));
  EXPECT_TRUE(isBackground(shadeA, image, {1, 1, 6, 3}));
  EXPECT_TRUE(isBackground(shadeC, image, {0, 0, 7, 3}));
}

// `often` fills the image, except that in every other row every other pixel is `rare`.
Image latticeOf(int across, int down, const Rgb &rare, const Rgb &often) {
  Image image{across, down, std::vector<uint32_t>(static_cast<size_t>(across) * static_cast<size_t>(down))};
  for (int y = 0; y < down; ++y)
    for (int x = 0; x < across; ++x)
      image.row(y)[x] = pixelOf(x % 2 == 0 && y % 2 == 0 ? rare : often);
  return image;
}

TEST(Counting, FromFourTimes4096PixelsOnEverySecondOneCounts) {
  const Image image = latticeOf(256, 256, shadeA, shadeC);
  EXPECT_TRUE(isBackground(shadeC, image, {2, 2, 129, 131})); // 16383 pixels
  EXPECT_TRUE(isBackground(shadeA, image, {2, 2, 130, 130})); // 16384
  EXPECT_TRUE(isBackground(shadeC, image, {3, 3, 131, 131}));
}

TEST(Counting, EachBoxIsCountedAlone) {
  const Image image = imageOf({{{white, 8}, {black, 8}}});
  std::vector<Blender::Patch> patches;
  Blender blender(image, blue);
  for (const PixelBox &box : {PixelBox{0, 0, 8, 1}, {0, 0, 8, 1}, {8, 0, 16, 1}, {0, 0, 8, 1}})
    blender.choose(box, patches);
  ASSERT_EQ(patches.size(), 4U);
  for (const size_t onWhite : {0U, 1U, 3U})
    EXPECT_EQ(patches[onWhite].blend(pixelOf(white)), pixelOf(blue)) << onWhite;
  EXPECT_EQ(patches[2].blend(pixelOf(black)), pixelOf(blue));
}

// ---- what is background, and what is text ----

Rgb greyOf(int level) {
  return {static_cast<uint8_t>(level), static_cast<uint8_t>(level), static_cast<uint8_t>(level)};
}

std::string after(const Image &image, const Rgb &mark, const Rgb &color) {
  return testing::PrintToString(blended(blendOf(image, allOf(image), mark), color));
}

std::string hex(const Rgb &color) { return testing::PrintToString(color); }

TEST(Background, IsWhatCoversMostWithShadesOfItsLightness) {
  constexpr Rgb mark{96, 96, 96};
  const auto isBlack = [&](int shade) {
    const Image image = imageOf(std::vector<Row>(8, {{white, 5}, {black, 4}, {greyOf(shade), 3}}));
    return after(image, mark, black) == hex(mark);
  };
  EXPECT_TRUE(isBlack(48));  // contrast to black: 1.59
  EXPECT_FALSE(isBlack(49)); // 1.61
}

TEST(Background, IsWhatIsNotDistinctFromIt) {
  const auto afterOn = [](int level) {
    return after(imageOf({{{black, 10}, {greyOf(level), 5}}}), midGrey, greyOf(level));
  };
  EXPECT_EQ(afterOn(63), hex(greyOf(63 + 128))); // contrast to black: 1.99
  EXPECT_EQ(afterOn(64), hex(greyOf(64)));       // 2.03
}

TEST(Background, IsSplitIfLessThanTwoThirdsAreEquallyLight) {
  const auto splits = [](int dark, int light) {
    const Image image = imageOf({{{black, dark}, {white, light}}});
    return patchesOf(image, allOf(image), red).size() > 1;
  };
  EXPECT_FALSE(splits(20, 10));
  EXPECT_TRUE(splits(19, 11));
  EXPECT_FALSE(splits(10, 20));
  EXPECT_TRUE(splits(11, 19));
}

TEST(Background, IsHalvedAlongTheLongerSideIfItIsHalfAsLongAgain) {
  struct {
    PixelBox box;
    std::vector<PixelBox> parts;
  } const table[] = {
      {{2, 3, 14, 11}, {{2, 3, 14, 11}}},
      {{2, 3, 15, 11}, {{2, 3, 8, 11}, {8, 3, 15, 11}}},
      {{2, 3, 10, 15}, {{2, 3, 10, 15}}},
      {{2, 3, 10, 16}, {{2, 3, 10, 9}, {2, 9, 10, 16}}},
      {{2, 2, 18, 6}, {{2, 2, 6, 6}, {6, 2, 10, 6}, {10, 2, 14, 6}, {14, 2, 18, 6}}},
  };
  Image image{20, 20, std::vector<uint32_t>(400)};
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 20; ++x)
      image.row(y)[x] = pixelOf((x + y) % 2 == 0 ? white : black);
  const auto fieldsOf = [](const PixelBox &box) { return std::array{box.left, box.top, box.right, box.bottom}; };
  for (const auto &[box, parts] : table) {
    std::vector<std::array<int, 4>> found, expected;
    for (const Blender::Patch &patch : patchesOf(image, box, red))
      found.push_back(fieldsOf(patch.box));
    for (const PixelBox &part : parts)
      expected.push_back(fieldsOf(part));
    EXPECT_EQ(found, expected);
  }
}

// A text's colour stays; a colour that is none changes with the background.
TEST(Text, IsNotWhatIsAsRareAsNoise) {
  const auto stays = [](int rows, int noise, int other) {
    Image image{25, rows, std::vector<uint32_t>(25U * static_cast<size_t>(rows), pixelOf(black))};
    std::fill_n(image.row(2), noise, pixelOf(blue));
    std::fill_n(image.row(3), other, pixelOf(white));
    return after(image, {64, 32, 32}, blue) == hex(blue);
  };
  // Two rows count again: 18 rows are 500 pixels, of which one is noise.
  EXPECT_TRUE(stays(17, 1, 3));
  EXPECT_FALSE(stays(18, 1, 3));
  EXPECT_FALSE(stays(18, 1, 2));
  EXPECT_TRUE(stays(18, 2, 3));
  EXPECT_TRUE(stays(37, 2, 3));
  EXPECT_FALSE(stays(38, 2, 3));
  EXPECT_TRUE(stays(18, 1, 0)) << "there is nothing else";
  EXPECT_TRUE(stays(18, 1, 1)) << "there is nothing that is more frequent";
}

TEST(Text, HasAtMostSixColours) {
  const Rgb texts[] = {white, yellow, {0, 255, 255}, {255, 0, 255}, red, {0, 253, 0}}, seventh{0, 0, 250},
            mark{48, 16, 16};
  Row row = {{black, 30}, {seventh, 2}};
  for (const Rgb &text : texts)
    row.push_back({text, 1});
  const Image image = imageOf({row});
  EXPECT_EQ(after(image, mark, black), hex(mark));
  for (const Rgb &text : texts)
    EXPECT_EQ(after(image, mark, text), hex(text));
  EXPECT_NE(after(image, mark, seventh), hex(seventh));
}

TEST(Text, OfNearlyTheSameDirectionIsAnEdge) {
  const auto stays = [](int level) {
    const Rgb color{static_cast<uint8_t>(level), 255, 255};
    return after(imageOf({{{black, 20}, {white, 4}, {color, 3}}}), {64, 32, 32}, color) == hex(color);
  };
  EXPECT_TRUE(stays(139));  // the cosine is 0.9695
  EXPECT_FALSE(stays(140)); // 0.9702
}

// Where most of it is edges the text is thin: the colour of its strokes is beyond the farthest pixel.
struct Thin {
  Rgb background, farthest, edge, mark;
  Rgb text, now; // the colour that stays, and what becomes of the farthest pixels
};

TEST(Text, OfWhichMostIsEdgesIsExtended) {
  constexpr Thin table[] = {
      {{32, 16, 8}, {132, 166, 58}, {82, 91, 33}, {80, 70, 60}, {191, 255, 88}, {150, 186, 77}},
      {{200, 120, 140}, {100, 20, 90}, {140, 60, 110}, white, {80, 0, 80}, {109, 43, 109}},
  };
  for (const Thin &thin : table) {
    const Image some = imageOf({{{thin.background, 40}, {thin.farthest, 4}, {thin.edge, 4}}});
    EXPECT_EQ(after(some, thin.mark, thin.background), hex(thin.mark));
    EXPECT_EQ(after(some, thin.mark, thin.farthest), hex(thin.farthest));
    const Image most = imageOf({{{thin.background, 40}, {thin.farthest, 4}, {thin.edge, 5}}});
    EXPECT_EQ(after(most, thin.mark, thin.background), hex(thin.mark));
    EXPECT_EQ(after(most, thin.mark, thin.text), hex(thin.text));
    EXPECT_EQ(after(most, thin.mark, thin.farthest), hex(thin.now));
  }
}

// On a mark of 142 white text has enough contrast, on its edge of 40 it has not.
TEST(Picture, IsWhatHasEdgesInMoreThanAFifth) {
  constexpr int edge = 40;
  const auto afterBlack = [](int blacks, int edges) {
    return after(imageOf({{{black, blacks}, {white, 4}, {greyOf(edge), edges}}}), greyOf(142), black);
  };
  EXPECT_EQ(afterBlack(12, 4), hex(greyOf(142)));
  EXPECT_EQ(afterBlack(11, 5), hex(greyOf(114)));
}

TEST(Picture, IsNotWhatIsAsLightAsPaper) {
  const auto afterBackground = [](int level) {
    const Image image = imageOf(std::vector<Row>(16, {{greyOf(level), 11}, {black, 4}, {greyOf(181), 5}}));
    return after(image, greyOf(100), greyOf(level));
  };
  EXPECT_EQ(afterBackground(244), hex(greyOf(96)));  // contrast to white: 1.099
  EXPECT_EQ(afterBackground(243), hex(greyOf(140))); // 1.11
}

// The last shade would make white text unreadable.
TEST(Picture, HasAtMost32ShadesOfBackground) {
  constexpr Rgb last{0, 36, 128}, mark{138, 138, 138};
  std::vector<Rgb> shades;
  for (const int r : {0, 16, 32})
    for (const int g : {0, 16})
      for (int b = std::max(r, g) + 32; b <= 128; b += 16)
        shades.push_back({static_cast<uint8_t>(r), static_cast<uint8_t>(g), static_cast<uint8_t>(b)});
  const auto suits = [&](size_t count) {
    Row row = {{black, 100}, {white, 10}, {last, 1}};
    for (const Rgb &shade : std::span(shades).first(count - 2))
      row.push_back({shade, 2});
    return after(imageOf({row}), mark, black) == hex(mark);
  };
  EXPECT_FALSE(suits(32));
  EXPECT_TRUE(suits(33));
}

// ---- the choice ----

struct Choice {
  Row row;
  Rgb mark, now; // of the row's first colour
};

TEST(Choice, IsTheFirstThatSuits) {
  const Rgb yellowish{255, 255, 231}, lessYellowish{255, 255, 232};
  const std::vector<Choice> table = {
      // A change of 40 is enough without text, and 24 for multiplying.
      {{{black, 9}}, greyOf(40), greyOf(40)},
      {{{black, 9}}, greyOf(39), greyOf(61)},
      {{{white, 9}}, yellowish, yellowish},
      {{{white, 9}}, lessYellowish, {230, 230, 209}},
      // Three quarters have to change.
      {{{white, 12}, {yellow, 4}}, yellow, yellow},
      {{{white, 11}, {yellow, 5}}, yellow, {204, 204, 0}},
      // Black text has a contrast of 3.24 on 94, and of 3.19 on 93.
      {{{white, 12}, {black, 4}}, greyOf(94), greyOf(94)},
      {{{white, 12}, {black, 4}}, greyOf(93), greyOf(109)},
      // 118 is closer to white than to black.
      {{{greyOf(118), 9}}, red, {118, 0, 0}},
      {{{greyOf(117), 9}}, red, red},
      // Multiplying by lighter tints.
      {{{white, 12}, {black, 4}}, black, greyOf(102)},
      {{{white, 12}, {greyOf(90), 4}}, black, greyOf(128)},
      // The background gets a darker or a lighter tint of the mark.
      {{{red, 12}, {white, 4}}, red, {204, 0, 0}},
      {{{black, 12}, {white, 4}}, white, greyOf(128)},
      {{{black, 12}, {white, 4}}, black, greyOf(51)},
      {{{blue, 12}, {white, 4}}, blue, {0, 0, 204}},
      {{{black, 12}, {greyOf(100), 4}}, white, white},
      {{{black, 12}, {greyOf(92), 4}}, greyOf(30), greyOf(188)},
      // Text of several colours leaves little choice.
      {{{greyOf(128), 20}, {black, 4}, {white, 4}}, red, {128, 90, 90}},
      {{{greyOf(118), 20}, {black, 4}, {white, 4}}, blue, {94, 94, 118}},
      {{{greyOf(118), 20}, {black, 4}, {white, 4}}, yellow, {118, 118, 0}},
      {{{white, 40}, {black, 4}, {red, 4}, {blue, 4}}, red, {255, 230, 230}},
      {{{white, 40}, {black, 4}, {red, 4}, {{0, 128, 0}, 4}}, black, greyOf(230)},
  };
  for (const auto &[row, mark, now] : table)
    EXPECT_EQ(after(imageOf({row}), mark, row[0].color), hex(now)) << hex(mark) << " on " << hex(row[0].color);
}

TEST(Choice, KeepsOnlyReadableTextReadable) {
  const auto afterText = [](int level) {
    return after(imageOf({{{white, 12}, {greyOf(level), 4}}}), greyOf(64), greyOf(level));
  };
  EXPECT_EQ(afterText(149), hex(greyOf(37)));  // contrast to white: 2.996
  EXPECT_EQ(afterText(148), hex(greyOf(148))); // 3.03
}

} // namespace
} // namespace host
