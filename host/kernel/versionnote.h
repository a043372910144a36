// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The version that a plug-in's library carries in a note (sdk/tavrel/plugin.h).
#pragma once

#include <string>

namespace host {

/// Of a library that dlopen gave; empty where it carries none.
std::string versionOf(void *library);

} // namespace host
