// The live objects behind one kind of handle. A handle is its object's address, but nobody believes one that is not
// in the set: a plug-in that passes a stale or invented handle gets an error, not a crash.
#pragma once

#include <string>
#include <type_traits>
#include <unordered_set>

#include "host/kernel/error.h"

namespace host {

template <typename Handle, typename Object> class Handles {
public:
  /// `kind` names the handle in errors ("page", "text selection").
  explicit Handles(const char *kind) : kind_(kind) {}

  /// Makes an object known; the set does not own it.
  Handle add(Object *object) {
    live_.insert(object);
    return handle(object);
  }

  void remove(Object *object) { live_.erase(object); }

  /// The object behind a handle; throws errBadHandle for one that is not live (null included).
  Object &find(Handle handle) const {
    auto *object = reinterpret_cast<Object *>(handle);
    if (!live_.contains(object)) throw HostError(tavrel::errBadHandle, std::string("no such ") + kind_);
    return *object;
  }

  static Handle handle(Object *object) {
    return reinterpret_cast<Handle>(const_cast<std::remove_const_t<Object> *>(object));
  }
  size_t size() const { return live_.size(); }

private:
  const char *kind_;
  std::unordered_set<Object *> live_;
};

} // namespace host
