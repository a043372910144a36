// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Makes allocations of a test program fail, and counts its blocks: wraps malloc, calloc, realloc and free, as the
// program's own objects call them. The program is linked with --wrap for these four; operator new and libraries are not
// affected.
#pragma once

#include <cstddef>

/// While it exists, the n-th allocation from now on, counted from 0, yields null.
class FailingMemory {
public:
  /// Whether only the n-th fails or every later one, too.
  enum Extent { once, fromThereOn };

  explicit FailingMemory(size_t n, Extent extent = once);
  ~FailingMemory();
  FailingMemory(const FailingMemory &) = delete;
  FailingMemory &operator=(const FailingMemory &) = delete;

  /// Allocations asked for since the constructor.
  size_t allocations() const;
  /// Whether the n-th has been asked for.
  bool failed() const;
};

/// Blocks that are not freed yet.
size_t liveBlocks();

/// How many times a block was passed to free a second time since the program's start; it is not freed again.
size_t blocksFreedTwice();

/// Requested bytes in blocks that are not freed yet.
size_t liveBytes();

/// The maximum of liveBytes() since the last call of watchBytes().
size_t mostBytes();
void watchBytes();
