// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The rounds of a fault test.
#include "tests/host/Faults.h"

#include <gtest/gtest.h>

#include "tests/support/FailingMemory.h"

namespace {

/// A limit, against a test that does not end.
constexpr size_t mostRounds = 10000;

/// What is open before a round, and must not be more after it.
struct Balance {
  explicit Balance(const RecordingHost &host)
      : pages(host.openPages.size()), blocks(host.blocks.size()), brackets(host.brackets) {}

  void expect(const RecordingHost &host, const FaultTest &test) const {
    EXPECT_EQ(host.frames(), 0U);
    EXPECT_TRUE(test.leavesPagesOpen || host.openPages.size() == pages) << "a page object was left open";
    EXPECT_TRUE(test.leavesBlocks || host.blocks.size() == blocks) << "a block of the host's was not freed";
    EXPECT_TRUE(test.leavesBrackets || host.brackets == brackets) << "a bracket was left open";
  }

  size_t pages, blocks;
  int brackets;
};

std::string callAt(const RecordingHost &host, size_t n) { return n < host.trace.size() ? host.trace[n] : ""; }

std::string operationOf(const std::string &call) {
  const size_t dot = call.find('.'), parenthesis = call.find('(');
  return call.substr(dot + 1, parenthesis - dot - 1);
}

/// Rounds with a fault at the n-th host call. `set` prepares it; `injected` says afterwards whether there was a fault.
size_t roundsOverCalls(const FaultTest &test, const std::function<void(RecordingHost &, size_t)> &set,
                       const std::function<bool(const RecordingHost &, size_t)> &injected) {
  size_t count = 0;
  for (size_t n = 0; n < mostRounds; ++n) {
    RecordingHost host;
    test.prepare(host);
    host.clear();
    const Balance balance(host);
    set(host, n);
    host.run([&] { test.act(host); });
    host.noFaults();
    const bool reached = host.trace.size() > n;
    const std::string call = callAt(host, n);
    if (reached && host.canFail(operationOf(call)) && injected(host, n)) {
      ++count;
      SCOPED_TRACE("fault at host call " + std::to_string(n) + ", " + call);
      balance.expect(host, test);
      if (test.check) test.check(host, call);
    }
    if (test.finish) test.finish(host);
    if (!reached) return count;
  }
  ADD_FAILURE() << "no end after " << mostRounds << " rounds";
  return count;
}

bool always(const RecordingHost & /*host*/, size_t /*n*/) { return true; }

/// The calls that return 0 or null without a fault: making those fail by value would be no fault.
std::set<size_t> callsThatGiveNothing(const FaultTest &test) {
  RecordingHost host;
  test.prepare(host);
  host.clear();
  host.run([&] { test.act(host); });
  const std::set<size_t> calls = host.gaveNothing;
  if (test.finish) test.finish(host);
  return calls;
}

} // namespace

size_t raiseAtEveryCall(const FaultTest &test, int32_t code) {
  return roundsOverCalls(
      test, [code](RecordingHost &host, size_t n) { host.raiseAt(n, code); }, always);
}

size_t raiseFromEveryCall(const FaultTest &test, int32_t code) {
  // Where no call follows the first raise, the round is the same as with a single raise, and is not counted.
  return roundsOverCalls(
      test, [code](RecordingHost &host, size_t n) { host.raiseFrom(n, code); },
      [](const RecordingHost &host, size_t) { return host.raises > 1; });
}

size_t failAtEveryCall(const FaultTest &test) {
  const std::set<size_t> nothing = callsThatGiveNothing(test);
  return roundsOverCalls(
      test, [](RecordingHost &host, size_t n) { host.failAt(n); },
      [&nothing](const RecordingHost &host, size_t n) {
        return RecordingHost::canFailByValue(operationOf(host.trace[n])) && !nothing.contains(n);
      });
}

size_t interruptEveryCall(const FaultTest &test, const std::function<void(RecordingHost &)> &interruption) {
  return roundsOverCalls(
      test,
      [&interruption](RecordingHost &host, size_t n) {
        host.during(n, [&host, &interruption] { interruption(host); });
      },
      always);
}

namespace {

size_t roundsOverAllocations(const FaultTest &test, FailingMemory::Extent extent) {
  for (size_t n = 0; n < mostRounds; ++n) {
    RecordingHost host;
    test.prepare(host);
    host.clear();
    const Balance balance(host);
    bool failed = false;
    {
      const FailingMemory memory(n, extent);
      host.run([&] { test.act(host); });
      failed = memory.failed();
    }
    if (!failed) {
      if (test.finish) test.finish(host);
      return n;
    }
    SCOPED_TRACE("allocation " + std::to_string(n) + (extent == FailingMemory::once ? "" : " and all later ones") +
                 " failed");
    balance.expect(host, test);
    if (test.check) test.check(host, "");
    if (test.finish) test.finish(host);
  }
  ADD_FAILURE() << "no end after " << mostRounds << " rounds";
  return mostRounds;
}

} // namespace

size_t failAtEveryAllocation(const FaultTest &test) { return roundsOverAllocations(test, FailingMemory::once); }

size_t failFromEveryAllocation(const FaultTest &test) {
  return roundsOverAllocations(test, FailingMemory::fromThereOn);
}
