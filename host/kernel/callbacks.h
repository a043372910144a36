// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The functions that the host may call in plug-ins. A handle is the function itself; this class stores its owner.
#pragma once

#include <unordered_map>

#include "host/kernel/error.h"
#include "tavrel/types.h"

namespace host {

class Callbacks {
public:
  /// The handle of a plug-in's function. A second call gives the same handle and stores nothing new. Throws
  /// errBadArgument for null and for a function that belongs to another plug-in.
  tavrel::Callback create(tavrel::ExtensionID extension, tavrel::Entry function);
  /// The plug-in that owns it; throws errBadHandle for a handle that create did not give out (null included).
  tavrel::ExtensionID owner(tavrel::Callback callback) const;
  bool isOwnedBy(tavrel::Callback callback, tavrel::ExtensionID extension) const noexcept;
  /// From now on the plug-in's handles are unknown.
  void retire(tavrel::ExtensionID extension) noexcept;
  size_t size() const { return owners_.size(); }

private:
  std::unordered_map<tavrel::Callback, tavrel::ExtensionID> owners_;
};

} // namespace host
