// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The widgets of the dialog that asks for a file, without their behaviour. All lengths are those of the font.
#pragma once

#include <Xm/Xm.h>

#include <string>
#include <vector>

namespace viewer {

/// From the top: the way to the folder above and the folder's path, the typed name, the lists of usual folders and of
/// files, a message, and the buttons.
struct OpenWidgets {
  ::Widget form, up, path, field, folders, files, message, all, open, cancel;
};

/// Creates them below the shell, in a dialog that is not managed yet.
OpenWidgets makeOpenWidgets(::Widget shell);

/// Replaces the items of a list by these names, UTF-8.
void fillList(::Widget list, const std::vector<std::string> &names);
/// The position of the selected item, from 0; -1: none.
int selectedIn(::Widget list);
/// Selects an item, which is scrolled into sight; -1: none.
void selectIn(::Widget list, int position);

/// Shows a path in a label of a fixed width; leaves out folders at its beginning if it is too wide.
void showPath(::Widget label, const std::string &path);

} // namespace viewer
