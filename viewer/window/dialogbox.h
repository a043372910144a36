// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What the dialogs have in common. Each is created when it is shown and destroyed when it is closed.
#pragma once

#include <Xm/Xm.h>

#include <string>

namespace viewer {

void setTitle(::Widget dialog, const std::string &title);
/// Hides a part of a message box, such as XmDIALOG_HELP_BUTTON.
void hide(::Widget box, unsigned char child);
/// Destroys a dialog with its shell.
void destroyDialog(::Widget dialog);
/// Destroys it however it is closed, by a button or by the window manager.
void destroyWhenUnmapped(::Widget dialog);

} // namespace viewer
