// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The live objects of one kind, and the handles by which plug-ins name them.
//
// A handle is a number in a pointer type, not an address. Each number is given out once in the life of the program,
// over all kinds of handles. So the handle of an object that has been destroyed stays an error for ever: it never names
// the object that has the same address later, and a handle of one kind is never accepted as one of another kind.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <unordered_map>

#include "host/kernel/error.h"

namespace host {

/// Gives out numbers from 1, each once.
class HandleNumbers {
public:
  explicit HandleNumbers(uintptr_t last = 0) : last_(last) {}

  /// Throws errNoMemory after the last one: on a 32-bit machine there are four thousand million.
  uintptr_t next() {
    if (last_ == std::numeric_limits<uintptr_t>::max()) throw HostError(tavrel::errNoMemory, "no handles are left");
    return ++last_;
  }

private:
  uintptr_t last_;
};

/// The program's only source of handle numbers.
inline HandleNumbers &handleNumbers() {
  static HandleNumbers numbers;
  return numbers;
}

template <typename Handle, typename Object> class Handles {
public:
  /// `kind` names the handle in errors ("page", "text selection").
  explicit Handles(const char *kind) : kind_(kind) {}

  /// Registers an object, which the set does not own, and returns its handle; the same one if it is registered already.
  Handle add(Object *object) {
    const auto [entry, isNew] = handles_.try_emplace(object);
    if (!isNew) return entry->second;
    try {
      const auto handle = reinterpret_cast<Handle>(handleNumbers().next());
      objects_.emplace(handle, object);
      return entry->second = handle;
    } catch (...) {
      handles_.erase(entry);
      throw;
    }
  }

  void remove(const Object *object) noexcept {
    const auto known = handles_.find(object);
    if (known == handles_.end()) return;
    objects_.erase(known->second);
    handles_.erase(known);
  }

  /// The object of a handle; throws errBadHandle for one that is not live (null included).
  Object &find(Handle handle) const {
    const auto found = objects_.find(handle);
    if (found == objects_.end()) throw HostError(tavrel::errBadHandle, std::string("no such ") + kind_);
    return *found->second;
  }

  /// The handle of an object; null for null and for an object that is not known.
  Handle handle(const Object *object) const noexcept {
    const auto known = handles_.find(object);
    return known == handles_.end() ? nullptr : known->second;
  }

  size_t size() const { return objects_.size(); }

private:
  const char *kind_;
  std::unordered_map<Handle, Object *> objects_;
  std::unordered_map<const Object *, Handle> handles_;
};

} // namespace host
