// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The user's folders, and where a choice of a file begins.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace viewer {

/// $HOME, if it is an absolute path; else empty.
std::filesystem::path homeFolder();
/// The home folder of a user; empty for an unknown one. The system may ask other machines, for seconds.
using HomeOfUser = std::function<std::filesystem::path(const std::string &user)>;
std::filesystem::path homeOfUser(const std::string &user);
/// Asks another one once for each user.
HomeOfUser askingOnce(HomeOfUser homeOf);
/// A path with "~" or "~user" at its start replaced; unchanged if there is no such user.
std::filesystem::path withoutTilde(const std::string &path, const HomeOfUser &homeOf = homeOfUser);

/// The path without "." and "..", and without a slash at its end.
std::filesystem::path normalFolder(const std::filesystem::path &folder);

struct NamedFolder {
  std::string label; ///< UTF-8; no two are equal
  std::filesystem::path folder;
};
/// Where documents may be: home, the user's documents if the folder is there, the folder of the document in front
/// (empty: none), and the recent ones; each once.
std::vector<NamedFolder> usualFolders(const std::filesystem::path &front,
                                      const std::vector<std::filesystem::path> &recent);

/// Where a choice begins: in the folder of the document in front; without one (empty) in the last used folder, if it is
/// still there, otherwise in the current one.
std::filesystem::path firstFolder(const std::filesystem::path &front, const std::vector<std::filesystem::path> &recent);

} // namespace viewer
