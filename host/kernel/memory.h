// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The host's allocator for plug-ins: every block is known, with its size and the plug-in that was being called.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "host/kernel/error.h"
#include "tavrel/types.h"

namespace host {

class Memory {
public:
  Memory() = default;
  ~Memory(); ///< releases what is left
  Memory(const Memory &) = delete;
  Memory &operator=(const Memory &) = delete;

  /// A block of at least one byte, or null when memory is exhausted.
  void *allocate(tavrel::ExtensionID extension, uint32_t size) noexcept;
  /// The block in its new size, or null, and then the old one stays. Throws errBadHandle for an unknown block.
  void *resize(void *block, uint32_t size);
  /// Throws errBadHandle for an unknown block; null is ignored.
  void release(void *block);

  size_t blocks() const { return blocks_.size(); }
  /// What a plug-in holds, in bytes.
  size_t bytes(tavrel::ExtensionID extension) const;
  /// What all of them hold.
  size_t bytes() const;

private:
  struct Block {
    tavrel::ExtensionID extension;
    uint32_t size;
  };
  std::unordered_map<void *, Block> blocks_;
};

} // namespace host
