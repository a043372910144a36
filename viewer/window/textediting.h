// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Has text fields of the toolkit work as users expect it: the usual keys for the clipboard and for undoing, and no
// control characters.
#pragma once

#include <Xm/Xm.h>

#include <string>

#include "viewer/window/textfield.h"

namespace viewer {

/// For an XmTextField, until it is destroyed. Ctrl+C, Ctrl+X, Ctrl+V use the clipboard; Ctrl+A selects all; Ctrl+Z
/// undoes changes, Ctrl+Shift+Z and Ctrl+Y repeat them. A change by the program cannot be undone.
void editAsUsual(::Widget field, Shows shows = Shows::text);

/// The translations of such a field, with the action edit(WHAT) and those of the toolkit.
std::string fieldTranslations();

/// The text of such a field, also behind stars.
std::string editedText(::Widget field);
/// Replaces it, as if the user had: it can be undone.
void replaceText(::Widget field, const std::string &text);

} // namespace viewer
