// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/userfolders.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sstream>

#include "viewer/model/onelinetext.h"

namespace viewer {
namespace {

namespace fs = std::filesystem;

constexpr size_t mostBytes = size_t{1} << 16; // of a file that is read

fs::path absoluteVariable(const char *name) {
  const char *value = std::getenv(name);
  return value != nullptr && *value == '/' ? value : "";
}

struct Descriptor {
  int number;
  ~Descriptor() {
    if (number >= 0) close(number);
  }
};

// The first bytes of a regular file; nothing if it is none, or cannot be read. Does not wait for a pipe's other end.
std::string beginningOf(const fs::path &file) {
  const Descriptor open{::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)};
  struct stat kind {};
  if (open.number < 0 || fstat(open.number, &kind) != 0 || !S_ISREG(kind.st_mode)) return {};
  std::string bytes(mostBytes, '\0');
  size_t length = 0;
  for (ssize_t count = 1; count > 0 && length < bytes.size();
       length += static_cast<size_t>(std::max<ssize_t>(0, count)))
    count = read(open.number, bytes.data() + length, bytes.size() - length);
  bytes.resize(length);
  return bytes;
}

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

fs::path withoutTilde(const std::string &path) {
  if (!path.starts_with('~')) return path;
  const size_t end = std::min(path.find('/'), path.size());
  const std::string user = path.substr(1, end - 1);
  fs::path home;
  if (user.empty())
    home = homeFolder();
  else if (const passwd *entry = getpwnam(user.c_str()); entry != nullptr) // NOLINT(concurrency-mt-unsafe): one thread
    home = entry->pw_dir;
  if (home.empty()) return path;
  const size_t rest = path.find_first_not_of('/', end);
  return rest == std::string::npos ? home : home / path.substr(rest);
}

fs::path normalFolder(const fs::path &folder) {
  const fs::path result = folder.lexically_normal();
  return result.has_filename() || !result.has_relative_path() ? result : result.parent_path();
}

fs::path recentFoldersFile() {
  if (fs::path state = absoluteVariable("XDG_STATE_HOME"); !state.empty()) return state / "tavrel/folders";
  const fs::path home = homeFolder();
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
  const Descriptor written{mkostemp(temporary.data(), O_CLOEXEC)};
  if (written.number < 0) return false;
  if (writeAll(written.number, bytes) && fsync(written.number) == 0 && rename(temporary.c_str(), file.c_str()) == 0)
    return true;
  unlink(temporary.c_str());
  return false;
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
