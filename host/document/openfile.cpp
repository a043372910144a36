// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/openfile.h"

#include <fcntl.h>

#include <cerrno>
#include <system_error>
#include <tuple>

#include "host/document/documenterror.h"

namespace host {
namespace {

[[noreturn]] void fail(const std::filesystem::path &file, const std::string &reason) {
  throw DocumentError(DocumentError::unreadable, nameInMessage(file) + ": " + reason);
}

auto stateOf(const struct stat &status) {
  return std::tuple(status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
}

} // namespace

OpenFile::OpenFile(const std::filesystem::path &name) : name_(name) {
  if (stat(name.c_str(), &status_) != 0) fail(name, std::generic_category().message(errno));
  if (S_ISDIR(status_.st_mode)) fail(name, "this is a directory");
  if (!S_ISREG(status_.st_mode)) fail(name, "this is not a regular file"); // to open a pipe would wait for its writer
  file_ = Descriptor(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (!file_ && (errno == EMFILE || errno == ENFILE))
    throw HostError(tavrel::errGeneric, nameInMessage(name) + ": " + noDescriptors);
  if (!file_ || fstat(descriptor(), &status_) != 0) fail(name, std::generic_category().message(errno));
  if (status_.st_size == 0) fail(name, "the file is empty");
  if (status_.st_size > largest) fail(name, "the file is larger than 2 GB");
}

bool OpenFile::hasChanged() const {
  struct stat now {};
  return stat(name_.c_str(), &now) != 0 || stateOf(now) != stateOf(status_);
}

} // namespace host
