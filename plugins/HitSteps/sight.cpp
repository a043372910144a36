// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
#include "sight.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "frame.h"
#include "tavrel/DocModel.h"
#include "tavrel/TavrelSupport.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

namespace {

/// Dark on any mark; the host separates it from a dark page.
constexpr ColorValue outlineColor = {colorSpaceRGB, {fixedOne / 8, fixedOne / 8, fixedOne / 5, 0}};

/// A page object that is open as long as the body of an attempt runs.
struct OpenPage {
  Doc document;
  int32_t number;
  Page page;
};

/// Calls the body with the page open; false if an operation raised.
template <typename Body> bool withPage(Doc document, int32_t number, Body body) {
  OpenPage open = {document, number, nullptr};
  OpenPage *const kept = &open; // the body reaches it through the pointer, which is unchanged after a jump
  const bool done = attempt([kept, &body] {
    kept->page = DocModel::DocOpenPage(TavrelView::DocGetModelDoc(kept->document), kept->number);
    body(kept->page);
  });
  if (kept->page != nullptr) DocModel::PageClose(kept->page);
  return done;
}

TextSelection select(Page page, const TextRange *ranges, uint32_t count, Units units) {
  const auto number = static_cast<int32_t>(count);
  if (units == unitCharacters) return DocModel::SelectionFromCharRanges(page, ranges, number);
  return DocModel::SelectionFromWordRanges(page, ranges, number, units);
}

/// Where the visible part, from `low` to `high`, begins when all from `first` to `last` is visible.
int32_t scrolled(int32_t low, int32_t high, int32_t first, int32_t last) {
  if (low <= first && last <= high) return low;
  const int32_t size = high - low, length = last - first;
  if (length >= size) return first;
  const int32_t margin = std::min(size / 8, (size - length) / 2);
  return first < low ? first - margin : last + margin - size;
}

int16_t coordinate(int32_t value) { return static_cast<int16_t>(std::clamp<int32_t>(value, INT16_MIN, INT16_MAX)); }

void scrollTo(PageView view, TextSelection selection) {
  FixedRect bounds = {0, 0, 0, 0};
  FixedMatrix matrix = {0, 0, 0, 0, 0, 0};
  DeviceRect visible = {0, 0, 0, 0};
  DocModel::SelectionBounds(selection, &bounds);
  TavrelView::PageViewGetPageTransform(view, &matrix);
  TavrelSupport::TransformFixedRect(&bounds, &matrix, &bounds);
  TavrelView::PageViewGetVisibleRect(view, &visible);
  // Down is up in device space: the transformed rectangle's top is the larger coordinate.
  constexpr Fixed almostOne = fixedOne - 1;
  const int32_t left = bounds.left >> 16, top = bounds.bottom >> 16;
  const auto right = static_cast<int32_t>((int64_t{bounds.right} + almostOne) >> 16);
  const auto bottom = static_cast<int32_t>((int64_t{bounds.top} + almostOne) >> 16);
  TavrelView::PageViewScrollToPoint(view, coordinate(scrolled(visible.left, visible.right, left, right)),
                                    coordinate(scrolled(visible.top, visible.bottom, top, bottom)));
}

bool isPainted(PageView view, TextSelection selection) {
  if (selection == nullptr) return false;
  TextSelection painted = TavrelView::PageViewGetPaintedSelection(view, 0);
  for (uint32_t n = 1; painted != nullptr && painted != selection; ++n)
    painted = TavrelView::PageViewGetPaintedSelection(view, n);
  return painted != nullptr;
}

} // namespace

bool bringIntoSight(PageView view, const HitPlace &hit) {
  return withPage(hit.document, hit.page, [&](Page page) {
    TextSelection selection = select(page, &hit.range, 1, hit.units);
    if (selection != nullptr) scrollTo(view, selection);
  });
}

void outline(PageView view, const HitPlace &hit) {
  ColorValue saved;
  TavrelView::PageViewFetchDrawColor(view, &saved);
  withPage(hit.document, hit.page, [&](Page page) {
    TextSelection selection = select(page, &hit.range, 1, hit.units);
    if (selection == nullptr) return;
    TavrelView::PageViewApplyDrawColor(view, &outlineColor);
    TavrelView::PageViewOutlineSelection(view, selection);
  });
  TavrelView::PageViewApplyDrawColor(view, &saved);
}

void writeLine(const HitPlace &hit, char *text, size_t size) {
  char line[1024] = "";
  uint32_t start = 0;
  char *const written = line;
  uint32_t *const begin = &start;
  const bool readable = withPage(hit.document, hit.page, [&hit, written, begin](Page page) {
    TextSelection selection = select(page, &hit.range, 1, hit.units);
    if (selection != nullptr) DocModel::PageGetLine(page, selection, written, sizeof line, begin);
  });
  constexpr uint32_t before = 16; // bytes of the line that are shown before the hit
  const char *from = line;
  if (start > before && start < strlen(line)) {
    const char *space = strchr(line + start - before, ' ');
    if (space != nullptr && space < line + start) from = space + 1;
  }
  snprintf(text, size, "%s%s", from == line ? "" : "\u2026", readable ? from : "(this page cannot be read)");
}

Units learnUnits(PageView view, Doc document, int32_t number, const TextRange *ranges, uint32_t count, Units units) {
  if (TavrelView::PageViewGetPaintedSelection(view, 0) == nullptr) return units;
  Units learned = units;
  Units *const result = &learned;
  withPage(document, number, [=](Page page) {
    for (const Units tried : {units, unitCharacters, unitWords, unitWordsInContentOrder}) {
      if (!isPainted(view, select(page, ranges, count, tried))) continue;
      *result = tried;
      return;
    }
  });
  return *result;
}
