// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Choosing a file from folders: what the Open dialog shows, without its widgets. A typed text narrows the list to the
// names that begin with it; its directory part, if any, says whose names are listed. It is long because listing,
// narrowing, completing and choosing share one state.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "viewer/model/folder.h"
#include "viewer/model/userfolders.h"

namespace viewer {

class Chooser {
public:
  /// The number of names in a list: more can be reached by typing.
  static constexpr size_t mostShown = 1000;

  /// @param homeOf is asked once for each user that is typed, not at each key
  explicit Chooser(const std::filesystem::path &folder, HomeOfUser homeOf = homeOfUser);

  /// The folder whose names are shown.
  const std::filesystem::path &folder() const { return folder_; }
  const std::string &text() const { return text_; }
  Files files() const { return files_; }
  /// At most `mostShown`. Until the next change.
  const std::vector<const FolderEntry *> &shown() const { return shown_; }
  /// The one to be selected: the folder that the user has come from, or the only one. Nothing: none.
  std::optional<size_t> suggested() const { return suggested_; }
  /// One line: an error, why names are missing, or else that a file is being opened; empty: none.
  const std::string &message() const { return message_.empty() ? opening_ : message_; }

  void setText(const std::string &text);
  void setFiles(Files files);
  void goTo(const std::filesystem::path &folder);
  void goUp();
  /// The text, continued as far as all names that begin with it are equal; a folder's ends in a slash. Without a text
  /// all names count.
  std::string completed() const;
  /// Goes to the entry if it is a folder; else returns the file.
  std::optional<std::filesystem::path> choose(size_t shown);
  /// The same for the typed text: a name, a path or an address of a file; or the only name that begins with it. If it
  /// names nothing that can be read, the message says so.
  std::optional<std::filesystem::path> chooseTyped();
  /// Sets the message: that a file is being opened, also after changes, or until the next change why it cannot be. The
  /// folder at the beginning of the reason is left out, and a long name is truncated.
  void sayOpening(const std::filesystem::path &file);
  void sayFailure(const std::filesystem::path &file, const std::string &reason);

private:
  std::filesystem::path typedPath() const;
  bool narrows() const { return !start_.empty(); }
  void list();
  void narrow();

  std::filesystem::path base_, folder_; ///< to which typed paths are relative; whose names are listed
  HomeOfUser homeOf_;
  std::string text_;
  std::string start_; ///< of a name: the last part of the text
  Files files_ = Files::pdf;
  FolderListing listing_;
  Files listedFiles_ = Files::pdf;
  std::vector<const FolderEntry *> matching_, shown_;
  std::optional<size_t> suggested_;
  std::string message_, opening_;
};

} // namespace viewer
