// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/userfolders.h"

#include <pwd.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <utility>

#include "viewer/model/onelinetext.h"
#include "viewer/model/smallfile.h"

namespace viewer {
namespace {

namespace fs = std::filesystem;

// The folder that the desktop has for documents, in the user's language: XDG_DOCUMENTS_DIR="$HOME/Dokumente".
fs::path documentsFolder(const fs::path &home) {
  fs::path configuration = absoluteVariable("XDG_CONFIG_HOME");
  if (configuration.empty()) configuration = home / ".config";
  std::istringstream lines(beginningOf(configuration / "user-dirs.dirs"));
  const std::string before = "XDG_DOCUMENTS_DIR=\"", homeVariable = "$HOME/";
  fs::path folder = home / "Documents";
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with(before) || !line.ends_with('"') || line.size() <= before.size()) continue;
    const std::string value = line.substr(before.size(), line.size() - before.size() - 1);
    if (value.starts_with(homeVariable))
      folder = home / value.substr(homeVariable.size());
    else if (value.starts_with('/'))
      folder = value;
  }
  return folder;
}

} // namespace

fs::path homeFolder() { return absoluteVariable("HOME"); }

fs::path homeOfUser(const std::string &user) {
  const passwd *entry = getpwnam(user.c_str()); // NOLINT(concurrency-mt-unsafe): one thread
  return entry == nullptr ? "" : entry->pw_dir;
}

HomeOfUser askingOnce(HomeOfUser homeOf) {
  return [homeOf = std::move(homeOf), homes = std::map<std::string, fs::path>()](const std::string &user) mutable {
    const auto known = homes.find(user);
    return known != homes.end() ? known->second : homes.emplace(user, homeOf(user)).first->second;
  };
}

fs::path withoutTilde(const std::string &path, const HomeOfUser &homeOf) {
  if (!path.starts_with('~')) return path;
  const size_t end = std::min(path.find('/'), path.size());
  const std::string user = path.substr(1, end - 1);
  const fs::path home = user.empty() ? homeFolder() : homeOf(user);
  if (home.empty()) return path;
  const size_t rest = path.find_first_not_of('/', end);
  return rest == std::string::npos ? home : home / path.substr(rest);
}

fs::path normalFolder(const fs::path &folder) {
  const fs::path result = folder.lexically_normal();
  return result.has_filename() || !result.has_relative_path() ? result : result.parent_path();
}

std::vector<NamedFolder> usualFolders(const fs::path &front, const std::vector<fs::path> &recent) {
  std::vector<NamedFolder> folders;
  const auto add = [&](const fs::path &given, const std::string &label) {
    if (given.empty()) return;
    const fs::path folder = normalFolder(given);
    if (std::any_of(folders.begin(), folders.end(), [&](const auto &one) { return one.folder == folder; })) return;
    std::string shown = oneLine(!label.empty() ? label : folder.has_filename() ? folder.filename().string() : "/");
    if (std::any_of(folders.begin(), folders.end(), [&](const auto &one) { return one.label == shown; }))
      shown = oneLine(folder.string());
    folders.push_back({shown, folder});
  };
  const fs::path home = homeFolder();
  add(home, "Home");
  std::error_code unknown;
  if (const fs::path documents = documentsFolder(home); !home.empty() && fs::is_directory(documents, unknown))
    add(documents, "");
  add(front, "");
  for (const fs::path &folder : recent)
    add(folder, "");
  return folders;
}

fs::path firstFolder(const fs::path &front, const std::vector<fs::path> &recent) {
  if (!front.empty()) return front;
  std::error_code unknown;
  if (!recent.empty() && fs::is_directory(recent.front(), unknown)) return recent.front();
  const fs::path current = fs::current_path(unknown);
  return unknown ? "/" : current;
}

} // namespace viewer
