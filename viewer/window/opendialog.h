// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The dialog that asks for a file to be opened. Chooser decides what it lists and what a typed text means. It is long
// because it reacts to ten widgets; most reactions are a line.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "viewer/model/chooser.h"
#include "viewer/model/opening.h"
#include "viewer/model/userfolders.h"
#include "viewer/window/openkeys.h"

namespace viewer {

class Toolkit;

class OpenDialog final : OpenKeys {
public:
  /// Opens a file. `opened` is called once it is open or a password is asked for, or with the reason why it cannot be
  /// opened.
  using Take = std::function<void(const std::filesystem::path &file, const WhenOpened &opened)>;

  /// Shows the dialog, unless it is open already. It begins in the folder of the document in front; without one (empty)
  /// in the last used folder, otherwise in the current one. `take` gets the file, unless the dialog is cancelled. The
  /// dialog stays until the file chosen last has been opened, and shows why others cannot be.
  static void show(Toolkit &toolkit, const std::filesystem::path &front, const Take &take);

private:
  OpenDialog(Toolkit &toolkit, const std::filesystem::path &front, Take take);
  ~OpenDialog() override; // when its widgets are destroyed
  bool hasText() const override { return !chooser_.text().empty(); }
  void goUp() override;
  void complete() override;
  void selectBy(int positions) override;
  void type(const std::string &character) override;
  void react();
  void update();
  void goToUsual();
  void accept();
  void opened(const std::filesystem::path &file, const std::string &failure);
  void showMessage();

  std::filesystem::path recentFile_;
  std::vector<NamedFolder> usual_;
  Chooser chooser_;
  Take take_;
  std::shared_ptr<OpenDialog *> self_ = std::make_shared<OpenDialog *>(this); ///< null when the dialog is closed
  uint64_t choices_ = 0; ///< so far: what becomes of files before the last one is ignored
  OpenWidgets widgets_{};
  bool selected_ = false; ///< a name by the user; otherwise the typed text counts
  bool updating_ = false;
};

} // namespace viewer
