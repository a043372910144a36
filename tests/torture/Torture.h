// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Torture: a scenario runs once to count its host calls and its allocations, and then once for every fault: each call
// fails by value, by a raise, and by raises from it on; each allocation fails alone, and together with all later ones.
// After every fault the invariants are checked, and the plug-in does a smoke run, whose result must be the same as in a
// plug-in without a fault.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "plugin/glt/glt.h"
#include "tests/host/RecordingHost.h"

namespace torture {

/// Blocks that may be lost: neither freed nor reachable.
struct Loss {
  size_t blocks = 0;     ///< from malloc
  size_t hostBlocks = 0; ///< from the host's allocator, which accounts for them
};

struct Scenario {
  std::string name; ///< letters and digits
  std::function<void(RecordingHost &)> prepare;
  std::function<void(RecordingHost &)> act; ///< in a frame of the host's
  Loss always = {};                         ///< lost by the scenario itself, unless a fault comes before
  Loss afterRaise = {};                     ///< lost in addition when a raise ends the scenario: that, or nothing
  Loss withoutMemory = {};                  ///< lost in addition when an allocation fails: likewise
  /// Checks the scenario's own data after every fault. May be left out.
  std::function<void(RecordingHost &)> check = nullptr;
  bool translates = false; ///< whether it translates its list in place
};

/// For a test's messages.
inline void PrintTo(const Scenario &scenario, std::ostream *out) { *out << scenario.name; }

/// The number of host calls, allocations and injected faults.
struct Count {
  size_t calls = 0, allocations = 0, faults = 0;
};

/// Runs a scenario with every fault. Failures are reported in the current test.
Count torture(const Scenario &scenario);

/// A list that the scenario owns until the end of the round; null when memory is exhausted.
HLL *clientList();
/// To be called when the plug-in's global data is freed.
void noteTermination();
/// Whether the scenario's `act` is running: its procedures are called later, too, when its registration is removed.
bool isActing();

/// Registrants' procedures that do nothing.
void jumpProc(tavrel::Doc document, HLL *list, uint32_t code, void *userData);
void newProc(tavrel::Doc document, HLL *list, void *userData);

/// Six highlights on pages 0, 2 and 3 of a client's list.
HLL *sixHighlights();
/// Registers them, and clears the trace.
void registerSix(RecordingHost &host);

// The scenarios, by subject.
std::vector<Scenario> lifeScenarios();
std::vector<Scenario> fileScenarios();
std::vector<Scenario> registryScenarios();
std::vector<Scenario> walkingScenarios();
std::vector<Scenario> toolBarScenarios();
std::vector<Scenario> clientScenarios();
std::vector<Scenario> utilityScenarios();

} // namespace torture
