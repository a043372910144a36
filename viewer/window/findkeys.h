// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The keys of the find dialog.
#pragma once

#include <Xm/Xm.h>

#include <functional>
#include <initializer_list>
#include <string>

namespace viewer {

/// The translations of the dialog, with the action findDialog(WHAT).
std::string findTranslations();

/// Adds to the widgets of the find dialog: Ctrl+G and F3 find the next match, with Shift, as Shift+Return in `field`,
/// the one before.
void addFindKeys(::Widget field, std::initializer_list<::Widget> others,
                 const std::function<void(bool backwards)> &find);

} // namespace viewer
