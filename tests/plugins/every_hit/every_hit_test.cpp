// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Steps through all hits of a document, forwards and backwards, in windows of four sizes and in both modes that mark
// hits, and looks whether each hit is visible and outlined when it is the current one. Prints a line for each walk:
// how many hits there are, how many were seen once, more often, and never.
#include <algorithm>
#include <cstdio>

#include "document/here.h"
#include "tests/plugins/Steps.h"

namespace {

using namespace tavrel;

struct Window {
  int width, height;
  viewer::Fit fit;
};
constexpr Window windows[] = {{320, 240, viewer::Fit::width},
                              {620, 400, viewer::Fit::width},
                              {700, 1000, viewer::Fit::page},
                              {300, 200, viewer::Fit::none}}; // narrower than the page

struct Walked {
  const char *file, *word;
  int32_t mode;
};

void PrintTo(const Walked &walked, std::ostream *out) {
  *out << walked.file << (walked.mode == GLT_VIEW_ALL ? ", all" : ", one");
}

struct Hit {
  int32_t page;
  TextRange range;
};

class EveryHit : public test::Steps, public testing::WithParamInterface<Walked> {
protected:
  void openIn(const Window &window) {
    openInWindow(document::openedHere(std::string(TEST_DOCUMENTS "/") + GetParam().file, ""), window.width,
                 window.height, window.fit);
    hits.clear();
    HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
    const std::string word = GetParam().word;
    const std::u32string wanted(word.begin(), word.end());
    for (int32_t page = 0; page < document->model->pageCount(); ++page) {
      const std::u32string text = document->model->pageText(page).text();
      for (size_t at = text.find(wanted); at != std::u32string::npos; at = text.find(wanted, at + 1)) {
        hits.push_back({page, {static_cast<uint16_t>(at), static_cast<uint16_t>(wanted.size())}});
        TavrelGLT::HLL_AddHL(list, page, hits.back().range.pos, hits.back().range.len);
      }
    }
    show(list, GetParam().mode);
    seen.assign(hits.size(), 0);
  }

  /// The index of the hit that the status line shows.
  int current() const {
    int number = 0;
    return std::sscanf(app.statusText().c_str(), "hit %d of", &number) == 1 ? number - 1 : -1;
  }

  bool isOutlined(const host::Drawing &drawing, const test::PixelRect &hit) const {
    constexpr int around = 8;
    const int left = std::max(0, static_cast<int>(hit.left) - drawing.x - around);
    const int top = std::max(0, static_cast<int>(hit.top) - drawing.y - around);
    const int right = std::min(drawing.image.width, static_cast<int>(hit.right) - drawing.x + around);
    const int bottom = std::min(drawing.image.height, static_cast<int>(hit.bottom) - drawing.y + around);
    for (int y = top; y < bottom; ++y)
      for (int x = left; x < right; ++x)
        if (drawing.image.row(y)[x] == outlinePixel) return true;
    return false;
  }

  /// Counts the current hit if all of it is visible and outlined.
  void look() {
    const int index = current();
    ASSERT_GE(index, 0) << app.statusText();
    ASSERT_LT(static_cast<size_t>(index), hits.size());
    const host::Drawing drawing = draw();
    const Hit &hit = hits[static_cast<size_t>(index)];
    if (drawing.page != hit.page) return;
    const test::PixelRect place = placeOf(hit.page, hit.range);
    if (contains(visible(), place) && isOutlined(drawing, place)) ++seen[static_cast<size_t>(index)];
  }

  /// From the current hit to the last one in that direction; each step goes to the hit beside.
  void walk(int direction) {
    std::fill(seen.begin(), seen.end(), 0);
    ASSERT_NO_FATAL_FAILURE(look());
    int before = current();
    while (press(direction)) {
      ASSERT_NO_FATAL_FAILURE(look());
      ASSERT_EQ(current(), before + direction) << "out of order";
      before = current();
    }
    EXPECT_EQ(before, direction > 0 ? static_cast<int>(hits.size()) - 1 : 0);
  }

  void report(const Window &window, const char *direction) const {
    const auto once = std::count(seen.begin(), seen.end(), 1), never = std::count(seen.begin(), seen.end(), 0);
    std::printf("%-20s %-4s %4dx%-5d %-9s %5zu hits %5td seen once %5td more often %5td never\n", GetParam().file,
                GetParam().mode == GLT_VIEW_ALL ? "all" : "one", window.width, window.height, direction, hits.size(),
                once, static_cast<ptrdiff_t>(hits.size()) - once - never, never);
    EXPECT_EQ(static_cast<size_t>(once), hits.size());
  }

  std::vector<Hit> hits;
  std::vector<int> seen; ///< how often each was visible as the current one
};

TEST_P(EveryHit, IsSeenOnceInOrder) {
  for (const Window &window : windows) {
    openIn(window);
    ASSERT_GE(hits.size(), 200U);
    ASSERT_NO_FATAL_FAILURE(walk(1));
    report(window, "forwards");
    ASSERT_NO_FATAL_FAILURE(walk(-1));
    report(window, "backwards");
  }
}

std::vector<Walked> allWalks() {
  std::vector<Walked> walks;
  for (const int32_t mode : {GLT_VIEW_ALL, GLT_VIEW_ONE})
    for (const auto &[file, word] : {std::pair{"cloth.pdf", "thread"},
                                     {"two-columns.pdf", "the"},
                                     {"rotated-90.pdf", "the"},
                                     {"three-hundred.pdf", "needle"}})
      walks.push_back({file, word, mode});
  return walks;
}

INSTANTIATE_TEST_SUITE_P(Documents, EveryHit, testing::ValuesIn(allWalks()), [](const auto &tested) {
  std::string name = tested.param.file;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
  return name + (tested.param.mode == GLT_VIEW_ALL ? "_all" : "_one");
});

} // namespace
