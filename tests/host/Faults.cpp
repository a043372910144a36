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

/// Whether a fault can have struck there.
bool canFail(const RecordingHost &host, const std::string &call) {
  const size_t dot = call.find('.'), parenthesis = call.find('(');
  const std::string operation = call.substr(dot + 1, parenthesis - dot - 1);
  static const std::set<std::string> onFrames = {"PushExceptionFrame", "PopExceptionFrame", "GetExceptionCode",
                                                 "RaiseError"};
  return !onFrames.contains(operation) && !host.reliable.contains(operation);
}

/// Rounds whose faults are counted in host calls. `set` prepares the n-th.
size_t roundsOverCalls(const Trial &trial, const std::function<void(RecordingHost &, size_t)> &set) {
  size_t struck = 0;
  for (size_t n = 0; n < mostRounds; ++n) {
    RecordingHost host;
    trial.prepare(host);
    host.clear();
    const Balance balance(host);
    set(host, n);
    host.run([&] { trial.act(host); });
    host.noFaults();
    if (host.trace.size() <= n) return struck;
    const std::string call = callAt(host, n);
    if (!canFail(host, call)) continue;
    ++struck;
    SCOPED_TRACE("fault at host call " + std::to_string(n) + ", " + call);
    balance.expect(host, trial);
    if (trial.check) trial.check(host, call);
  }
  ADD_FAILURE() << "no end after " << mostRounds << " rounds";
  return struck;
}

} // namespace

size_t raiseAtEveryCall(const Trial &trial, int32_t code) {
  return roundsOverCalls(trial, [code](RecordingHost &host, size_t n) { host.raiseAt(n, code); });
}

size_t failAtEveryCall(const Trial &trial) {
  return roundsOverCalls(trial, [](RecordingHost &host, size_t n) { host.failAt(n); });
}

size_t interruptEveryCall(const Trial &trial, const std::function<void(RecordingHost &)> &interruption) {
  return roundsOverCalls(trial, [&interruption](RecordingHost &host, size_t n) {
    host.during(n, [&host, &interruption] { interruption(host); });
  });
}

size_t failAtEveryAllocation(const Trial &trial) {
  for (size_t n = 0; n < mostRounds; ++n) {
    RecordingHost host;
    trial.prepare(host);
    host.clear();
    const Balance balance(host);
    bool failed = false;
    {
      const FailingMemory memory(n);
      host.run([&] { trial.act(host); });
      failed = memory.failed();
    }
    if (!failed) return n;
    SCOPED_TRACE("allocation " + std::to_string(n) + " failed");
    balance.expect(host, trial);
    if (trial.check) trial.check(host, "");
  }
  ADD_FAILURE() << "no end after " << mostRounds << " rounds";
  return mostRounds;
}
