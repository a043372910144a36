// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/chooser.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "host/document/documenterror.h"
#include "viewer/model/onelinetext.h"
#include "viewer/model/target.h"

namespace viewer {
namespace {

namespace fs = std::filesystem;

std::string grouped(size_t number) {
  std::string digits = std::to_string(number);
  for (size_t i = digits.size(); i > 3; i -= 3)
    digits.insert(i - 3, ",");
  return digits;
}

// So that what follows a long name in a message can be read.
std::string shortName(const fs::path &file) {
  constexpr size_t longest = 60;
  const std::string name = file.filename().string();
  return name.size() <= longest ? name : std::string(firstBytes(name, longest)) + "\u2026";
}

} // namespace

Chooser::Chooser(const fs::path &folder, HomeOfUser homeOf) : homeOf_(askingOnce(std::move(homeOf))) { goTo(folder); }

void Chooser::goTo(const fs::path &folder) {
  base_ = normalFolder(folder);
  folder_.clear();
  setText("");
}

void Chooser::goUp() {
  const fs::path from = folder_;
  goTo(from.parent_path());
  const auto is = [&](const FolderEntry *entry) { return entry->folder && entry->name == from.filename().string(); };
  const auto found = std::find_if(shown_.begin(), shown_.end(), is);
  if (found != shown_.end()) suggested_ = static_cast<size_t>(found - shown_.begin());
}

void Chooser::setFiles(Files files) {
  files_ = files;
  setText(text_);
}

void Chooser::setText(const std::string &text) {
  text_ = text;
  const size_t slash = isAddress(text) ? std::string::npos : text.rfind('/');
  start_ = slash == std::string::npos ? text : text.substr(slash + 1);
  const fs::path folder =
      slash == std::string::npos ? base_ : normalFolder(base_ / withoutTilde(text.substr(0, slash + 1), homeOf_));
  if (folder != folder_ || files_ != listedFiles_) {
    folder_ = folder;
    list();
  }
  narrow();
}

void Chooser::list() {
  listing_ = listFolder(folder_, files_);
  listedFiles_ = files_;
}

// Names that begin with a dot are shown when a dot has been typed.
void Chooser::narrow() {
  const std::u32string start = orderOf(start_);
  const bool hidden = start_.starts_with('.');
  matching_.clear();
  for (const FolderEntry &entry : listing_.entries)
    if ((hidden || entry.name[0] != '.') && entry.order.starts_with(start)) matching_.push_back(&entry);
  shown_.assign(matching_.begin(),
                matching_.begin() + static_cast<std::ptrdiff_t>(std::min(mostShown, matching_.size())));
  suggested_.reset();
  if (narrows() && matching_.size() == 1) suggested_ = 0;
  message_ = listing_.error;
  if (!message_.empty()) return;
  if (shown_.size() < matching_.size())
    message_ = "The first " + grouped(shown_.size()) + " of " + grouped(matching_.size()) +
               " names. Type how the name begins.";
  else if (!listing_.complete)
    message_ = "The folder has more than " + grouped(mostNamesRead) + " names; others are not listed.";
  else if (narrows() && matching_.empty() && !isAddress(text_))
    message_ = "No name here begins with \u201C" + start_ + "\u201D.";
  else if (matching_.empty() && !narrows())
    message_ = files_ == Files::pdf ? "There are no PDF files in this folder." : "There are no files in this folder.";
}

std::string Chooser::completed() const {
  if (matching_.empty()) return text_;
  const bool only = matching_.size() == 1;
  std::string start = commonStart(matching_);
  if (only && matching_[0]->folder) start += '/';
  if (!only && orderOf(start).size() < orderOf(start_).size()) return text_; // they differ in an accent
  return text_.substr(0, text_.size() - start_.size()) + start;
}

std::optional<fs::path> Chooser::choose(size_t shown) {
  if (shown >= shown_.size()) return std::nullopt;
  const FolderEntry &entry = *shown_[shown];
  fs::path path = folder_ / entry.name;
  if (!entry.folder) return path;
  goTo(path);
  return std::nullopt;
}

fs::path Chooser::typedPath() const {
  return isAddress(text_) ? targetOf(text_).file : normalFolder(base_ / withoutTilde(text_, homeOf_));
}

std::optional<fs::path> Chooser::chooseTyped() {
  if (text_.empty()) return std::nullopt;
  try {
    fs::path path = typedPath();
    struct stat kind {};
    const bool there = stat(path.c_str(), &kind) == 0;
    if (there && S_ISDIR(kind.st_mode)) {
      goTo(path);
      return std::nullopt;
    }
    if (there && access(path.c_str(), R_OK) == 0) return path;
    const int error = errno;
    if (!there && narrows() && matching_.size() == 1) return choose(0);
    message_ = host::nameInMessage(path) + ": " + std::strerror(error);
  } catch (const host::DocumentError &error) {
    message_ = error.what();
  }
  return std::nullopt;
}

void Chooser::sayOpening(const fs::path &file) {
  message_.clear();
  opening_ = "Opening " + shortName(file) + "\u2026";
}

void Chooser::sayFailure(const fs::path &file, const std::string &reason) {
  const std::string name = host::nameInMessage(file);
  opening_.clear();
  message_ = reason.starts_with(name) ? shortName(file) + reason.substr(name.size()) : reason;
}

} // namespace viewer
