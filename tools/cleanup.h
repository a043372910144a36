// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Cleanup when the program is killed: one unfinished file, one child process.
#pragma once

#include <sys/types.h>

namespace tools {

/// The file to remove if the program is killed or ends by exit; null for none. A path of more than 4,000 bytes is not
/// remembered.
void removeWhenKilled(const char *file);
/// The program to end likewise; 0 for none.
void endWhenKilled(pid_t program);

} // namespace tools
