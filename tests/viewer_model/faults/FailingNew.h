// Makes `new` fail for the code of a test program, on a thread of the test's choice, and keeps account of the blocks
// that this code has. What the C++ library allocates on behalf of that code counts; what the
// PDF library allocates, which cannot do without memory, does not.
//
// Linked into a program, it replaces the global operator new and operator delete.
#pragma once

#include <cstddef>

/// While it lives, the n-th allocation from now on, counted from 0, throws std::bad_alloc.
class FailingNew {
public:
  /// Which threads are meant: the one that makes this object, as far as it says (Armed), or all others.
  enum Threads { owner, others };

  FailingNew(size_t n, Threads threads);
  ~FailingNew();
  FailingNew(const FailingNew &) = delete;
  FailingNew &operator=(const FailingNew &) = delete;

  /// Whether the n-th has been asked for.
  static bool failed();

  /// What is tested, as against the test itself.
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
