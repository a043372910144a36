// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/notifications.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace host {

void Notifications::add(int32_t selector, const Registration &registration) {
  constexpr tavrel::Notification all[] = {tavrel::notifyDocDidOpen, tavrel::notifyDocDidClose,
                                          tavrel::notifyMarkedPageChosen, tavrel::notifyPageAwaited};
  if (std::find(std::begin(all), std::end(all), selector) == std::end(all))
    throw HostError(tavrel::errBadArgument, "no notification " + std::to_string(selector));
  addOnce(registered_[selector], registration);
}

void Notifications::notify(tavrel::Notification selector, tavrel::Doc document) {
  callEach<tavrel::DocNotifyProc>(registered_[selector], "a notification", document);
}

void Notifications::retire(tavrel::ExtensionID extension) noexcept {
  for (auto &[selector, list] : registered_)
    host::retire(list, extension);
}

} // namespace host
