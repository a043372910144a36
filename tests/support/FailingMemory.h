// Makes memory run out for the code of a test program, and keeps account of its blocks: malloc, calloc, realloc and
// free, as its own objects call them. The program is linked with --wrap for these four; operator new and libraries are
// not touched.
#pragma once

#include <cstddef>

/// While it lives, the n-th allocation from now on, counted from 0, yields null.
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

/// Blocks that were to be freed a second time since the program's start; they were not.
size_t blocksFreedTwice();

/// Bytes in blocks that are not freed yet, as they were asked for.
size_t liveBytes();

/// The most that liveBytes() has been since the last call of watchBytes().
size_t mostBytes();
void watchBytes();
