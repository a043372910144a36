// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Dialogs that show a text.
#pragma once

#include <Xm/Xm.h>

#include <map>
#include <memory>
#include <string>

namespace viewer {

class Toolkit;

class Informations {
public:
  explicit Informations(Toolkit &toolkit) : toolkit_(toolkit) {}
  Informations(const Informations &) = delete;
  Informations &operator=(const Informations &) = delete;

  /// A dialog with the same title that is open already is raised instead.
  void show(const std::string &title, const std::string &text);
  /// The same for the text of an error, with its icon.
  void showError(const std::string &title, const std::string &text);

private:
  void show(const std::string &name, unsigned char type, const std::string &title, const std::string &text);

  Toolkit &toolkit_;
  /// The open ones by title. Shared with the widgets, which the toolkit destroys after this object.
  std::shared_ptr<std::map<std::string, ::Widget>> open_ = std::make_shared<std::map<std::string, ::Widget>>();
};

} // namespace viewer
