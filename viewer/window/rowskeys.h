// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The keys of a list of rows.
#pragma once

#include <X11/Intrinsic.h>

#include <string>

namespace viewer {

/// What the keys do.
class RowsKeys {
public:
  RowsKeys() = default;
  virtual ~RowsKeys() = default;
  RowsKeys(const RowsKeys &) = delete;
  RowsKeys &operator=(const RowsKeys &) = delete;

  /// One of "up", "down", "pageUp", "pageDown", "first", "last", "choose" (the row of the cursor), "leave" (the list).
  virtual void act(const std::string &what) = 0;
};

/// The translations of the rows, with the action rows(WHAT).
std::string rowsTranslations();

/// Adds them to a widget of Motif. `keys` must live as long as the widget.
void addRowsKeys(XtAppContext context, ::Widget rows, RowsKeys &keys);

} // namespace viewer
