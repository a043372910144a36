// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The plug-ins: their numbers, names, and whether they are active.
#pragma once

#include <string>
#include <vector>

#include "host/kernel/error.h"
#include "tavrel/types.h"

namespace host {

/// The host's own number: calls that no plug-in made.
inline constexpr tavrel::ExtensionID hostExtension = 0;

class Extensions {
public:
  Extensions();

  /// A new number; the name is what messages call the plug-in.
  tavrel::ExtensionID add(const std::string &name);
  void rename(tavrel::ExtensionID extension, const std::string &name);
  /// A retired plug-in is not called any more; its functions stay mapped, because no library is ever unmapped.
  void retire(tavrel::ExtensionID extension) noexcept;

  bool known(tavrel::ExtensionID extension) const noexcept { return extension < members_.size(); }
  bool active(tavrel::ExtensionID extension) const { return known(extension) && members_[extension].active; }
  /// Throws errBadHandle for a number that was never given out and for a plug-in that is retired.
  void require(tavrel::ExtensionID extension) const;
  /// Throws errBadHandle for a number that was never given out.
  const std::string &name(tavrel::ExtensionID extension) const;

private:
  struct Member {
    std::string name;
    bool active;
  };
  std::vector<Member> members_;
};

} // namespace host
