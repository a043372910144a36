// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The wrapped allocators: count, inject failures, and record every block.
#include "tests/support/FailingMemory.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

extern "C" {
void *__real_malloc(size_t size);
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *block, size_t size);
void __real_free(void *block);
void *__wrap_malloc(size_t size);
void *__wrap_calloc(size_t count, size_t size);
void *__wrap_realloc(void *block, size_t size);
void __wrap_free(void *block);
}

namespace {

size_t s_next, s_firstFailing = SIZE_MAX, s_lastFailing;
size_t s_live, s_freedTwice, s_bytes, s_mostBytes;

bool refused() {
  const size_t number = s_next++;
  return number >= s_firstFailing && number <= s_lastFailing;
}

enum class State : char { live, freed };

struct Block {
  State state;
  size_t size;
};

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TAVREL_ADDRESS_SANITIZER 1
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define TAVREL_ADDRESS_SANITIZER 1
#endif
#ifdef TAVREL_ADDRESS_SANITIZER
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

/// Never destroyed: blocks are allocated and freed before and after all other objects' lifetimes. The addresses are
/// kept inverted, so that a leak detector does not take this map for an owner.
std::unordered_map<uintptr_t, Block> &blocks() {
  static auto *all = new std::unordered_map<uintptr_t, Block>;
  return *all;
}

uintptr_t keyOf(const void *block) { return ~reinterpret_cast<uintptr_t>(block); }

void *noted(void *block, size_t size) {
  if (block == nullptr) return nullptr;
  ++s_live;
  s_bytes += size;
  s_mostBytes = std::max(s_mostBytes, s_bytes);
  blocks()[keyOf(block)] = {State::live, size};
  return block;
}

/// False for a block that has been freed; a block from elsewhere is accepted. Under a sanitizer, which detects double
/// frees itself, freed blocks are not recorded.
bool forget(void *block) {
  const auto found = blocks().find(keyOf(block));
  if (found == blocks().end()) return true;
  if (found->second.state == State::freed) {
    ++s_freedTwice;
    return false;
  }
  --s_live;
  s_bytes -= found->second.size;
  found->second.state = State::freed;
  if (sanitized) blocks().erase(found);
  return true;
}

} // namespace

void *__wrap_malloc(size_t size) { return refused() ? nullptr : noted(__real_malloc(size), size); }

void *__wrap_calloc(size_t count, size_t size) {
  return refused() ? nullptr : noted(__real_calloc(count, size), count * size);
}

void *__wrap_realloc(void *block, size_t size) {
  if (refused() || (block != nullptr && !forget(block))) return nullptr;
  return noted(__real_realloc(block, size), size);
}

void __wrap_free(void *block) {
  if (block != nullptr && forget(block)) __real_free(block);
}

FailingMemory::FailingMemory(size_t n, Extent extent) {
  s_next = 0;
  s_firstFailing = n;
  s_lastFailing = extent == once ? n : SIZE_MAX;
}

FailingMemory::~FailingMemory() { s_firstFailing = SIZE_MAX; }

size_t FailingMemory::allocations() const { return s_next; }

bool FailingMemory::failed() const { return s_next > s_firstFailing; }

size_t liveBlocks() { return s_live; }

size_t blocksFreedTwice() { return s_freedTwice; }

size_t liveBytes() { return s_bytes; }

size_t mostBytes() { return s_mostBytes; }

void watchBytes() { s_mostBytes = s_bytes; }
