// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The plug-ins by number. The runtime owns the only list; the loader fills it.
#include "host/kernel/extensions.h"

namespace host {

Extensions::Extensions() : members_{{"host", true}} {}

tavrel::ExtensionID Extensions::add(const std::string &name) {
  members_.push_back({name, true});
  return static_cast<tavrel::ExtensionID>(members_.size() - 1);
}

void Extensions::rename(tavrel::ExtensionID extension, const std::string &name) {
  if (known(extension)) members_[extension].name = name;
}

void Extensions::retire(tavrel::ExtensionID extension) noexcept {
  if (known(extension)) members_[extension].active = false;
}

void Extensions::require(tavrel::ExtensionID extension) const {
  if (!active(extension)) throw HostError(tavrel::errBadHandle, "no such plug-in, or one that has ended");
}

const std::string &Extensions::name(tavrel::ExtensionID extension) const {
  if (!known(extension)) throw HostError(tavrel::errBadHandle, "no such plug-in");
  return members_[extension].name;
}

} // namespace host
