// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The numbers of the document's scroll bar.
#include <gtest/gtest.h>

#include "viewer/model/scrollscale.h"

namespace viewer {
namespace {

struct Case {
  int32_t pages;
  int height, window;
};

std::ostream &operator<<(std::ostream &out, const Case &shown) {
  return out << shown.pages << " pages of " << shown.height << ", window of " << shown.window;
}

struct ScrollScaleTest : testing::TestWithParam<Case> {
  const ScrollScale scale{GetParam().pages};
  int bottom() const { return std::max(0, GetParam().height - GetParam().window); }
  Slider at(int32_t page, int y) const { return scale.slider(page, y, GetParam().height, GetParam().window); }
  std::vector<int32_t> somePages() const { return {0, GetParam().pages / 2, GetParam().pages - 1}; }
};

TEST_P(ScrollScaleTest, EveryPixelsValueLeadsBackToIt) {
  for (const int32_t page : somePages())
    for (int y = 0; y <= bottom(); ++y) {
      const int value = at(page, y).value;
      ASSERT_EQ(scale.pageAt(value), page) << y;
      ASSERT_EQ(scale.yAt(value, GetParam().height), y) << page;
    }
}

TEST_P(ScrollScaleTest, AFurtherPixelHasALargerValue) {
  for (const int32_t page : somePages())
    for (int y = 1; y <= bottom(); ++y)
      ASSERT_LT(at(page, y - 1).value, at(page, y).value) << page << ", " << y;
}

TEST_P(ScrollScaleTest, TheSliderTouchesTheEndsAtTheDocumentsEndsAlone) {
  const int32_t last = GetParam().pages - 1;
  EXPECT_EQ(at(0, 0).value, 0);
  EXPECT_EQ(at(last, bottom()).value, at(last, bottom()).range - at(last, bottom()).size);
  if (bottom() > 0) {
    EXPECT_GT(at(0, 1).value, 0);
    EXPECT_LT(at(last, bottom() - 1).value, at(last, bottom() - 1).range - at(last, bottom() - 1).size);
  }
}

TEST_P(ScrollScaleTest, TheSlidersShareOfAPageIsTheWindows) {
  const Slider slider = at(0, 0);
  const double share = std::min(1.0, 1.0 * GetParam().window / GetParam().height);
  EXPECT_NEAR(1.0 * slider.size * GetParam().pages / slider.range, share, 1e-3);
}

INSTANTIATE_TEST_SUITE_P(Documents, ScrollScaleTest,
                         testing::Values(Case{1, 600, 300}, Case{1, 300, 600}, Case{3, 1101, 850}, Case{4, 1000, 999},
                                         Case{80, 1123, 997}, Case{300, 8984, 700}, Case{300, 300, 300},
                                         Case{1158, 1056, 1}, Case{6832, 2112, 901}));

TEST(ScrollScaleTest, MorePagesThanUnitsStillHaveAStartAndAnEnd) {
  constexpr int32_t pages = 1'000'000;
  const ScrollScale scale(pages);
  EXPECT_GT(scale.slider(0, 1, 1000, 900).value, 0);
  const Slider almost = scale.slider(pages - 1, 99, 1000, 900), end = scale.slider(pages - 1, 100, 1000, 900);
  EXPECT_EQ(end.value, end.range - end.size);
  EXPECT_LT(almost.value, end.value);
}

TEST(ScrollScaleTest, ValuesAreThoseThatAFloatHas) {
  for (const int32_t pages : {1, 7, 299, 6832, 1'000'000}) {
    const int range = ScrollScale(pages).slider(0, 0, 1000, 900).range;
    EXPECT_EQ(static_cast<int>(static_cast<float>(range - 1)), range - 1) << pages;
  }
}

} // namespace
} // namespace viewer
