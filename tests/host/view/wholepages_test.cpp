// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The viewport of a program that draws complete pages.
#include <gtest/gtest.h>

#include "FakeDocument.h"
#include "host/view/viewport.h"

namespace {

TEST(WholePages, ShowAllOfAPage) {
  test::FakeDocument document(2, {100, 200});
  host::WholePages pages(document, 36);
  const host::PixelBox all = pages.visible();
  EXPECT_EQ(all.left, 0);
  EXPECT_EQ(all.top, 0);
  EXPECT_EQ(all.right, 50);
  EXPECT_EQ(all.bottom, 100);
}

TEST(WholePages, HaveAtLeastOnePixel) {
  test::FakeDocument document(1, {1e-9, 0.5});
  host::WholePages pages(document, 72);
  EXPECT_EQ(pages.visible().right, 1);
  EXPECT_EQ(pages.visible().bottom, 1);
}

TEST(WholePages, TellOfAnotherPageOnce) {
  test::FakeDocument document(2);
  host::WholePages pages(document, 36);
  pages.showPage(1); // nobody is told
  int changes = 0;
  pages.changed = [&] { ++changes; };
  pages.showPage(1);
  EXPECT_EQ(changes, 0);
  pages.showPage(0);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(pages.page(), 0);
}

} // namespace
