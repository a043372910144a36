// Tries a deed with a fault at its first step, at its second and so on, until it runs through without one. The one
// place where that loop stands: each round has a host of its own and is checked for what must always hold.
#pragma once

#include <functional>
#include <string>

#include "tests/host/RecordingHost.h"

/// What is tried.
struct FaultTest {
  /// Before the fault; the trace is cleared afterwards.
  std::function<void(RecordingHost &)> prepare;
  /// Runs inside a frame of the host's own.
  std::function<void(RecordingHost &)> act;
  /// After the fault, with the call ("TavrelView.PageViewShowPage(view, 3)") at which it struck. May be left out.
  std::function<void(RecordingHost &, const std::string &call)> check = nullptr;
  bool leavesPagesOpen = false; ///< pages may stay open after a failure
  bool leavesBlocks = false;    ///< blocks of the host's may stay allocated after a failure
  bool leavesBrackets = false;  ///< a bracket of changes may stay open after a failure
  /// Ends every round, also one in which no fault struck. May be left out.
  std::function<void(RecordingHost &)> finish = nullptr;
};

// Each returns in how many rounds the fault struck, for tests to see that there were any. In every round no frame may
// be left, and no page, block or bracket beyond those of `prepare` but where the test says so.

/// The n-th host call raises.
size_t raiseAtEveryCall(const FaultTest &test, int32_t code = tavrel::errGeneric);

/// The n-th host call raises, and so does every later one.
size_t raiseFromEveryCall(const FaultTest &test, int32_t code = tavrel::errGeneric);

/// The n-th host call, if its operation can, returns 0 or null.
size_t failAtEveryCall(const FaultTest &test);

/// The n-th allocation yields null; `check` gets no call.
size_t failAtEveryAllocation(const FaultTest &test);

/// The n-th allocation and every later one yield null, until the deed is done; `check` gets no call.
size_t failFromEveryAllocation(const FaultTest &test);

/// `interruption` runs in the middle of the n-th host call.
size_t interruptEveryCall(const FaultTest &test, const std::function<void(RecordingHost &)> &interruption);
