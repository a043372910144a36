// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Who is notified of what happens to documents.
#pragma once

#include <map>
#include <vector>

#include "host/view/registration.h"
#include "tavrel/TavrelView.h"

namespace host {

class Notifications {
public:
  /// Throws errBadArgument for a selector that is no tavrel::Notification.
  void add(int32_t selector, const Registration &registration);
  void notify(tavrel::Notification selector, tavrel::Doc document);
  void retire(tavrel::ExtensionID extension) noexcept;

private:
  std::map<int32_t, std::vector<Registration>> registered_;
};

} // namespace host
