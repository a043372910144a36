// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Text that another program has put on the selection CLIPBOARD. It may be of any size, and may never end.
#pragma once

#include <X11/Intrinsic.h>

#include <cstddef>
#include <functional>
#include <string>

namespace viewer {

/// How much of the clipboard's text is read, in bytes; a text field takes less.
inline constexpr size_t mostPasted = size_t{1} << 20;

/// Asks for the clipboard's text, which arrives as UTF-8 or as other bytes, at most `mostPasted` of them. Without a
/// text `take` is not called, nor if the text does not arrive within five seconds; otherwise it is called once, from
/// the event loop. `widget` is any of the program; `time` is that of the user's key.
void pasteFromClipboard(::Widget widget, ::Time time, const std::function<void(const std::string &text)> &take);

} // namespace viewer
