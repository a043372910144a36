// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Asks for a file to be opened.
#pragma once

#include <functional>
#include <string>

namespace viewer {

class Toolkit;

class OpenDialog {
public:
  explicit OpenDialog(Toolkit &toolkit) : toolkit_(toolkit) {}
  OpenDialog(const OpenDialog &) = delete;
  OpenDialog &operator=(const OpenDialog &) = delete;

  /// `take` gets the file, unless the dialog is cancelled.
  void show(const std::function<void(const std::string &file)> &take);

private:
  Toolkit &toolkit_;
  std::string directory_; ///< of the last file chosen
};

} // namespace viewer
