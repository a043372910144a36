// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Whether the default colours of texts in lists can be read: the ratio of their luminances, as usual for web pages.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "DefaultResources.h"

namespace {

double luminance(const std::string &color) {
  const auto part = [&](size_t at) {
    const double value = std::stoi(color.substr(at, 2), nullptr, 16) / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(1) + 0.7152 * part(3) + 0.0722 * part(5);
}

double contrast(const std::string &one, const std::string &other) {
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

// Of a resource of the application; that of lists has the class of the widget before its name.
std::string color(const std::string &name) {
  const std::string text = test::resource("tavrel." + name);
  if (!text.empty()) return text;
  for (const std::string &line : test::lines(viewer::defaultResources()))
    if (line.starts_with("*" + name + ": ")) return line.substr(name.size() + 3);
  return "#";
}

constexpr double readable = 4.5;

TEST(ContrastTest, IsThatOfTheLuminances) {
  EXPECT_NEAR(contrast("#000000", "#FFFFFF"), 21, 0.01);
  EXPECT_NEAR(contrast("#777777", "#FFFFFF"), 4.48, 0.01);
}

TEST(ContrastTest, OfARowIsEnoughToReadIt) {
  EXPECT_GE(contrast(color("foreground"), color("sidePanel*rows.background")), readable);
  EXPECT_GE(contrast(color("noteColor"), color("sidePanel*rows.background")), readable);
  EXPECT_GE(contrast(color("foreground"), color("currentRowColor")), readable);
  EXPECT_GE(contrast(color("foreground"), color("rowMarkColor")), readable);
}

TEST(ContrastTest, OfWhatIsChosenInAListIsEnoughToReadIt) {
  EXPECT_GE(contrast(color("foreground"), color("XmList.selectColor")), readable);
}

// A mark, not a text: three is enough.
TEST(ContrastTest, TheRowThatIsChosenIsSeenAmongTheOthers) {
  EXPECT_GE(contrast(color("currentRowColor"), color("sidePanel*rows.background")), 3);
  EXPECT_GE(contrast(color("XmList.selectColor"), color("XmList.background")), 3);
}

} // namespace
