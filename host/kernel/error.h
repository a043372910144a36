// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// How anything inside the host fails: by throwing a HostError. The entry points of the tables (table.h) turn it into
// a raise; programs turn it into a line on standard error.
#pragma once

#include <stdexcept>
#include <string>

#include "tavrel/frame.h"

namespace host {

struct HostError : std::runtime_error {
  HostError(tavrel::ErrorCode errorCode, const std::string &reason) : std::runtime_error(reason), code(errorCode) {}
  tavrel::ErrorCode code;
};

} // namespace host
