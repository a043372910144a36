// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Memory that two processes share for the pixels of an image, one image after the other. The owner makes it, of the
// size that it has computed, and seals that size: the other process can write pixels into it and nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "host/document/descriptor.h"

namespace host {

class SharedPixels {
public:
  /// All zeros. Throws std::bad_alloc, or HostError if there are no more file descriptors.
  explicit SharedPixels(size_t pixels);
  /// Those that another process has made; to be written. Throws std::bad_alloc if there are not so many.
  SharedPixels(Descriptor made, size_t pixels);
  SharedPixels(const SharedPixels &) = delete;
  SharedPixels &operator=(const SharedPixels &) = delete;
  ~SharedPixels();

  /// Whether it is better kept for the next image than made again. Both processes keep it then.
  bool isWorthKeeping() const { return count_ <= mostKept; }

  int descriptor() const { return memory_.number(); }
  std::span<uint32_t> pixels() { return {static_cast<uint32_t *>(address_), count_}; }

private:
  static constexpr size_t mostKept = 16 << 20; // 64 MB

  void map(int protection, int flags);

  Descriptor memory_;
  size_t count_;
  void *address_ = nullptr;
};

} // namespace host
