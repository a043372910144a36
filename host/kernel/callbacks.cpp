// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Callback handles. The runtime owns the only set; every layer that stores a callback asks here for its owner.
#include "host/kernel/callbacks.h"

namespace host {

tavrel::Callback Callbacks::create(tavrel::ExtensionID extension, tavrel::Entry function) {
  if (function == nullptr) throw HostError(tavrel::errBadArgument, "a callback without a function");
  const auto [entry, isNew] = owners_.emplace(function, extension);
  if (!isNew && entry->second != extension)
    throw HostError(tavrel::errBadArgument, "a callback that is another plug-in's");
  return function;
}

tavrel::ExtensionID Callbacks::owner(tavrel::Callback callback) const {
  const auto found = owners_.find(callback);
  if (found == owners_.end()) throw HostError(tavrel::errBadHandle, "no such callback");
  return found->second;
}

bool Callbacks::isOwnedBy(tavrel::Callback callback, tavrel::ExtensionID extension) const noexcept {
  const auto found = owners_.find(callback);
  return found != owners_.end() && found->second == extension;
}

void Callbacks::retire(tavrel::ExtensionID extension) noexcept {
  std::erase_if(owners_, [=](const auto &owned) { return owned.second == extension; });
}

} // namespace host
