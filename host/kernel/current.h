// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The current instance of a class that table entries reach: an operation has no argument for the host itself.
//
// Making an object makes it the current one; when it is destroyed, the previous one is current again. Each test makes a
// new one.
#pragma once

#include "host/kernel/error.h"

namespace host {

template <typename T> class Current {
public:
  Current(const Current &) = delete;
  Current &operator=(const Current &) = delete;

  /// Null where there is none.
  static T *find() { return static_cast<T *>(instance_); }

  /// Throws errGeneric where there is none.
  static T &current() {
    if (instance_ == nullptr) throw HostError(tavrel::errGeneric, "the host is not running");
    return *find();
  }

protected:
  Current() : previous_(instance_) { instance_ = this; }
  ~Current() { instance_ = previous_; }

private:
  static inline Current *instance_ = nullptr; // not yet a T while it is being made
  Current *previous_;
};

} // namespace host
