// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The folders that were used last, which are kept in a file.
#pragma once

#include <filesystem>
#include <vector>

namespace viewer {

/// The file of recent folders: $XDG_STATE_HOME/tavrel/folders, otherwise ~/.local/state/tavrel/folders. Empty if there
/// is no home.
std::filesystem::path recentFoldersFile();
inline constexpr size_t mostRecentFolders = 10;
/// The folders in the file, the last used one first. Lines that are no absolute path of printable characters are
/// ignored, and so is all of a file that is not a regular one.
std::vector<std::filesystem::path> recentFolders(const std::filesystem::path &file);
/// Puts a folder first, and writes the file; another program never reads half of it. Returns false if it cannot be
/// written: then it is as before.
bool rememberFolder(const std::filesystem::path &file, const std::filesystem::path &folder);

} // namespace viewer
