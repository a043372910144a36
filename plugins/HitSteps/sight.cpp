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

/// In device units.
struct Area {
  int32_t left, top, right, bottom;
};

Area areaOf(PageView view, TextSelection selection) {
  FixedRect bounds = {0, 0, 0, 0};
  FixedMatrix matrix = {0, 0, 0, 0, 0, 0};
  DocModel::SelectionBounds(selection, &bounds);
  TavrelView::PageViewGetPageTransform(view, &matrix);
  TavrelSupport::TransformFixedRect(&bounds, &matrix, &bounds);
  // Down is up in device space: the transformed rectangle's top is the larger coordinate.
  constexpr Fixed almostOne = fixedOne - 1;
  return {bounds.left >> 16, bounds.bottom >> 16, static_cast<int32_t>((int64_t{bounds.right} + almostOne) >> 16),
          static_cast<int32_t>((int64_t{bounds.top} + almostOne) >> 16)};
}

Area visibleArea(PageView view) {
  DeviceRect visible = {0, 0, 0, 0};
  TavrelView::PageViewGetVisibleRect(view, &visible);
  return {visible.left, visible.top, visible.right, visible.bottom};
}

void scrollTo(PageView view, TextSelection selection) {
  const Area area = areaOf(view, selection), visible = visibleArea(view);
  TavrelView::PageViewScrollToPoint(view, coordinate(scrolled(visible.left, visible.right, area.left, area.right)),
                                    coordinate(scrolled(visible.top, visible.bottom, area.top, area.bottom)));
}

bool isPainted(PageView view, TextSelection selection) {
  if (selection == nullptr) return false;
  TextSelection painted = TavrelView::PageViewGetPaintedSelection(view, 0);
  for (uint32_t n = 1; painted != nullptr && painted != selection; ++n)
    painted = TavrelView::PageViewGetPaintedSelection(view, n);
  return painted != nullptr;
}

/// The line of text that a range begins on, and the byte of it at which the range's first word begins.
struct Line {
  char text[1024];
  uint32_t start;
};

void readLine(Page page, const TextRange &range, Units units, Line *line) {
  TextSelection selection = select(page, &range, 1, units);
  if (selection != nullptr) DocModel::PageGetLine(page, selection, line->text, sizeof line->text, &line->start);
}

/// What begins on the last word of a range. Its last character may be the space after a word, which no selection has:
/// of two characters one is a word's.
TextRange endOf(const TextRange &range, Units units) {
  constexpr uint32_t positions = UINT16_MAX + 1; // a range may reach beyond them
  const uint32_t length = std::max<uint32_t>(range.len, 1), end = std::min(range.pos + length, positions);
  const uint32_t last = std::min(length, units == unitCharacters ? 2U : 1U);
  return {static_cast<uint16_t>(end - last), static_cast<uint16_t>(last)};
}

} // namespace

bool bringIntoSight(PageView view, const HitPlace &hit) {
  return withPage(hit.document, hit.page, [&](Page page) {
    TextSelection selection = select(page, &hit.range, 1, hit.units);
    if (selection != nullptr) scrollTo(view, selection);
  });
}

bool isInSight(PageView view, const HitPlace &hit) {
  bool result = true, *const inSight = &result; // the body reaches it through the pointer
  withPage(hit.document, hit.page, [&hit, view, inSight](Page page) {
    TextSelection selection = select(page, &hit.range, 1, hit.units);
    if (selection == nullptr) return;
    const Area area = areaOf(view, selection), visible = visibleArea(view);
    *inSight = scrolled(visible.left, visible.right, area.left, area.right) == visible.left &&
               scrolled(visible.top, visible.bottom, area.top, area.bottom) == visible.top;
  });
  return *inSight;
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

void writeLine(const HitPlace &hit, ListRow *row) {
  Line lines[2] = {}; // of the first and of the last word of the hit
  Line *const read = lines;
  row->page = hit.page;
  const bool readable = withPage(hit.document, hit.page, [&hit, read](Page page) {
    readLine(page, hit.range, hit.units, &read[0]);
    readLine(page, endOf(hit.range, hit.units), hit.units, &read[1]);
  });
  if (!readable && lines[0].text[0] == 0) {
    snprintf(row->text, sizeof row->text, "(this page cannot be read)");
    return;
  }
  const char *const line = lines[0].text;
  const uint32_t length = static_cast<uint32_t>(strlen(line)), start = std::min(lines[0].start, length);
  // Bytes of the line that are shown before the hit: more where less follows, up to what a panel of the usual width has
  // space for.
  constexpr uint32_t usual = 28, least = 16;
  const uint32_t before = std::max(least, usual - std::min(usual, length - start));
  uint32_t from = 0;
  if (start > before) {
    const char *space = strchr(line + start - before, ' ');
    if (space != nullptr && space < line + start) from = static_cast<uint32_t>(space + 1 - line);
  }
  uint32_t end = length; // of the hit on this line
  if (strcmp(line, lines[1].text) == 0 && lines[1].start >= start && lines[1].start < length)
    end = lines[1].start + static_cast<uint32_t>(strcspn(line + lines[1].start, " "));
  constexpr const char ellipsis[] = "\u2026";
  const uint32_t prefix = from == 0 ? 0 : sizeof ellipsis - 1;
  constexpr int most = sizeof row->text - sizeof ellipsis; // bytes of the line
  snprintf(row->text, sizeof row->text, "%s%.*s", from == 0 ? "" : ellipsis, most, line + from);
  row->markStart = static_cast<uint16_t>(prefix + start - from);
  row->markLength = static_cast<uint16_t>(end - start);
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
