// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Accounts for the memory that plug-ins take from the host. The runtime owns the only account.
#include "host/kernel/memory.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace host {

Memory::~Memory() {
  for (const auto &[block, account] : blocks_)
    std::free(block);
}

void *Memory::allocate(tavrel::ExtensionID extension, uint32_t size) noexcept {
  void *block = std::malloc(std::max<size_t>(size, 1));
  if (block == nullptr) return nullptr;
  try {
    blocks_.emplace(block, Block{extension, size});
  } catch (const std::bad_alloc &) {
    std::free(block);
    return nullptr;
  }
  return block;
}

void *Memory::resize(void *block, uint32_t size) {
  // The entry is kept as a node, so that nothing can fail after the block has moved.
  auto account = blocks_.extract(block);
  if (account.empty()) throw HostError(tavrel::errBadHandle, "no such block of memory");
  void *resized = std::realloc(block, std::max<size_t>(size, 1));
  if (resized != nullptr) {
    account.key() = resized;
    account.mapped().size = size;
  }
  blocks_.insert(std::move(account));
  return resized;
}

void Memory::release(void *block) {
  if (block == nullptr) return;
  if (blocks_.erase(block) == 0) throw HostError(tavrel::errBadHandle, "no such block of memory");
  std::free(block);
}

size_t Memory::bytes(tavrel::ExtensionID extension) const {
  size_t sum = 0;
  for (const auto &[block, account] : blocks_)
    sum += account.extension == extension ? account.size : 0;
  return sum;
}

size_t Memory::bytes() const {
  size_t sum = 0;
  for (const auto &[block, account] : blocks_)
    sum += account.size;
  return sum;
}

} // namespace host
