// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Alerts: questions of plug-ins, and their answers.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "tavrel/TavrelView.h"

namespace host {

struct Alert {
  int32_t icon = tavrel::alertNone; ///< an AlertIcon
  std::string message;
  std::array<std::optional<std::string>, 3> buttons;
  bool beep = false;
};

/// Shows an alert and gives the number of the button pressed, from 1; 0 where there is none.
using AlertHandler = std::function<int32_t(const Alert &alert)>;

/// Answers without a user, and prints the answer on standard error: yes is the first button, no the second or, where
/// there is no second, the last.
AlertHandler answerAlerts(bool yes);

} // namespace host
