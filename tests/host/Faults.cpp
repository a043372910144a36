// The rounds of a trial.
#include "tests/host/Faults.h"

#include <gtest/gtest.h>

#include "tests/support/FailingMemory.h"

namespace {

/// A trial that goes on for longer has lost its way.
constexpr size_t mostRounds = 10000;

/// What may be open before and after a round.
struct Balance {
  explicit Balance(const RecordingHost &host)
      : pages(host.openPages.size()), blocks(host.blocks.size()), brackets(host.brackets) {}

  void expect(const RecordingHost &host, const Trial &trial) const {
    EXPECT_EQ(host.frames(), 0U);
    EXPECT_TRUE(trial.leavesPagesOpen || host.openPages.size() == pages) << "a page object was left open";
    EXPECT_TRUE(trial.leavesBlocks || host.blocks.size() == blocks) << "a block of the host's was not freed";
    EXPECT_TRUE(trial.leavesBrackets || host.brackets == brackets) << "a bracket was left open";
  }

  size_t pages, blocks;
  int brackets;
};

std::string callAt(const RecordingHost &host, size_t n) { return n < host.trace.size() ? host.trace[n] : ""; }

std::string operationOf(const std::string &call) {
  const size_t dot = call.find('.'), parenthesis = call.find('(');
  return call.substr(dot + 1, parenthesis - dot - 1);
}

bool canFailByValue(const std::string &call) { return RecordingHost::canFailByValue(operationOf(call)); }

bool any(const std::string & /*call*/) { return true; }

/// Whether a fault can have struck there.
bool canFail(const RecordingHost &host, const std::string &call) {
  const std::string operation = operationOf(call);
  static const std::set<std::string> onFrames = {"PushExceptionFrame", "PopExceptionFrame", "GetExceptionCode",
                                                 "RaiseError"};
  return !onFrames.contains(operation) && !host.reliable.contains(operation);
}

/// Rounds whose faults are counted in host calls. `set` prepares the n-th; `suits` says of which calls it is one.
size_t roundsOverCalls(const Trial &trial, const std::function<void(RecordingHost &, size_t)> &set,
                       bool (*suits)(const std::string &call) = any) {
  size_t struck = 0;
  for (size_t n = 0; n < mostRounds; ++n) {
    RecordingHost host;
    trial.prepare(host);
    host.clear();
    const Balance balance(host);
    set(host, n);
    host.run([&] { trial.act(host); });
    host.noFaults();
    const bool reached = host.trace.size() > n;
    const std::string call = callAt(host, n);
    if (reached && canFail(host, call) && suits(call)) {
      ++struck;
      SCOPED_TRACE("fault at host call " + std::to_string(n) + ", " + call);
      balance.expect(host, trial);
      if (trial.check) trial.check(host, call);
    }
    if (trial.finish) trial.finish(host);
    if (!reached) return struck;
  }
  ADD_FAILURE() << "no end after " << mostRounds << " rounds";
  return struck;
}

} // namespace

size_t raiseAtEveryCall(const Trial &trial, int32_t code) {
  return roundsOverCalls(trial, [code](RecordingHost &host, size_t n) { host.raiseAt(n, code); });
}

size_t raiseFromEveryCall(const Trial &trial, int32_t code) {
  return roundsOverCalls(trial, [code](RecordingHost &host, size_t n) { host.raiseFrom(n, code); });
}

size_t failAtEveryCall(const Trial &trial) {
  return roundsOverCalls(
      trial, [](RecordingHost &host, size_t n) { host.failAt(n); }, canFailByValue);
}

size_t interruptEveryCall(const Trial &trial, const std::function<void(RecordingHost &)> &interruption) {
  return roundsOverCalls(trial, [&interruption](RecordingHost &host, size_t n) {
    host.during(n, [&host, &interruption] { interruption(host); });
  });
}

namespace {

size_t roundsOverAllocations(const Trial &trial, FailingMemory::Extent extent) {
  for (size_t n = 0; n < mostRounds; ++n) {
    RecordingHost host;
    trial.prepare(host);
    host.clear();
    const Balance balance(host);
    bool failed = false;
    {
      const FailingMemory memory(n, extent);
      host.run([&] { trial.act(host); });
      failed = memory.failed();
    }
    if (!failed) {
      if (trial.finish) trial.finish(host);
      return n;
    }
    SCOPED_TRACE("allocation " + std::to_string(n) + (extent == FailingMemory::once ? "" : " and all later ones") +
                 " failed");
    balance.expect(host, trial);
    if (trial.check) trial.check(host, "");
    if (trial.finish) trial.finish(host);
  }
  ADD_FAILURE() << "no end after " << mostRounds << " rounds";
  return mostRounds;
}

} // namespace

size_t failAtEveryAllocation(const Trial &trial) { return roundsOverAllocations(trial, FailingMemory::once); }

size_t failFromEveryAllocation(const Trial &trial) { return roundsOverAllocations(trial, FailingMemory::fromThereOn); }
