// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Asks for a password.
#pragma once

#include <functional>
#include <string>

namespace viewer {

class Toolkit;

/// Shows the question; `take` gets the password, unless the dialog is cancelled.
void askForPassword(Toolkit &toolkit, const std::string &question,
                    const std::function<void(const std::string &password)> &take);

} // namespace viewer
