// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The assertion of every fuzzing program: prints a property that does not hold to standard error and aborts, which the
// fuzzer reports as a finding.
#pragma once

#include <cstdio>
#include <cstdlib>

inline void require(bool holds, const char *property) {
  if (holds) return;
  fprintf(stderr, "does not hold: %s\n", property);
  abort();
}
