// Torture: a deed of the plug-in is done once to count its host calls and its allocations, and then again and again,
// each time with another of them failing: by value, by a raise, by raises from there on; memory once and for good.
// After every fault it is looked at what must still hold, the plug-in does a day's work, and that must come out as it
// does for a plug-in that nothing ever happened to.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "plugin/glt/glt.h"
#include "tests/host/RecordingHost.h"

namespace torture {

/// What may be lost for good: neither given back nor to be reached by anybody.
struct Loss {
  size_t blocks = 0;     ///< of the plug-in's own
  size_t hostBlocks = 0; ///< from the host's allocator, which accounts for them
};

struct Scenario {
  std::string name; ///< letters and digits
  std::function<void(RecordingHost &)> prepare;
  std::function<void(RecordingHost &)> act; ///< inside a frame of the host's
  Loss always = {};                         ///< lost by the deed itself, unless a fault comes before
  Loss cutShort = {};                       ///< lost besides when a raise ends the deed: that, or nothing
  Loss withoutMemory = {};                  ///< lost besides when an allocation fails: likewise
  /// What must hold of the scenario's own things after the deed, whatever failed. May be left out.
  std::function<void(RecordingHost &)> check = nullptr;
  bool translates = false; ///< the scenario's list, in place
};

/// For the messages of a test.
inline void PrintTo(const Scenario &scenario, std::ostream *out) { *out << scenario.name; }

/// How much was tried.
struct Count {
  size_t calls = 0, allocations = 0, faults = 0;
};

/// Runs a scenario with every fault. Failures are the current test's.
Count torture(const Scenario &scenario);

/// A list that the scenario owns until the round is over; null when memory ran out.
HLL *clientList();
/// To be called when the plug-in's global data goes.
void noteTermination();
/// Whether the deed is going on: a procedure of the scenario's is called later, too, when what it registered goes.
bool deedIsOn();

/// What the registrants' procedures of scenarios do: nothing.
void jumpProc(tavrel::Doc document, HLL *list, uint32_t code, void *userData);
void newProc(tavrel::Doc document, HLL *list, void *userData);

/// Six highlights on pages 0, 2 and 3 of a client's list.
HLL *sixHighlights();
/// Registers them, and clears the trace.
void registerSix(RecordingHost &host);

// The scenarios, by what they are about.
std::vector<Scenario> lifeScenarios();
std::vector<Scenario> fileScenarios();
std::vector<Scenario> registryScenarios();
std::vector<Scenario> walkingScenarios();
std::vector<Scenario> toolBarScenarios();
std::vector<Scenario> clientScenarios();
std::vector<Scenario> utilityScenarios();

} // namespace torture
