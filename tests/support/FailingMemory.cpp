// The wrapped allocators: count, and fail where a test wants it.
#include "tests/support/FailingMemory.h"

#include <cstdint>

extern "C" {
void *__real_malloc(size_t size);
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *block, size_t size);
void *__wrap_malloc(size_t size);
void *__wrap_calloc(size_t count, size_t size);
void *__wrap_realloc(void *block, size_t size);
}

namespace {

size_t s_next, s_failing = SIZE_MAX;

bool refused() { return s_next++ == s_failing; }

} // namespace

void *__wrap_malloc(size_t size) { return refused() ? nullptr : __real_malloc(size); }

void *__wrap_calloc(size_t count, size_t size) { return refused() ? nullptr : __real_calloc(count, size); }

void *__wrap_realloc(void *block, size_t size) { return refused() ? nullptr : __real_realloc(block, size); }

FailingMemory::FailingMemory(size_t n) {
  s_next = 0;
  s_failing = n;
}

FailingMemory::~FailingMemory() { s_failing = SIZE_MAX; }

size_t FailingMemory::allocations() const { return s_next; }

bool FailingMemory::failed() const { return s_next > s_failing; }
