// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The keys of the dialog that asks for a file, in its field and its lists.
#pragma once

#include <string>

#include "viewer/window/openlayout.h"

namespace viewer {

/// What the keys do.
class OpenKeys {
public:
  OpenKeys() = default;
  virtual ~OpenKeys() = default;
  OpenKeys(const OpenKeys &) = delete;
  OpenKeys &operator=(const OpenKeys &) = delete;

  virtual bool hasText() const = 0;
  virtual void goUp() = 0;
  virtual void complete() = 0;
  /// Selects the file that is so many positions further on.
  virtual void selectBy(int positions) = 0;
  /// A character (UTF-8) that was typed in a list.
  virtual void type(const std::string &character) = 0;
};

/// The translations of the dialog, with the action openDialog(WHAT).
std::string openTranslations();

/// Adds them to the widgets of the only dialog that is open. `keys` must live as long as the widgets.
void addKeys(XtAppContext context, const OpenWidgets &widgets, OpenKeys &keys);

} // namespace viewer
