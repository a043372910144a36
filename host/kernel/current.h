// The one instance of a class that table entries reach: an operation has no argument for the host itself.
//
// Making an object makes it the current one; when it goes, the one before it is current again. Tests make a fresh one
// each.
#pragma once

#include "host/kernel/error.h"

namespace host {

template <typename T> class Current {
public:
  Current(const Current &) = delete;
  Current &operator=(const Current &) = delete;

  /// Null where there is none.
  static T *find() { return instance_; }

  /// Throws errGeneric where there is none.
  static T &current() {
    if (instance_ == nullptr) throw HostError(tavrel::errGeneric, "the host is not running");
    return *instance_;
  }

protected:
  Current() : previous_(instance_) { instance_ = static_cast<T *>(this); }
  ~Current() { instance_ = previous_; }

private:
  static inline T *instance_ = nullptr;
  T *previous_;
};

} // namespace host
