// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Memory helpers: allocation through the host that raises instead of returning null, and wrappers.
#include <cstdlib>
#include <cstring>

#include "plugin/util/miUtils.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelSupport.h"

using namespace tavrel;

namespace {

void *sure(void *block) {
  if (block == nullptr) Kernel::RaiseError(errNoMemory);
  return block;
}

} // namespace

void *TScalloc(uint32_t count, uint32_t size) {
  const uint32_t bytes = count * size;
  void *block = TavrelSupport::Malloc(bytes);
  return block != nullptr ? miMemsetSAFE(block, 0, bytes) : nullptr;
}

void *TSSureMalloc(uint32_t size) { return sure(TavrelSupport::Malloc(size)); }

void *TSSureCalloc(uint32_t count, uint32_t size) { return sure(TScalloc(count, size)); }

void *TSSureRealloc(void *block, uint32_t size) {
  return block == nullptr ? TSSureCalloc(1, size) : sure(TavrelSupport::Realloc(block, size));
}

void TSIfNotNullFree(void *block) {
  if (block != nullptr) free(block);
}

void *miCopyMem(const void *source, uint32_t size) {
  void *copy = malloc(size); // null when memory is exhausted
  return copy != nullptr ? miMemcpySAFE(copy, source, size) : nullptr;
}

char *miCopyStrImpl(const char *string) {
  if (string == nullptr) return nullptr;
  auto *copy = static_cast<char *>(malloc(size_t{miStrlen(string)} + 2)); // with space for either kind of terminator
  if (copy != nullptr) miStrcpySAFE(copy, string);
  return copy;
}

void *miMemsetSAFE(void *block, int byte, uint32_t size) { return memset(block, byte, size); }

void *miMemcpySAFE(void *destination, const void *source, uint32_t size) {
  return size != 0 ? memcpy(destination, source, size) : destination;
}

void *miMemmoveSAFE(void *destination, const void *source, uint32_t size) {
  return size != 0 ? memmove(destination, source, size) : destination;
}
