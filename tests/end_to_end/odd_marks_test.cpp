// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Marks of vertical writing, of words without area, and over text on dark and coloured backgrounds. Runs the commands
// of a user and compares pixels.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "document/here.h"
#include "support/pdf.h"
#include "tests/end_to_end/oracle.h"

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

constexpr double dpi = 100;

/// A rectangle of pixels; right and bottom are the first beyond.
struct Area {
  int left = 1 << 20, top = 1 << 20, right = 0, bottom = 0;
  bool empty() const { return left >= right; }
  void add(int x, int y) {
    *this = {std::min(left, x), std::min(top, y), std::max(right, x + 1), std::max(bottom, y + 1)};
  }
};

class OddMarks : public testing::Test {
protected:
  /// Marks every occurrence of the text in a document.
  CommandResult mark(const fs::path &document, const std::string &text, const std::string &color = "FF0000") {
    const std::string hits = folder.path() / "hits.xml";
    const CommandResult found =
        run(std::string(TAVREL) + " hits '" + document.string() + "' '" + text + "' --color " + color + " -o " + hits);
    EXPECT_EQ(found.status, 0) << found.output;
    return run(std::string(TAVREL) + " render '" + document.string() + "' " + hits + " --dpi 100 --out " +
               (folder.path() / "out").string());
  }
  Pixels marked(int page) const {
    return readPng(folder.path() / "out" / ("page-000" + std::to_string(page + 1) + ".png"));
  }

  test::ScratchFolder folder;
};

Area changed(const Pixels &now, const host::Image &before) {
  Area area;
  for (int y = 0; y < now.height; ++y)
    for (int x = 0; x < now.width; ++x)
      if (now.at(x, y) != (before.row(y)[x] & 0xFFFFFF)) area.add(x, y);
  return area;
}

Area inkOf(const host::Image &image) {
  Area area;
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x)
      if ((image.row(y)[x] & 0xFFU) < 0x80) area.add(x, y);
  return area;
}

// ---- vertical writing ----

class Vertical : public OddMarks, public testing::WithParamInterface<const char *> {};

TEST_P(Vertical, WordsAreMarkedWhereTheirInkIs) {
  const fs::path document = fs::path(TEST_DOCUMENTS) / GetParam();
  const auto reference = document::openedHere(document, "");
  struct Word {
    int page;
    const char *text;
    double size; ///< of the font, in points
  };
  // Each is alone on its page.
  for (const Word &word : {Word{0, "検索結果", 24}, Word{1, "東京", 48}}) {
    const CommandResult rendered = mark(document, word.text);
    ASSERT_EQ(rendered.status, 0) << rendered.output;
    const host::Image plain = reference->render(word.page, dpi);
    const Area marks = changed(marked(word.page), plain), ink = inkOf(plain);
    ASSERT_FALSE(marks.empty());
    const int pixel = 1, space = static_cast<int>(0.2 * word.size * dpi / 72); // around the ink of a character
    EXPECT_LE(marks.left, ink.left + pixel);
    EXPECT_LE(marks.top, ink.top + pixel);
    EXPECT_GE(marks.right, ink.right - pixel);
    EXPECT_GE(marks.bottom, ink.bottom - pixel);
    EXPECT_GE(marks.left, ink.left - space);
    EXPECT_GE(marks.top, ink.top - space);
    EXPECT_LE(marks.right, ink.right + space);
    EXPECT_LE(marks.bottom, ink.bottom + space);
  }
}

INSTANTIATE_TEST_SUITE_P(Rotations, Vertical,
                         testing::Values("vertical.pdf", "vertical-90.pdf", "vertical-180.pdf", "vertical-270.pdf"),
                         [](const testing::TestParamInfo<const char *> &instance) {
                           return "R" + std::to_string(instance.index * 90);
                         });

// ---- words without area ----

TEST_F(OddMarks, AFontWithoutWidthsIsMarkedVisibly) {
  const fs::path document =
      folder.pdf({{.texts = {{.x = 100, .y = 300, .text = "wmx", .size = 20}}}}, {}, {.width = 0});
  const CommandResult rendered = mark(document, "wmx");
  ASSERT_EQ(rendered.status, 0) << rendered.output;
  EXPECT_THAT(rendered.output, HasSubstr("1 page marked, 1 hit"));
  const Area marks = changed(marked(0), document::openedHere(document, "")->render(0, dpi));
  EXPECT_GE(marks.right - marks.left, 10);
  EXPECT_GE(marks.bottom - marks.top, 10);
}

TEST_F(OddMarks, AHitOutsideOfThePageIsReportedAndNotCounted) {
  // The glyph of a vertical line that starts at the foot of the page lies below it.
  const fs::path document =
      folder.pdf({{.texts = {{.x = 50, .y = 0, .text = "a"}}}}, {}, {.kind = test::PdfFont::vertical});
  const CommandResult rendered = mark(document, "a");
  EXPECT_EQ(rendered.status, 5) << "nothing is marked";
  EXPECT_THAT(rendered.output, HasSubstr("page 1 of 1: 1 hit outside of the page, not marked\n"));
  EXPECT_THAT(rendered.output, HasSubstr("marks nothing"));
  EXPECT_FALSE(fs::exists(folder.path() / "out" / "page-0001.png"));
}

// ---- backgrounds ----

double contrast(uint32_t a, uint32_t b) {
  const auto luminance = [](uint32_t color) {
    const auto linear = [](uint32_t component) {
      const double value = component / 255.0;
      return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color >> 16 & 0xFF) + 0.7152 * linear(color >> 8 & 0xFF) + 0.0722 * linear(color & 0xFF);
  };
  const double first = luminance(a), second = luminance(b);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

int change(uint32_t a, uint32_t b) {
  int most = 0;
  for (const int shift : {0, 8, 16})
    most = std::max(most, std::abs(static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF)));
  return most;
}

/// Drawn before the text, which takes the last colour.
struct Background {
  const char *name;
  std::string drawing;
};

/// A gradient of stripes, from one lightness to another, with white or black text over it.
std::string gradient(double from, double to, const char *text) {
  std::string drawing;
  for (int i = 0; i < 100; ++i) {
    const double lightness = from + (to - from) * i / 100;
    drawing += std::to_string(lightness) + " " + std::to_string(lightness * 0.9) + " " +
               std::to_string(lightness * 0.8) + " rg " + std::to_string(4 * i) + " 0 4 600 re f\n";
  }
  return drawing + text;
}

void PrintTo(const Background &background, std::ostream *out) { *out << background.name; }

class OnBackground : public OddMarks, public testing::WithParamInterface<Background> {};

TEST_P(OnBackground, ReadableTextStaysReadableAndTheMarkIsVisible) {
  const fs::path document =
      folder.pdf({{.texts = {{.x = 60, .y = 310, .text = "readable", .size = 24}}, .drawing = GetParam().drawing}});
  const auto reference = document::openedHere(document, "");
  const host::Image before = reference->render(0, dpi);
  for (const char *const color : {"FF0000", "FFFF00", "00FF00", "0000FF"}) {
    SCOPED_TRACE(color);
    const CommandResult rendered = mark(document, "readable", color);
    ASSERT_EQ(rendered.status, 0) << rendered.output;
    const Pixels after = marked(0);
    const OracleWord word = oracleWords(document, "").at(0).at(0);
    const auto pixels = [](double points) { return static_cast<int>(points * dpi / 72); };
    // The corner of the box is background; the text is what is farthest from it.
    const int left = pixels(word.left) + 1, top = pixels(word.top) + 1;
    const uint32_t background = before.row(top)[left], backgroundNow = after.at(left, top);
    uint32_t text = background, textNow = backgroundNow;
    for (int y = top; y < pixels(word.bottom); ++y)
      for (int x = left; x < pixels(word.right); ++x) {
        const uint32_t pixel = before.row(y)[x];
        if (contrast(pixel, background) <= contrast(text, background)) continue;
        text = pixel;
        textNow = after.at(x, y);
      }
    ASSERT_GE(contrast(text, background), 3) << "the document is not what the test needs";
    EXPECT_GE(contrast(textNow, backgroundNow), 3);
    EXPECT_GE(change(background, backgroundNow), 24);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Backgrounds, OnBackground,
    testing::Values(Background{"WhitePaper", ""}, Background{"RedBar", "1 0 0 rg 0 280 400 80 re f 1 g"},
                    Background{"BlackPage", "0 g 0 0 400 600 re f 1 g"},
                    Background{"BlueBarYellowText", "0 0 0.6 rg 0 280 400 80 re f 1 1 0 rg"},
                    Background{"YellowBar", "1 1 0 rg 0 280 400 80 re f 0 g"},
                    Background{"GreyBar", "0.45 g 0 280 400 80 re f 1 g"}, Background{"RedTextOnPaper", "0.9 0 0 rg"},
                    Background{"DarkPicture", gradient(0.1, 0.45, "1 g")},
                    Background{"LightPicture", gradient(0.7, 1, "0 g")}),
    [](const testing::TestParamInfo<Background> &instance) { return std::string(instance.param.name); });

} // namespace
