// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Brings a text selection into view. Paints nothing: the marks appear when the host draws.
#include "plugin/glt/glt.h"
#include "plugin/pi/PIFrame.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelSupport.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

namespace {

/// Device units between the selection and the view's edge where the selection is too large to be centred.
constexpr int margin = 10;

int16_t floorOf(Fixed value) { return static_cast<int16_t>(value >> 16); }
int16_t ceilingOf(Fixed value) { return static_cast<int16_t>((int64_t{value} + 0xFFFF) >> 16); }
int16_t difference(int a, int b) { return static_cast<int16_t>(a - b); }

/// An edge that touches the matching edge of the visible area counts as outside it.
bool fullyVisible(const DeviceRect &v, const DeviceRect &s) {
  return v.left < s.left && s.left <= v.right && v.top < s.top && s.top <= v.bottom && v.top <= s.bottom &&
         s.bottom < v.bottom && v.left <= s.right && s.right < v.right;
}

/// One axis of the target, in 16-bit arithmetic as the host's coordinates are.
int16_t scrollTo(int16_t selectionStart, int16_t selectionSize, int16_t viewSize) {
  if (selectionSize < viewSize) return difference(selectionStart, difference(viewSize, selectionSize) / 2);
  return difference(selectionStart, margin);
}

} // namespace

GLTScrollTarget GLTScrollTargetFor(const DeviceRect &visible, const FixedRect &bounds) {
  // The host's transformed rectangle keeps the larger y in `top`; in device space that is the lower edge.
  const DeviceRect s = {floorOf(bounds.left), floorOf(bounds.bottom), ceilingOf(bounds.right), ceilingOf(bounds.top)};
  if (fullyVisible(visible, s)) return {false, 0, 0};
  return {true, scrollTo(s.left, difference(s.right, s.left), difference(visible.right, visible.left)),
          scrollTo(s.top, difference(s.bottom, s.top), difference(visible.bottom, visible.top))};
}

void GLTScrollTo(PageView view, TextSelection selection) {
  TavrelView::PageViewBeginBatch(view);
  const bool done = PIProtect([&] {
    TavrelView::PageViewShowPage(view, DocModel::SelectionPageNumber(selection));
    DeviceRect visible = {}; // hosts write neither this nor the matrix for a null view
    TavrelView::PageViewGetVisibleRect(view, &visible);
    FixedRect bounds;
    DocModel::SelectionBounds(selection, &bounds);
    FixedMatrix transform = {};
    TavrelView::PageViewGetPageTransform(view, &transform);
    TavrelSupport::TransformFixedRect(&bounds, &transform, &bounds);
    const GLTScrollTarget target = GLTScrollTargetFor(visible, bounds);
    if (target.scroll) TavrelView::PageViewScrollToPoint(view, target.x, target.y);
  });
  if (!done) Kernel::GetExceptionCode(); // the code is ignored: the view stays as the raise left it
  TavrelView::PageViewEndBatch(view);
}
