// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The answers of a program without a window.
#include "host/view/alerts.h"

#include <cstdio>

namespace host {
namespace {

// From 1; 0 without any button.
int32_t chosen(const Alert &alert, bool yes) {
  const auto preferred = yes ? std::array{1, 2, 3} : std::array{2, 3, 1};
  for (const int32_t number : preferred)
    if (alert.buttons[static_cast<size_t>(number) - 1]) return number;
  return 0;
}

} // namespace

AlertHandler answerAlerts(bool yes) {
  return [yes](const Alert &alert) {
    const int32_t number = chosen(alert, yes);
    const std::string answer = number == 0 ? "nothing" : *alert.buttons[static_cast<size_t>(number) - 1];
    std::fprintf(stderr, "tavrel: asked \"%s\", answered \"%s\"\n", alert.message.c_str(), answer.c_str());
    return number;
  };
}

} // namespace host
