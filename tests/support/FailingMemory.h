// Makes memory run out for the code of a test program: malloc, calloc and realloc, as its own objects call them. The
// program is linked with --wrap for these three; operator new and libraries are not touched.
#pragma once

#include <cstddef>

/// While it lives, the n-th allocation from now on, counted from 0, yields null.
class FailingMemory {
public:
  explicit FailingMemory(size_t n);
  ~FailingMemory();
  FailingMemory(const FailingMemory &) = delete;
  FailingMemory &operator=(const FailingMemory &) = delete;

  /// Allocations asked for since the constructor.
  size_t allocations() const;
  /// Whether the n-th has been asked for.
  bool failed() const;
};
