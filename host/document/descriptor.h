// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A file descriptor that its owner closes.
#pragma once

#include <unistd.h>

#include <utility>

namespace host {

/// For messages.
inline constexpr char noDescriptors[] = "there are no more file descriptors";

class Descriptor {
public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor &operator=(Descriptor &&other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }

  /// Negative for none.
  int number() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }

private:
  int number_ = -1;
};

} // namespace host
