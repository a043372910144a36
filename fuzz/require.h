// What every fuzzing program ends in when something does not hold: the property on standard error, and an abort, which
// the fuzzer turns into a finding.
#pragma once

#include <cstdio>
#include <cstdlib>

inline void require(bool holds, const char *property) {
  if (holds) return;
  fprintf(stderr, "does not hold: %s\n", property);
  abort();
}
