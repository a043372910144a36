// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Atoms: numbers for the names that plug-ins and host use. The runtime owns the only set.
#include "host/kernel/atoms.h"

#include <limits>

namespace host {

tavrel::Atom Atoms::atom(std::string_view name) {
  if (const auto found = atoms_.find(name); found != atoms_.end()) return found->second;
  if (names_.size() == std::numeric_limits<tavrel::Atom>::max())
    throw HostError(tavrel::errNoMemory, "no atoms are left");
  const auto atom = static_cast<tavrel::Atom>(names_.size() + 1);
  names_.push_back(&atoms_.emplace(name, atom).first->first);
  return atom;
}

const std::string &Atoms::name(tavrel::Atom atom) const {
  if (!known(atom)) throw HostError(tavrel::errBadHandle, "no such atom");
  return *names_[atom - 1U];
}

} // namespace host
