// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Exception frames, and calls into plug-ins that go wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <stdexcept>

#include "TestPlugin.h"
#include "host/kernel/table.h"
#include "tavrel/Kernel.h"

namespace {

using tavrel::ExceptionFrame;
using test::TestPlugin;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

void jumpBack(ExceptionFrame *frame) { longjmp(frame->context, 1); }

// A protected region as a plug-in writes it. Returns whether the body raised.
bool raises(void (*body)()) {
  ExceptionFrame frame;
  void (*volatile run)() = body;
  Kernel::PushExceptionFrame(&frame, jumpBack);
  if (setjmp(frame.context) == 0) {
    run();
    Kernel::PopExceptionFrame();
    return false;
  }
  Kernel::PopExceptionFrame();
  return true;
}

void nothing() {}
void fail() { Kernel::RaiseError(tavrel::errNoMemory); }

int32_t one() { return 1; }
int32_t raiseThree() {
  Kernel::RaiseError(3);
  return 1;
}
int32_t throwSomething() { throw std::runtime_error("from a plug-in in C++"); }

ExceptionFrame forgottenFrames[3];
int32_t forgetFrames() {
  for (ExceptionFrame &frame : forgottenFrames)
    Kernel::PushExceptionFrame(&frame, jumpBack);
  return 1;
}

struct Frames : testing::Test {
  host::Runtime runtime;
  TestPlugin testPlugin{runtime};

  int32_t call(int32_t (*function)()) { return host::callPlugin({testPlugin.id, "the call"}, function); }
};

TEST_F(Frames, ABodyThatSucceedsReturns) {
  EXPECT_FALSE(raises(nothing));
  EXPECT_EQ(runtime.frames.depth(), 0U);
}

TEST_F(Frames, ARaiseGoesToTheFrame) {
  EXPECT_TRUE(raises(fail));
  EXPECT_EQ(Kernel::GetExceptionCode(), tavrel::errNoMemory);
  EXPECT_EQ(runtime.frames.depth(), 0U);
}

TEST_F(Frames, ARaiseGoesToTheInnermostFrame) {
  static bool innerRaised;
  EXPECT_FALSE(raises([] { innerRaised = raises(fail); }));
  EXPECT_TRUE(innerRaised);
}

TEST_F(Frames, AHandlerThatRaisesAgainGoesToTheOuterFrame) {
  EXPECT_TRUE(raises([] {
    if (raises(fail)) Kernel::RaiseError(tavrel::errBadPage);
  }));
  EXPECT_EQ(Kernel::GetExceptionCode(), tavrel::errBadPage);
}

TEST_F(Frames, ARaiseLeavesTheFrameForTheHandlerToPop) {
  static size_t depthInHandler;
  ExceptionFrame frame;
  Kernel::PushExceptionFrame(&frame, jumpBack);
  if (setjmp(frame.context) == 0) fail();
  depthInHandler = host::Runtime::current().frames.depth();
  Kernel::PopExceptionFrame();
  EXPECT_EQ(depthInHandler, 1U);
}

TEST_F(Frames, AsManyAsPromisedNest) {
  static ExceptionFrame frames[tavrel::maxFrames];
  EXPECT_EQ(testPlugin.attempt([] {
    for (ExceptionFrame &frame : frames)
      Kernel::PushExceptionFrame(&frame, jumpBack);
    for (size_t n = 0; n < tavrel::maxFrames; ++n)
      Kernel::PopExceptionFrame();
  }),
            0);
}

TEST_F(Frames, OneTooManyIsAnErrorLikeAnyOther) {
  static uint32_t depth;
  static void (*deeper)() = [] {
    ++depth;
    raises(deeper);
  };
  depth = 0;
  EXPECT_EQ(testPlugin.attempt([] { raises(deeper); }), 0);
  EXPECT_EQ(depth, tavrel::maxFrames);
  EXPECT_EQ(Kernel::GetExceptionCode(), tavrel::errFrames);
  EXPECT_EQ(runtime.frames.depth(), 0U);
}

TEST_F(Frames, AFrameWithoutARestoreProcedureRaises) {
  static ExceptionFrame frame;
  EXPECT_EQ(testPlugin.attempt([] { Kernel::PushExceptionFrame(&frame, nullptr); }), tavrel::errBadArgument);
}

TEST_F(Frames, ARestoreProcedureWithoutAFrameRaises) {
  EXPECT_EQ(testPlugin.attempt([] { Kernel::PushExceptionFrame(nullptr, jumpBack); }), tavrel::errBadArgument);
}

TEST_F(Frames, AFrameThatIsPoppedLeavesSpaceForTheNextOne) {
  EXPECT_EQ(testPlugin.attempt([] {
    static ExceptionFrame frame;
    for (size_t n = 0; n < 3 * tavrel::maxFrames; ++n) {
      Kernel::PushExceptionFrame(&frame, jumpBack);
      Kernel::PopExceptionFrame();
    }
  }),
            0);
}

TEST_F(Frames, ALongReasonIsTruncated) {
  static const std::string reason(10000, 'r');
  testPlugin.attempt([] {
    host::noteReason(reason.c_str());
    host::raise(tavrel::errGeneric);
  });
  ASSERT_EQ(testPlugin.reports.size(), 1U);
  EXPECT_THAT(testPlugin.reports[0], testing::MatchesRegex("test plug-in: the body failed with error [0-9]+: r+"));
  EXPECT_LT(testPlugin.reports[0].size(), 1000U);
  testPlugin.attempt([] { Kernel::PopExceptionFrame(); });
  ASSERT_EQ(testPlugin.reports.size(), 2U);
  EXPECT_EQ(testPlugin.reports[1], "test plug-in: the body failed with error 6: an exception frame popped too often")
      << "nothing of the long one";
}

TEST_F(Frames, PoppingTooOftenRaisesAndLeavesTheHostsFrame) {
  EXPECT_EQ(testPlugin.attempt([] { Kernel::PopExceptionFrame(); }), tavrel::errFrames);
  EXPECT_EQ(runtime.frames.depth(), 0U);
}

TEST_F(Frames, APluginThatRaisesGivesTheFailureValue) {
  EXPECT_EQ(call(one), 1);
  EXPECT_EQ(call(raiseThree), 0);
  EXPECT_THAT(testPlugin.reports, ElementsAre("test plug-in: the call failed with error 3: raised by the plug-in"));
}

TEST_F(Frames, TheHostContinuesAfterARaise) {
  call(raiseThree);
  EXPECT_EQ(call(one), 1);
  EXPECT_EQ(runtime.frames.depth(), 0U);
}

TEST_F(Frames, ForgottenFramesAreClosedAndNoted) {
  EXPECT_EQ(call(forgetFrames), 1);
  EXPECT_EQ(runtime.frames.depth(), 0U);
  EXPECT_THAT(testPlugin.reports, ElementsAre("test plug-in: the call left 3 exception frames open"));
}

TEST_F(Frames, AnExceptionOfAPluginEndsTheCall) {
  EXPECT_EQ(call(throwSomething), 0);
  EXPECT_EQ(runtime.frames.depth(), 0U);
  EXPECT_THAT(testPlugin.reports, ElementsAre("test plug-in: the call threw an exception"));
}

TEST_F(Frames, ARaiseInsideACallWithinACallEndsOnlyTheInnerOne) {
  static Frames *test;
  static int32_t inner;
  test = this;
  const auto outer = +[]() -> int32_t {
    inner = test->call(raiseThree);
    return 7;
  };
  EXPECT_EQ(call(outer), 7);
  EXPECT_EQ(inner, 0);
}

TEST_F(Frames, ARaiseNeverPassesAFrameOfTheHost) {
  static Frames *test;
  static bool outerRaised;
  test = this;
  call(+[]() -> int32_t {
    outerRaised = raises([] { test->call(raiseThree); });
    return 1;
  });
  EXPECT_FALSE(outerRaised);
}

// What the body stores before it raises has to be there afterwards: a compiler that sees the body never return drops
// it.
TEST_F(Frames, WhatABodyStoresBeforeItRaisesIsThere) {
  int stored = 0;
  testPlugin.attempt([&] {
    stored = 42;
    host::raise(tavrel::errGeneric);
  });
  EXPECT_EQ(stored, 42);
}

TEST_F(Frames, CallsWithoutEndFailInsteadOfOverflowing) {
  static Frames *test;
  static uint32_t depth;
  test = this;
  depth = 0;
  static int32_t (*again)() = []() -> int32_t {
    ++depth;
    try {
      return test->call(again);
    } catch (const host::HostError &error) {
      return error.code;
    }
  };
  EXPECT_EQ(call(again), tavrel::errFrames);
  EXPECT_EQ(depth, host::maxHostFrames);
  EXPECT_EQ(runtime.frames.depth(), 0U);
}

TEST_F(Frames, AnOperationThatFailsGivesAReason) {
  testPlugin.attempt([] { Kernel::PopExceptionFrame(); });
  EXPECT_THAT(testPlugin.reports,
              ElementsAre("test plug-in: the body failed with error 6: an exception frame popped too often"));
}

TEST(Reports, ArePrintedOnStandardErrorByDefault) {
  const host::Runtime runtime;
  testing::internal::CaptureStderr();
  runtime.report("the plug-in failed");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tavrel: the plug-in failed\n");
}

struct CountingWatcher : host::CallWatcher {
  void beforeCall() override { ++before; }
  void afterCall() noexcept override { ++after; }
  int before = 0, after = 0;
};

TEST_F(Frames, WatchersAreNotifiedAroundEveryCallAlsoOneThatFails) {
  CountingWatcher watcher;
  runtime.watch(&watcher);
  call(one);
  call(raiseThree);
  runtime.unwatch(&watcher);
  call(one);
  EXPECT_EQ(watcher.before, 2);
  EXPECT_EQ(watcher.after, 2);
}

using FramesDeathTest = Frames;

TEST(NoRuntimeDeathTest, ARaiseWithoutAHostEndsTheProgramWithALine) {
  EXPECT_EXIT(host::raise(tavrel::errBadPage), testing::KilledBySignal(SIGABRT),
              "tavrel: error 4 while the host is not running");
}

TEST(NoRuntime, AReasonWithoutAHostIsIgnored) {
  host::noteReason("without a host");
  EXPECT_EQ(host::Runtime::find(), nullptr);
}

TEST_F(FramesDeathTest, ARaiseWithoutAnyFrameEndsTheProgramWithALine) {
  EXPECT_EXIT(Kernel::RaiseError(tavrel::errBadPage), testing::KilledBySignal(SIGABRT),
              "error 4 outside every exception frame: raised by the plug-in");
}

TEST_F(FramesDeathTest, ARestoreProcedureThatReturnsEndsTheProgram) {
  ExceptionFrame frame;
  Kernel::PushExceptionFrame(&frame, [](ExceptionFrame *) {});
  EXPECT_EXIT(Kernel::RaiseError(1), testing::KilledBySignal(SIGABRT),
              AllOf(StartsWith("tavrel: a restore procedure returned\n"), Not(HasSubstr("the host is not running"))));
  Kernel::PopExceptionFrame();
}

} // namespace
