// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The table of everything that a user can do. Menus, keys and the tool bar refer to it by name.
#pragma once

#include <span>
#include <string>

#include "viewer/model/model.h"

namespace viewer {

/// What commands need of a window.
class Frontend {
public:
  Frontend() = default;
  virtual ~Frontend() = default;
  Frontend(const Frontend &) = delete;
  Frontend &operator=(const Frontend &) = delete;

  virtual void askForFile() = 0;
  virtual void askForText() = 0;
  virtual void askForPage() = 0;
  virtual void showKeys() = 0;
  virtual void toggleSidePanel() = 0;
  virtual void showPlugins() = 0;
  virtual void showAbout() = 0;
  /// Gives the keyboard back to the page, and drops what has been typed elsewhere.
  virtual void leaveFields() = 0;
  virtual void quit() = 0;
  /// A length in pixels at 96 dots per inch, in those of the window.
  virtual int pixels(double length) const = 0;
};

struct Command {
  const char *name;     ///< valid in resources and translations: "NextPage"
  const char *sentence; ///< what it does: a menu's entry
  const char *argument; ///< what may follow the name, "page": without it the user is asked; null: nothing may
  void (*run)(const Model &model, Frontend &frontend, const std::string &argument);
  bool (*possible)(const Model &model); ///< null: always
};

std::span<const Command> commands();
/// Null for an unknown name.
const Command *findCommand(const std::string &name);
inline bool isPossible(const Command &command, const Model &model) {
  return command.possible == nullptr || command.possible(model);
}
/// Does nothing if the command is not possible. An argument that it does not take is reported on the status line.
void run(const Command &command, const Model &model, Frontend &frontend, const std::string &argument = {});
/// Goes to a page that a user has typed; the numbers begin with 1, and too large ones are the last page. A text that is
/// no number is reported on the status line.
void goToTypedPage(const Model &model, const std::string &text);

} // namespace viewer
