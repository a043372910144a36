// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Scrolling to a selection: the arithmetic, and the sequence of host calls around it.
#include <gtest/gtest.h>

#include <iterator>
#include <vector>

#include "plugin/glt/glt.h"
#include "tests/host/Faults.h"
#include "tests/host/RecordingHost.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

/// Bounds in integral device units, as the host returns them: the larger device y in `top`.
constexpr FixedRect device(int32_t left, int32_t top, int32_t right, int32_t bottom) {
  return {left * fixedOne, bottom * fixedOne, right * fixedOne, top * fixedOne};
}

struct Target : Row {
  DeviceRect visible;
  FixedRect bounds;
  bool scroll;
  int16_t x, y;
};
class ScrollTarget : public testing::TestWithParam<Target> {};

TEST_P(ScrollTarget, BringsTheSelectionIntoView) {
  const GLTScrollTarget target = GLTScrollTargetFor(GetParam().visible, GetParam().bounds);
  EXPECT_EQ(target.scroll, GetParam().scroll);
  if (!GetParam().scroll) return;
  EXPECT_EQ(target.x, GetParam().x);
  EXPECT_EQ(target.y, GetParam().y);
}

constexpr DeviceRect V = {0, 0, 600, 400};
constexpr FixedRect half(FixedRect r) { // half a device unit to the right and down
  return {r.left + 0x8000, r.top + 0x8000, r.right + 0x8000, r.bottom + 0x8000};
}

// Where the selection is 100 by 20 at (x, y) and V is 600 by 400, the target is (x - 250, y - 190).
INSTANTIATE_TEST_SUITE_P(Visibility, ScrollTarget,
                         testing::ValuesIn<Target>({
                             {{"FullyVisible"}, V, device(100, 100, 200, 120), false, 0, 0},
                             {{"Below"}, V, device(100, 500, 200, 520), true, -150, 310},
                             {{"Above"}, {0, 1000, 600, 1400}, device(100, 500, 200, 520), true, -150, 310},
                             {{"ToTheRight"}, V, device(700, 100, 800, 120), true, 450, -90},
                             {{"ClippedAtTheBottom"}, V, device(100, 390, 200, 410), true, -150, 200},
                             {{"TouchesLeft"}, V, device(0, 100, 100, 120), true, -250, -90},
                             {{"JustInsideLeft"}, V, device(1, 100, 101, 120), false, 0, 0},
                             {{"TouchesTop"}, V, device(100, 0, 200, 20), true, -150, -190},
                             {{"JustInsideTop"}, V, device(100, 1, 200, 21), false, 0, 0},
                             {{"TouchesRight"}, V, device(500, 100, 600, 120), true, 250, -90},
                             {{"JustInsideRight"}, V, device(499, 100, 599, 120), false, 0, 0},
                             {{"TouchesBottom"}, V, device(100, 380, 200, 400), true, -150, 190},
                             {{"JustInsideBottom"}, V, device(100, 379, 200, 399), false, 0, 0},
                             {{"EmptyInside"}, V, device(100, 100, 100, 100), false, 0, 0},
                             {{"NegativeSpace"}, {-600, -400, 0, 0}, device(-300, -200, -200, -180), false, 0, 0},
                         }),
                         rowName<Target>);

// Hosts' bounds may be reversed. The edge that is then on the far side may touch that of the visible area.
INSTANTIATE_TEST_SUITE_P(TurnedRound, ScrollTarget,
                         testing::ValuesIn<Target>({
                             {{"LeftTouchesRight"}, V, device(600, 100, 500, 120), false, 0, 0},
                             {{"TopTouchesBottom"}, V, device(100, 400, 200, 380), false, 0, 0},
                             {{"RightTouchesLeft"}, V, device(100, 100, 0, 120), false, 0, 0},
                             {{"BottomTouchesTop"}, V, device(100, 20, 200, 0), false, 0, 0},
                             {{"RightBeyondLeft"}, V, device(100, 100, -5, 120), true, -252, -90},
                             {{"BottomBeyondTop"}, V, device(100, 20, 200, -5), true, -150, -192},
                         }),
                         rowName<Target>);

INSTANTIATE_TEST_SUITE_P(
    Sizes, ScrollTarget,
    testing::ValuesIn<Target>({
        {{"AsWideAsTheView"}, V, device(100, 500, 700, 520), true, 90, 310},
        {{"WiderThanTheView"}, V, device(100, 500, 900, 520), true, 90, 310},
        {{"JustNarrower"}, V, device(100, 500, 699, 520), true, 100, 310},
        {{"AsHighAsTheView"}, V, device(100, 500, 200, 900), true, -150, 490},
        {{"HigherThanTheView"}, V, device(100, 500, 200, 1000), true, -150, 490},
        {{"JustLower"}, V, device(100, 500, 200, 899), true, -150, 500},
        {{"TooLargeBothWays"}, V, device(20, 30, 900, 1000), true, 10, 20},
        {{"OddDifferenceOfWidths"}, {0, 0, 601, 400}, device(700, 500, 800, 520), true, 450, 310},
        {{"OddDifferenceOfHeights"}, {0, 0, 600, 401}, device(100, 500, 200, 520), true, -150, 310},
        {{"ViewElsewhere"}, {1000, 2000, 1600, 2400}, device(100, 500, 200, 520), true, -150, 310},
    }),
    rowName<Target>);

INSTANTIATE_TEST_SUITE_P(
    Widening, ScrollTarget,
    testing::ValuesIn<Target>({
        // (100, 500) to (201, 521): 101 by 21, so x = 100 - 249, y = 500 - 189.
        {{"HalfUnits"}, V, half(device(100, 500, 200, 520)), true, -149, 311},
        {{"HalfUnitsOfNegatives"}, V, half(device(-101, -501, -1, -481)), true, -350, -690},
        {{"LeastFraction"}, V, {100 << 16, (520 << 16) + 1, (200 << 16) + 1, 500 << 16}, true, -149, 311},
        {{"MostFraction"}, V, {(100 << 16) + 0xFFFF, 520 << 16, 200 << 16, (500 << 16) + 0xFFFF}, true, -150, 310},
        {{"FractionTouchesLeft"}, V, {0xFFFF, 120 << 16, 100 << 16, 100 << 16}, true, -250, -90},
        {{"FractionTouchesRight"}, V, {500 << 16, 120 << 16, (599 << 16) + 1, 100 << 16}, true, 250, -90},
    }),
    rowName<Target>);

// 16-bit arithmetic wraps around.
INSTANTIATE_TEST_SUITE_P(
    Wrapping, ScrollTarget,
    testing::ValuesIn<Target>({
        // A view 60000 wide is -5536 wide.
        {{"ViewTooWideForSixteenBits"}, {-30000, 0, 30000, 400}, device(100, 500, 200, 520), true, 90, 310},
        {{"ViewTooHighForSixteenBits"}, {0, -30000, 600, 30000}, device(700, 500, 800, 520), true, 450, 490},
        // A selection 60000 wide is -5536 wide: narrower than the view by 6136.
        {{"SelectionTooWide"}, V, device(-30000, 500, 30000, 520), true, 32468, 310},
        {{"TargetBelowTheLeast"}, V, device(-32768, 500, -32068, 520), true, 32758, 310},
        {{"CeilingBeyondTheLargest"}, V, {100 << 16, 520 << 16, 0x7FFF8000, 500 << 16}, true, 90, 310},
    }),
    rowName<Target>);

// The sequence

class Scrolling : public testing::Test {
protected:
  Scrolling() { host.selectionPage = 6; }
  void scroll() { GLTScrollTo(host.view, host.selection); }
  RecordingHost host;
};

TEST_F(Scrolling, ShowsThePageOfTheSelectionAndScrolls) {
  scroll();
  EXPECT_EQ(host.story(), R"(
TavrelView.PageViewBeginBatch(view)
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
DocModel.SelectionPageNumber(selection)
TavrelView.PageViewShowPage(view, 6)
TavrelView.PageViewGetVisibleRect(view, *)
DocModel.SelectionBounds(selection, *)
TavrelView.PageViewGetPageTransform(view, *)
TavrelSupport.TransformFixedRect(*, *, *)
TavrelView.PageViewScrollToPoint(view, -150, 310)
Kernel.PopExceptionFrame()
TavrelView.PageViewEndBatch(view)
)");
}

TEST_F(Scrolling, DoesNotScrollToWhatIsFullyVisible) {
  host.bounds = device(100, 100, 200, 120);
  scroll();
  EXPECT_EQ(host.count("PageViewScrollToPoint"), 0U);
  EXPECT_EQ(host.trace.back(), "TavrelView.PageViewEndBatch(view)");
}

TEST_F(Scrolling, TransformsTheBoundsInPlaceByThePagesMatrix) {
  bool inPlace = false;
  FixedMatrix by = {};
  host.answer(TavrelView::PageViewGetPageTransform, std::function([](PageView, FixedMatrix *matrix) {
                *matrix = {2 * fixedOne, 1, 2, -2 * fixedOne, 3, 4};
              }));
  host.answer(TavrelSupport::TransformFixedRect,
              std::function([&](FixedRect *out, const FixedMatrix *matrix, const FixedRect *in) {
                inPlace = out == in && in->left == host.bounds.left && in->top == host.bounds.top;
                by = *matrix;
                *out = device(700, 900, 800, 920);
              }));
  scroll();
  EXPECT_TRUE(inPlace);
  EXPECT_EQ(by.d, -2 * fixedOne);
  EXPECT_EQ(host.count("PageViewScrollToPoint"), 1U);
  EXPECT_NE(host.story().find("PageViewScrollToPoint(view, 450, 710)"), std::string::npos);
}

/// No two equal 16-bit numbers, so that no difference of two is 0.
void fillWithOtherThanZero(volatile unsigned char *bytes, size_t count) {
  for (size_t i = 0; i < count; ++i)
    bytes[i] = static_cast<unsigned char>(i + 1);
}

/// A host that leaves values where the variables of the frame's body will be: its call uses the body's part of the
/// stack, just before the body does. Its only variable covers theirs.
void soilingPush(ExceptionFrame * /*frame*/, RestoreProc /*restore*/) {
  volatile unsigned char bytes[1024];
  fillWithOtherThanZero(bytes, sizeof bytes);
}
void emptyPop() {}

TEST_F(Scrolling, WithoutAPageViewHandsOnAnEmptyViewAndMatrix) {
  scroll(); // called once before: the linker looks functions up at their first call, and uses the stack
  std::vector<Entry> kernel(gKernelHFT, gKernelHFT + std::size(Kernel::operations));
  kernel[Kernel::PushExceptionFrame.index] = entryOf(soilingPush);
  kernel[Kernel::PopExceptionFrame.index] = entryOf(emptyPop);
  gKernelHFT = kernel.data();
  FixedMatrix by = {1, 1, 1, 1, 1, 1};
  host.answer(TavrelSupport::TransformFixedRect,
              std::function([&](FixedRect *, const FixedMatrix *matrix, const FixedRect *) { by = *matrix; }));
  GLTScrollTo(nullptr, host.selection);
  EXPECT_EQ((std::vector<Fixed>{by.a, by.b, by.c, by.d, by.h, by.v}), std::vector<Fixed>(6));
  // 10 to the left of and above the selection at (100, 500), which is larger than a view without area.
  EXPECT_EQ(host.trace[host.trace.size() - 2], "TavrelView.PageViewScrollToPoint(null, 90, 490)");
}

TEST_F(Scrolling, PaintsNothing) {
  scroll();
  EXPECT_EQ(host.count("PageViewPaintSelection") + host.count("PageViewApplyDrawColor"), 0U);
}

TEST_F(Scrolling, FailureReadsTheCodeAndClosesTheBracket) {
  host.raiseIn("PageViewGetPageTransform");
  scroll();
  EXPECT_EQ(host.story(), R"(
TavrelView.PageViewBeginBatch(view)
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
DocModel.SelectionPageNumber(selection)
TavrelView.PageViewShowPage(view, 6)
TavrelView.PageViewGetVisibleRect(view, *)
DocModel.SelectionBounds(selection, *)
TavrelView.PageViewGetPageTransform(view, *)
Kernel.PopExceptionFrame()
Kernel.GetExceptionCode()
TavrelView.PageViewEndBatch(view)
)");
}

TEST_F(Scrolling, OpensTheBracketBeforeTheFrame) {
  host.raiseIn("PageViewBeginBatch");
  EXPECT_FALSE(host.run([this] { scroll(); }));
  EXPECT_EQ(host.count("PushExceptionFrame"), 0U);
}

TEST_F(Scrolling, ClosesTheBracketAfterTheFrame) {
  host.raiseIn("PageViewEndBatch");
  EXPECT_FALSE(host.run([this] { scroll(); }));
  EXPECT_EQ(host.count("PopExceptionFrame"), 1U);
}

TEST(ScrollingFailures, BracketIsClosedOnARaiseOfAnyCall) {
  const auto prepare = [](RecordingHost &host) { host.reliable = {"PageViewBeginBatch", "PageViewEndBatch"}; };
  const auto act = [](RecordingHost &host) { GLTScrollTo(host.view, host.selection); };
  const auto check = [](RecordingHost &host, const std::string &call) {
    EXPECT_EQ(host.count("PageViewScrollToPoint"), call.find("ScrollToPoint") != std::string::npos ? 1U : 0U);
    EXPECT_EQ(host.count("Alert"), 0U);
  };
  EXPECT_EQ(raiseAtEveryCall({prepare, act, check}), 7U);
}

} // namespace
