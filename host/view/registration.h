// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in's function that is called repeatedly, with its client data.
#pragma once

#include <algorithm>
#include <vector>

#include "host/kernel/plugincall.h"
#include "host/kernel/runtime.h"

namespace host {

struct Registration {
  tavrel::Callback callback = nullptr;
  void *clientData = nullptr;
  tavrel::ExtensionID owner = hostExtension;

  bool operator==(const Registration &) const = default;
};

/// Throws errBadHandle for an unknown callback.
inline Registration registrationOf(tavrel::Callback callback, void *clientData) {
  return {callback, clientData, Runtime::current().callbacks.owner(callback)};
}

/// Appends a registration that is not in the list yet.
inline void addOnce(std::vector<Registration> &list, const Registration &registration) {
  if (std::find(list.begin(), list.end(), registration) == list.end()) list.push_back(registration);
}

/// Removes those of a plug-in.
inline void retire(std::vector<Registration> &list, tavrel::ExtensionID extension) noexcept {
  std::erase_if(list, [=](const Registration &registration) { return registration.owner == extension; });
}

/// Calls Procedure(argument, clientData) for each; what is registered meanwhile is called the next time.
template <typename Procedure, typename Argument>
void callEach(const std::vector<Registration> &list, const char *what, Argument argument) {
  const size_t count = list.size();
  for (size_t n = 0; n < std::min(count, list.size()); ++n) {
    const Registration registration = list[n];
    callPlugin({registration.owner, what}, tavrel::functionOf<Procedure>(registration.callback), argument,
               registration.clientData);
  }
}

} // namespace host
