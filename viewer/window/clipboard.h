// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The selection CLIPBOARD. It belongs to the program's shell, so that what is copied from a dialog is there when the
// dialog has been closed.
#pragma once

#include <X11/Intrinsic.h>

#include <functional>
#include <string>

namespace viewer {

/// Puts a text (UTF-8) on the clipboard until another program, or another call, puts something else there.
/// `widget` is any of the program; `time` is that of the user's key.
void copyToClipboard(::Widget widget, const std::string &text, ::Time time);

/// Asks for the clipboard's text, which arrives as UTF-8 or as other bytes: it is from another program. Without a text
/// `take` is not called. It may be called at any time until the program's end, also at once.
void pasteFromClipboard(::Widget widget, ::Time time, const std::function<void(const std::string &text)> &take);

} // namespace viewer
