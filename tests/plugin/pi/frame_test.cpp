// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Exception frames, and how the host's tables are called.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "plugin/glt/glt.h"
#include "plugin/pi/PIFrame.h"
#include "tests/host/RecordingHost.h"

using namespace tavrel;

namespace {

/// The data of a protected body: without a destructor, so that a jump may skip it.
struct Steps {
  int before = 0, after = 0;
  bool innerRan = true;
};

TEST(Frame, RestoreJumpsBackWithOne) {
  ExceptionFrame frame;
  switch (setjmp(frame.context)) {
  case 0:
    RestorePlugInFrame(&frame);
    FAIL() << "came back";
  case 1:
    break;
  default:
    FAIL() << "another value";
  }
}

TEST(Frame, IsOpenedAndClosedAroundABodyThatSucceeds) {
  const RecordingHost host;
  EXPECT_TRUE(PIProtect([] { TavrelView::GetFrontDoc(); }));
  EXPECT_EQ(host.story(), R"(
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
TavrelView.GetFrontDoc()
Kernel.PopExceptionFrame()
)");
  EXPECT_EQ(host.frames(), 0U);
}

TEST(Frame, IsClosedByTheHandlerWhenTheHostRaises) {
  RecordingHost host;
  host.raiseIn("PageViewShowPage", errBadPage);
  Steps steps;
  EXPECT_FALSE(PIProtect([&] {
    ++steps.before;
    TavrelView::PageViewShowPage(nullptr, 3);
    ++steps.after;
  }));
  EXPECT_EQ(host.frames(), 0U);
  EXPECT_EQ(Kernel::GetExceptionCode(), errBadPage);
  EXPECT_EQ(steps.before, 1) << "the value that the body stored before the jump is there";
  EXPECT_EQ(steps.after, 0);
}

TEST(Frame, NextPairAfterAFailureIsBalanced) {
  RecordingHost host;
  EXPECT_FALSE(PIProtect([] { Kernel::RaiseError(errNoMemory); }));
  EXPECT_TRUE(PIProtect([] { TavrelView::GetFrontDoc(); }));
  EXPECT_EQ(host.count("PushExceptionFrame"), 2U);
  EXPECT_EQ(host.count("PopExceptionFrame"), 2U);
  EXPECT_EQ(host.frames(), 0U);
}

TEST(Frame, RaiseErrorIsCaughtWithItsCode) {
  const RecordingHost host;
  EXPECT_FALSE(PIProtect([] { Kernel::RaiseError(errNoMemory); }));
  EXPECT_EQ(Kernel::GetExceptionCode(), errNoMemory);
}

TEST(Frame, InnerFailureIsHandledInsideAndTheOuterBodyContinues) {
  const RecordingHost host;
  Steps steps;
  EXPECT_TRUE(PIProtect([&] {
    steps.innerRan = PIProtect([&] {
      ++steps.before;
      Kernel::RaiseError(errGeneric);
      ++steps.after;
    });
    TavrelView::GetToolBar();
  }));
  EXPECT_FALSE(steps.innerRan);
  EXPECT_EQ(steps.before, 1);
  EXPECT_EQ(steps.after, 0);
  EXPECT_EQ(host.story(), R"(
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
Kernel.PushExceptionFrame(*, RestorePlugInFrame)
Kernel.RaiseError(1)
Kernel.PopExceptionFrame()
TavrelView.GetToolBar()
Kernel.PopExceptionFrame()
)");
}

TEST(Frame, FailureAfterAnInnerRegionReachesTheOuterHandler) {
  const RecordingHost host;
  Steps steps;
  EXPECT_FALSE(PIProtect([&] {
    steps.innerRan = PIProtect([] { TavrelView::GetFrontDoc(); });
    Kernel::RaiseError(errBadHandle);
    ++steps.after;
  }));
  EXPECT_TRUE(steps.innerRan);
  EXPECT_EQ(steps.after, 0);
  EXPECT_EQ(host.frames(), 0U);
}

TEST(Frame, FailureAfterAnInnerFailureReachesTheOuterHandler) {
  const RecordingHost host;
  EXPECT_FALSE(PIProtect([] {
    PIProtect([] { Kernel::RaiseError(errGeneric); });
    Kernel::RaiseError(errBadPage);
  }));
  EXPECT_EQ(Kernel::GetExceptionCode(), errBadPage);
  EXPECT_EQ(host.frames(), 0U);
}

TEST(Frame, FailureOutsideOfAnyUnwindsToTheHost) {
  RecordingHost host;
  host.raiseIn("GetFrontDoc");
  EXPECT_FALSE(host.run([] { TavrelView::GetFrontDoc(); }));
  EXPECT_EQ(host.frames(), 0U);
}

TEST(HostTables, AreReadFromTheirGlobalsAtEveryCall) {
  RecordingHost host;
  static std::array<Entry, std::size(TavrelView::operations)> other;
  std::copy_n(gTavrelViewHFT, other.size(), other.begin());
  static bool asked;
  asked = false;
  other[TavrelView::GetModifierKeyState.index] = entryOf(+[]() -> uint32_t {
    asked = true;
    return 0;
  });
  host.answer(TavrelView::GetFrontDoc, std::function([] {
                gTavrelViewHFT = other.data();
                return Doc{nullptr};
              }));
  GLTNextExecProc(nullptr, nullptr);
  EXPECT_TRUE(asked) << "the second call of the same function used the table that the first one stored";
}

} // namespace
