// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Names as 16-bit numbers.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/kernel/error.h"
#include "tavrel/types.h"

namespace host {

class Atoms {
public:
  /// The atom of a name, the same one every time; throws errNoMemory when all 65,535 are given out.
  tavrel::Atom atom(std::string_view name);
  bool known(tavrel::Atom atom) const { return atom != 0 && atom <= names_.size(); }
  /// Throws errBadHandle for a number that is no atom.
  const std::string &name(tavrel::Atom atom) const;

private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  std::unordered_map<std::string, tavrel::Atom, Hash, std::equal_to<>> atoms_;
  std::vector<const std::string *> names_; ///< the keys of `atoms_`, which never move; atom 1 is first
};

} // namespace host
