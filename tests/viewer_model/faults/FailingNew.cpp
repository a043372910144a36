// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The replaced allocators. Each block has a header that says whether it is counted.
#include "FailingNew.h"

#include <link.h>
#include <unwind.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

extern "C" const char __executable_start, etext;

namespace {

struct Range {
  uintptr_t begin = 0, end = 0;
  bool holds(uintptr_t address) const { return address >= begin && address < end; }
};

struct Code {
  Range program, library;      ///< the test program's, the C++ library's
  std::array<Range, 4> others; ///< the PDF library's: a template's code in the program may be called from there
};

int noteLibrary(dl_phdr_info *info, size_t /*size*/, void *memory) {
  Code &code = *static_cast<Code *>(memory);
  Range *range = std::strstr(info->dlpi_name, "libstdc++") != nullptr ? &code.library : nullptr;
  if (std::strstr(info->dlpi_name, "poppler") != nullptr)
    range = std::find_if(code.others.begin(), code.others.end(), [](const Range &one) { return one.end == 0; });
  if (range == nullptr) return 0;
  for (int n = 0; n < info->dlpi_phnum; ++n)
    if (const auto &part = info->dlpi_phdr[n]; part.p_type == PT_LOAD && (part.p_flags & PF_X) != 0)
      *range = {info->dlpi_addr + part.p_vaddr, info->dlpi_addr + part.p_vaddr + part.p_memsz};
  return 0;
}

const Code &code() {
  static const Code found = [] {
    Code ranges;
    ranges.program = {reinterpret_cast<uintptr_t>(&__executable_start), reinterpret_cast<uintptr_t>(&etext)};
    dl_iterate_phdr(noteLibrary, &ranges);
    return ranges;
  }();
  return found;
}

bool fromOthers(uintptr_t address) {
  return std::any_of(code().others.begin(), code().others.end(),
                     [=](const Range &range) { return range.holds(address); });
}

_Unwind_Reason_Code look(_Unwind_Context *context, void *found) {
  if (!fromOthers(_Unwind_GetIP(context))) return _URC_NO_REASON;
  *static_cast<bool *>(found) = true;
  return _URC_END_OF_STACK;
}

bool calledByProgram(const void *caller) {
  const auto address = reinterpret_cast<uintptr_t>(caller);
  if (!code().program.holds(address) && !code().library.holds(address)) return false;
  bool others = false;
  _Unwind_Backtrace(look, &others);
  return !others;
}

struct Header {
  uint64_t counted, padding;
};

std::atomic<bool> s_active;
std::atomic<int> s_threads;
std::atomic<size_t> s_next, s_failing, s_inUse;
thread_local bool s_owner;
thread_local int s_armed;

bool refused() {
  if (!s_active) return false;
  if (s_threads == FailingNew::owner ? s_armed == 0 : s_owner) return false;
  return s_next++ == s_failing;
}

void *allocate(size_t size, const void *caller) {
  const bool counted = calledByProgram(caller);
  if (counted && refused()) return nullptr;
  auto *header = static_cast<Header *>(std::malloc(size + sizeof(Header)));
  if (header == nullptr) return nullptr;
  header->counted = counted ? 1 : 0;
  if (counted) ++s_inUse;
  return header + 1;
}

void release(void *block) {
  if (block == nullptr) return;
  Header *header = static_cast<Header *>(block) - 1;
  s_inUse -= header->counted;
  std::free(header);
}

void *allocateOrThrow(size_t size, const void *caller) {
  void *block = allocate(size, caller);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

} // namespace

void *operator new(size_t size) { return allocateOrThrow(size, __builtin_return_address(0)); }
void *operator new[](size_t size) { return allocateOrThrow(size, __builtin_return_address(0)); }
void *operator new(size_t size, const std::nothrow_t &) noexcept { return allocate(size, __builtin_return_address(0)); }
void *operator new[](size_t size, const std::nothrow_t &) noexcept {
  return allocate(size, __builtin_return_address(0));
}
void operator delete(void *block) noexcept { release(block); }
void operator delete[](void *block) noexcept { release(block); }
void operator delete(void *block, size_t) noexcept { release(block); }
void operator delete[](void *block, size_t) noexcept { release(block); }
void operator delete(void *block, const std::nothrow_t &) noexcept { release(block); }
void operator delete[](void *block, const std::nothrow_t &) noexcept { release(block); }

FailingNew::FailingNew(size_t n, Threads threads) {
  s_owner = true;
  s_next = 0;
  s_failing = n;
  s_threads = threads;
  s_active = true;
}

FailingNew::~FailingNew() { s_active = false; }

bool FailingNew::failed() { return s_next > s_failing; }

FailingNew::Armed::Armed() { ++s_armed; }

FailingNew::Armed::~Armed() { --s_armed; }

size_t blocksInUse() { return s_inUse; }
