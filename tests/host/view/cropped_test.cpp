// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A part of a page's image.
#include <gmock/gmock.h>

#include "host/view/drawing.h"

namespace {

using host::Image, host::PixelBox;
using testing::ElementsAre;

// Three columns and two rows, numbered.
const Image page{3, 2, {0, 1, 2, 10, 11, 12}};

struct Part {
  PixelBox box;
  int x, y, width, height;
  std::vector<uint32_t> pixels;
};

TEST(Cropped, HasThePixelsOfThePart) {
  const Part parts[] = {{{0, 0, 3, 2}, 0, 0, 3, 2, {0, 1, 2, 10, 11, 12}},
                        {{-5, -5, 9, 9}, 0, 0, 3, 2, {0, 1, 2, 10, 11, 12}},
                        {{1, 0, 3, 2}, 1, 0, 2, 2, {1, 2, 11, 12}},
                        {{0, 1, 3, 2}, 0, 1, 3, 1, {10, 11, 12}},
                        {{1, 1, 2, 2}, 1, 1, 1, 1, {11}},
                        {{2, 1, 1, 0}, 2, 1, 0, 0, {}}};
  for (const Part &part : parts) {
    const host::Drawing drawing = host::cropped(page, part.box);
    EXPECT_THAT((std::vector{drawing.x, drawing.y, drawing.image.width, drawing.image.height}),
                ElementsAre(part.x, part.y, part.width, part.height));
    EXPECT_EQ(drawing.image.pixels, part.pixels);
  }
}

} // namespace
