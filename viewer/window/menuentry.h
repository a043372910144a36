// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Entries of menus.
#pragma once

#include <Xm/Xm.h>

#include <string>

namespace viewer {

/// Adds an entry to a menu. A user's resources refer to its name.
::Widget addEntry(::Widget menu, const std::string &name, const std::string &label);
/// Shows an entry's key beside its label and returns the key's text; empty if it has none. The text is derived from the
/// key, so that a user changes only one resource.
std::string showAccelerator(::Widget entry);

} // namespace viewer
