// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Runs an operation with a fault at its first step, at its second and so on, until it ends without one. Each round has
// a new host, and the invariants are checked after it.
#pragma once

#include <functional>
#include <string>

#include "tests/host/RecordingHost.h"

/// The operation under test.
struct FaultTest {
  /// Before the fault; the trace is cleared afterwards.
  std::function<void(RecordingHost &)> prepare;
  /// Runs in a frame of the host.
  std::function<void(RecordingHost &)> act;
  /// After the fault, with the call ("TavrelView.PageViewShowPage(view, 3)") at which it was injected. May be left out.
  std::function<void(RecordingHost &, const std::string &call)> check = nullptr;
  bool leavesPagesOpen = false; ///< pages may stay open after a failure
  bool leavesBlocks = false;    ///< blocks of the host's may stay allocated after a failure
  bool leavesBrackets = false;  ///< a bracket of changes may stay open after a failure
  /// Ends every round, also one without a fault. May be left out.
  std::function<void(RecordingHost &)> finish = nullptr;
};

// Each returns the number of rounds in which a fault was injected. After every round no frame may be open, and no page,
// block or bracket beyond those of `prepare` unless the test allows it.

/// The n-th host call raises.
size_t raiseAtEveryCall(const FaultTest &test, int32_t code = tavrel::errGeneric);

/// The n-th host call raises, and so does every later one.
size_t raiseFromEveryCall(const FaultTest &test, int32_t code = tavrel::errGeneric);

/// The n-th host call, if its operation can, returns 0 or null.
size_t failAtEveryCall(const FaultTest &test);

/// The n-th allocation yields null; `check` gets no call.
size_t failAtEveryAllocation(const FaultTest &test);

/// The n-th allocation and every later one yield null, until `act` returns; `check` gets no call.
size_t failFromEveryAllocation(const FaultTest &test);

/// `interruption` runs in the middle of the n-th host call.
size_t interruptEveryCall(const FaultTest &test, const std::function<void(RecordingHost &)> &interruption);
