// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The text of an error on a thread on which no exception may end the program.
#pragma once

#include <new>
#include <string>

namespace viewer {

inline constexpr char outOfMemory[] = "out of memory"; // short enough for a string without an allocation

/// What `line()` returns, or `outOfMemory` where there is no memory for it.
template <typename Line> std::string errorLine(const Line &line) {
  try {
    return line();
  } catch (const std::bad_alloc &) {
    return outOfMemory;
  }
}

} // namespace viewer
