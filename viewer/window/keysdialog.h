// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The dialog that lists all keys.
#pragma once

#include <Xm/Xm.h>

#include <memory>
#include <vector>

#include "viewer/window/keylist.h"

namespace viewer {

class Toolkit;

class KeysDialog {
public:
  explicit KeysDialog(const Toolkit &toolkit) : toolkit_(toolkit) {}
  KeysDialog(const KeysDialog &) = delete;
  KeysDialog &operator=(const KeysDialog &) = delete;

  /// Opens the dialog; one that is open already is raised instead. Rows of a group are consecutive.
  void show(const std::vector<KeyRow> &rows);

private:
  ::Widget build(const std::vector<KeyRow> &rows) const;

  const Toolkit &toolkit_;
  /// Shared with the widget, which the toolkit destroys after this object.
  std::shared_ptr<::Widget> open_ = std::make_shared<::Widget>(nullptr);
};

} // namespace viewer
