// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/folder.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>

#include "host/document/documenterror.h"
#include "host/document/fold.h"
#include "viewer/model/onelinetext.h"

namespace viewer {
namespace {

struct CloseFolder {
  void operator()(DIR *folder) const { closedir(folder); }
};

enum class Kind { folder, file, other };

// Most file systems say what an entry is; links are looked up. A link without a target counts as a file, so that
// opening it says what is wrong.
Kind kindOf(DIR *folder, const dirent &entry) {
  if (entry.d_type == DT_DIR) return Kind::folder;
  if (entry.d_type == DT_REG) return Kind::file;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return Kind::other;
  struct stat target {};
  if (fstatat(dirfd(folder), entry.d_name, &target, 0) != 0) return Kind::file;
  return S_ISDIR(target.st_mode) ? Kind::folder : S_ISREG(target.st_mode) ? Kind::file : Kind::other;
}

bool isPdf(std::string_view name) {
  constexpr std::string_view ending = ".pdf";
  return name.size() > ending.size() &&
         std::equal(ending.begin(), ending.end(), name.end() - ending.size(),
                    [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); });
}

std::optional<FolderEntry> entryOf(DIR *folder, const dirent &entry, Files files) {
  const std::string name = entry.d_name;
  if (name == "." || name == "..") return std::nullopt;
  const bool wanted = files == Files::all || isPdf(name);
  if (!wanted && entry.d_type == DT_REG) return std::nullopt;
  const Kind kind = kindOf(folder, entry);
  if (kind == Kind::other || (kind == Kind::file && !wanted)) return std::nullopt;
  return FolderEntry{name, oneLine(name), orderOf(name), kind == Kind::folder};
}

bool isDigit(char32_t c) { return c >= U'0' && c <= U'9'; }

// "page 9" is before "page 10". Less than 0, 0 or more than 0.
int compared(std::u32string_view a, std::u32string_view b) {
  size_t i = 0, j = 0;
  const auto number = [](std::u32string_view text, size_t &at) {
    while (at < text.size() && text[at] == U'0')
      ++at;
    const size_t begin = at;
    while (at < text.size() && isDigit(text[at]))
      ++at;
    return text.substr(begin, at - begin);
  };
  while (i < a.size() && j < b.size()) {
    if (isDigit(a[i]) && isDigit(b[j])) {
      const std::u32string_view x = number(a, i), y = number(b, j);
      if (x.size() != y.size()) return x.size() < y.size() ? -1 : 1;
      if (const int difference = x.compare(y); difference != 0) return difference;
    } else if (a[i] != b[j]) {
      return a[i] < b[j] ? -1 : 1;
    } else {
      ++i, ++j;
    }
  }
  return static_cast<int>(i < a.size()) - static_cast<int>(j < b.size());
}

bool isBefore(const FolderEntry &a, const FolderEntry &b) {
  if (a.folder != b.folder) return a.folder;
  // In a large folder most names begin alike. A number in which they differ is compared from its first digit.
  const auto differ = std::mismatch(a.order.begin(), a.order.end(), b.order.begin(), b.order.end()).first;
  auto begin = static_cast<size_t>(differ - a.order.begin());
  while (begin > 0 && isDigit(a.order[begin - 1]))
    --begin;
  const int order = compared(std::u32string_view(a.order).substr(begin), std::u32string_view(b.order).substr(begin));
  return order != 0 ? order < 0 : a.name < b.name;
}

std::string errorOf(const std::filesystem::path &folder) {
  return host::nameInMessage(folder) + ": " + std::strerror(errno);
}

} // namespace

std::u32string orderOf(std::string_view name) {
  std::u32string order;
  order.reserve(name.size());
  for (const char32_t c : host::decoded(oneLine(name)))
    if (c < 0x80)
      order += static_cast<char32_t>(std::tolower(static_cast<int>(c)));
    else
      host::appendFolded(c, host::Case::folded, order);
  return order;
}

FolderListing listFolder(const std::filesystem::path &folder, Files files, size_t mostNames) {
  FolderListing listing;
  const std::unique_ptr<DIR, CloseFolder> open(opendir(folder.c_str()));
  if (!open) {
    listing.error = errorOf(folder);
    return listing;
  }
  size_t names = 0;
  errno = 0;
  while (const dirent *entry = readdir(open.get())) {
    if (names++ == mostNames) {
      listing.complete = false;
      break;
    }
    if (auto kept = entryOf(open.get(), *entry, files)) listing.entries.push_back(std::move(*kept));
    errno = 0;
  }
  if (errno != 0) listing.error = errorOf(folder);
  std::sort(listing.entries.begin(), listing.entries.end(), isBefore);
  return listing;
}

std::string commonStart(const std::vector<const FolderEntry *> &entries) {
  if (entries.empty()) return {};
  const auto same = [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
  };
  const std::string &first = entries.front()->shown;
  size_t length = first.size();
  for (const FolderEntry *entry : entries) {
    const size_t longest = std::min(length, entry->shown.size());
    size_t i = 0;
    while (i < longest && same(first[i], entry->shown[i]))
      ++i;
    length = i;
  }
  return std::string(firstBytes(first, length));
}

} // namespace viewer
