// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The simple dialogs: alerts, password, file, information.
#pragma once

#include <Xm/Xm.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "host/view/alerts.h"

namespace viewer {

class MainWindow;

class Dialogs {
public:
  explicit Dialogs(MainWindow &window) : window_(window) {}
  Dialogs(const Dialogs &) = delete;
  Dialogs &operator=(const Dialogs &) = delete;

  /// Shows an alert, handles events until it is answered, and returns the number of the button, from 1; 0 if it has
  /// none. If it is closed without an answer, its last button is the answer.
  int32_t alert(const host::Alert &alert);
  /// Asks for a password; `take` gets it, unless the dialog is cancelled.
  void askPassword(const std::string &question, const std::function<void(const std::string &password)> &take);
  void askFile(const std::function<void(const std::string &file)> &take);
  /// Shows a text. A dialog with the same title that is open already is raised instead.
  void showInformation(const std::string &title, const std::string &text);

private:
  MainWindow &window_;
  std::string directory_; ///< of the last file chosen
  /// Open information dialogs by title. Shared with the widgets, which the toolkit destroys after this object.
  std::shared_ptr<std::map<std::string, ::Widget>> informations_ = std::make_shared<std::map<std::string, ::Widget>>();
};

} // namespace viewer
