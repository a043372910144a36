// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A test of compilers: are the values that a protected region stores still there after the jump out of it?
//
// Where g++ sees that a body never returns, it assumes that nothing reads what the body stored: the handler then reads
// old values. No sanitizer detects that. So this program is built at several optimisation levels by each compiler, and
// every body ends in a raise. Each case includes a separate copy of the protected region's source, because the compiler
// follows a body through a region only while that region has no other body. The bodies stay out of line, as large ones
// do.
//
// The exit status is 0 when all values are there, else 1, and the names of the failed cases are printed. A region that
// calls its body directly fails here with g++ from -O2 on.
#include <csetjmp>
#include <cstdio>

#include "plugin/pi/PIFrame.h"
#include "tavrel/Kernel.h"

using namespace tavrel;

HFT gKernelHFT;

namespace {

// A host with frames only.

ExceptionFrame *s_frames[8];
int s_depth;

void pushFrame(ExceptionFrame *frame, RestoreProc /*restore*/) { s_frames[s_depth++] = frame; }

void popFrame() { --s_depth; }

[[noreturn]] void raiseDeclared() { longjmp(s_frames[s_depth - 1]->context, 1); }

void raiseSeen() { longjmp(s_frames[s_depth - 1]->context, 1); }

/// A raise that the compiler does not see.
void raiseInTable(int32_t /*code*/) { raiseDeclared(); }

Entry s_kernel[] = {entryOf(raiseInTable), entryOf(pushFrame), entryOf(popFrame)};

/// PIProtect, for a copy of PIProtectCall.
template <auto region, typename Body> bool protect(Body body) {
  return region([](void *argument) { (*static_cast<Body *>(argument))(); }, &body);
}

#define OUT_OF_LINE __attribute__((noinline))

struct Pair {
  int first, second;
};

// Each case returns whether the values that its body stored are there after the jump.
// NOLINTBEGIN(bugprone-suspicious-include,readability-duplicate-include): each case needs a copy of the source (see
// above)

namespace oneValue {
#include "plugin/pi/PIFrame.cpp"

bool holds() {
  int value = 1;
  const bool completed = protect<PIProtectCall>([&]() OUT_OF_LINE {
    value = 2;
    raiseDeclared();
  });
  return !completed && value == 2;
}
} // namespace oneValue

namespace oneValueBeforeARaiseThatIsSeen {
#include "plugin/pi/PIFrame.cpp"

bool holds() {
  int value = 1;
  const bool completed = protect<PIProtectCall>([&]() OUT_OF_LINE {
    value = 2;
    raiseSeen();
  });
  return !completed && value == 2;
}
} // namespace oneValueBeforeARaiseThatIsSeen

namespace oneValueBeforeTheRestoreProcedure {
#include "plugin/pi/PIFrame.cpp"

bool holds() {
  int value = 1;
  const bool completed = protect<PIProtectCall>([&]() OUT_OF_LINE {
    value = 2;
    RestorePlugInFrame(s_frames[s_depth - 1]);
  });
  return !completed && value == 2;
}
} // namespace oneValueBeforeTheRestoreProcedure

namespace oneValueBeforeARaiseOfTheTable {
#include "plugin/pi/PIFrame.cpp"

bool holds() {
  int value = 1;
  const bool completed = protect<PIProtectCall>([&]() OUT_OF_LINE {
    value = 2;
    Kernel::RaiseError(1);
  });
  return !completed && value == 2;
}
} // namespace oneValueBeforeARaiseOfTheTable

namespace pointer {
#include "plugin/pi/PIFrame.cpp"

bool holds() {
  int target = 0;
  int *value = nullptr;
  const bool completed = protect<PIProtectCall>([&]() OUT_OF_LINE {
    value = &target;
    raiseDeclared();
  });
  return !completed && value == &target;
}
} // namespace pointer

namespace structure {
#include "plugin/pi/PIFrame.cpp"

bool holds() {
  Pair pair = {1, 2};
  double number = 0.5;
  const bool completed = protect<PIProtectCall>([&]() OUT_OF_LINE {
    pair = {3, 4};
    number = 1.5;
    raiseDeclared();
  });
  return !completed && pair.first == 3 && pair.second == 4 && number == 1.5;
}
} // namespace structure

namespace counter {
#include "plugin/pi/PIFrame.cpp"

bool holds() {
  int count = 0;
  const bool completed = protect<PIProtectCall>([&]() OUT_OF_LINE {
    while (++count != 7) {
    }
    raiseDeclared();
  });
  return !completed && count == 7;
}
} // namespace counter

namespace raiseInABranch {
#include "plugin/pi/PIFrame.cpp"

bool holds() {
  int value = 1;
  const bool completed = protect<PIProtectCall>([&]() OUT_OF_LINE {
    value = 2;
    if (s_depth > 0) raiseDeclared();
    value = 3;
  });
  return !completed && value == 2;
}
} // namespace raiseInABranch

namespace valueReadByTheBodyToo {
#include "plugin/pi/PIFrame.cpp"

bool holds() {
  int first = 20, second = 0;
  const bool completed = protect<PIProtectCall>([&]() OUT_OF_LINE {
    second = first + 1;
    first = second * 2;
    raiseDeclared();
  });
  return !completed && first == 42 && second == 21;
}
} // namespace valueReadByTheBodyToo

namespace nestedRegions {
namespace outer {
#include "plugin/pi/PIFrame.cpp"
} // namespace outer
namespace inner {
#include "plugin/pi/PIFrame.cpp"
} // namespace inner

bool holds() {
  int before = 0, inside = 0, between = 0;
  const bool completed = protect<outer::PIProtectCall>([&]() OUT_OF_LINE {
    before = 1;
    const bool innerCompleted = protect<inner::PIProtectCall>([&]() OUT_OF_LINE {
      inside = 2;
      raiseDeclared();
    });
    between = innerCompleted ? -1 : inside + 1;
    raiseDeclared();
  });
  return !completed && before == 1 && inside == 2 && between == 3;
}
} // namespace nestedRegions

namespace regionInALoop {
#include "plugin/pi/PIFrame.cpp"

bool holds() {
  int sum = 0;
  for (int i = 1; i <= 3; ++i)
    protect<PIProtectCall>([&]() OUT_OF_LINE {
      sum += i;
      raiseDeclared();
    });
  return sum == 6;
}
} // namespace regionInALoop

namespace bodyThatEnds {
#include "plugin/pi/PIFrame.cpp"

bool holds() {
  int value = 1;
  const bool completed = protect<PIProtectCall>([&]() OUT_OF_LINE { value = 2; });
  return completed && value == 2;
}
} // namespace bodyThatEnds

// NOLINTEND(bugprone-suspicious-include,readability-duplicate-include)

struct Case {
  const char *name;
  bool (*holds)();
};

const Case cases[] = {
    {"oneValue", oneValue::holds},
    {"oneValueBeforeARaiseThatIsSeen", oneValueBeforeARaiseThatIsSeen::holds},
    {"oneValueBeforeTheRestoreProcedure", oneValueBeforeTheRestoreProcedure::holds},
    {"oneValueBeforeARaiseOfTheTable", oneValueBeforeARaiseOfTheTable::holds},
    {"pointer", pointer::holds},
    {"structure", structure::holds},
    {"counter", counter::holds},
    {"raiseInABranch", raiseInABranch::holds},
    {"valueReadByTheBodyToo", valueReadByTheBodyToo::holds},
    {"nestedRegions", nestedRegions::holds},
    {"regionInALoop", regionInALoop::holds},
    {"bodyThatEnds", bodyThatEnds::holds},
};

} // namespace

int main() {
  gKernelHFT = s_kernel;
  int failures = 0;
  for (const auto &[name, holds] : cases) {
    if (!holds()) {
      ++failures;
      fprintf(stderr, "frame_trap: %s: a value stored in a protected region is lost\n", name);
    }
    if (s_depth != 0) {
      ++failures;
      fprintf(stderr, "frame_trap: %s: %d frames are left\n", name, s_depth);
      s_depth = 0;
    }
  }
  return failures == 0 ? 0 : 1;
}
