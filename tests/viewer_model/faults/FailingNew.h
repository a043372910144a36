// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Makes `new` fail for the code of a test program, on the threads that the test chooses, and counts the blocks that
// this code has allocated. Allocations of the C++ library for this code count; those of the PDF library, which does not
// handle failures, do not.
//
// Linked into a program, it replaces the global operator new and operator delete.
#pragma once

#include <cstddef>

/// While it lives, the n-th allocation from now on, counted from 0, throws std::bad_alloc.
class FailingNew {
public:
  /// The affected threads: the one that creates this object, while it has an Armed, or all others.
  enum Threads { owner, others };

  FailingNew(size_t n, Threads threads);
  ~FailingNew();
  FailingNew(const FailingNew &) = delete;
  FailingNew &operator=(const FailingNew &) = delete;

  /// Whether the n-th allocation has been attempted.
  static bool failed();

  /// Marks the tested code, as opposed to the test itself.
  class Armed {
  public:
    Armed();
    ~Armed();
    Armed(const Armed &) = delete;
    Armed &operator=(const Armed &) = delete;
  };
};

/// Blocks of the program's code that are not freed yet.
size_t blocksInUse();
