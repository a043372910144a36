// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/recentfolders.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include "viewer/model/smallfile.h"

namespace viewer {
namespace {

namespace fs = std::filesystem;

bool canBeKept(const std::string &folder) {
  const auto control = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; };
  return folder.starts_with('/') && folder.size() < 4096 && std::none_of(folder.begin(), folder.end(), control);
}

bool writeAll(int file, const std::string &bytes) {
  size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = write(file, bytes.data() + written, bytes.size() - written);
    if (count <= 0) return false;
    written += static_cast<size_t>(count);
  }
  return true;
}

} // namespace

fs::path recentFoldersFile() {
  if (fs::path state = absoluteVariable("XDG_STATE_HOME"); !state.empty()) return state / "tavrel/folders";
  const fs::path home = absoluteVariable("HOME");
  return home.empty() ? home : home / ".local/state/tavrel/folders";
}

std::vector<fs::path> recentFolders(const fs::path &file) {
  std::vector<fs::path> folders;
  const std::string bytes = beginningOf(file);
  std::istringstream lines(bytes.substr(0, bytes.rfind('\n') + 1)); // without a line that is not complete
  for (std::string line; folders.size() < mostRecentFolders && std::getline(lines, line);)
    if (canBeKept(line)) folders.emplace_back(line);
  return folders;
}

bool rememberFolder(const fs::path &file, const fs::path &folder) {
  if (file.empty() || !canBeKept(folder)) return false;
  std::vector<fs::path> folders = recentFolders(file);
  std::erase(folders, folder);
  folders.insert(folders.begin(), folder);
  if (folders.size() > mostRecentFolders) folders.resize(mostRecentFolders);
  std::string bytes;
  for (const fs::path &one : folders)
    bytes += one.string() + "\n";
  std::error_code failed;
  fs::create_directories(file.parent_path(), failed);
  std::string temporary = file.string() + ".XXXXXX";
  const Descriptor written(mkostemp(temporary.data(), O_CLOEXEC));
  if (written.number < 0) return false;
  // Without fsync, for which the window would wait: what a crash of the system may lose is a list of folders.
  if (writeAll(written.number, bytes) && rename(temporary.c_str(), file.c_str()) == 0) return true;
  unlink(temporary.c_str());
  return false;
}

} // namespace viewer
