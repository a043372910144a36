// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What this program puts on the selection CLIPBOARD. The selection belongs to the program's shell, so that what is
// copied from a dialog is there when the dialog has been closed.
#pragma once

#include <X11/Intrinsic.h>

#include <string>

namespace viewer {

/// Puts a text (UTF-8) on the clipboard until another program, or another call, puts something else there.
/// `widget` is any of the program; `time` is that of the user's key.
void copyToClipboard(::Widget widget, const std::string &text, ::Time time);

} // namespace viewer
