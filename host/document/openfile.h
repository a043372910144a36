// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The file of a document, opened once: all that is ever read of it is of that state of the file.
#pragma once

#include <sys/stat.h>

#include <filesystem>

#include "host/document/descriptor.h"

namespace host {

class OpenFile {
public:
  /// The most that the PDF library can take, in bytes.
  static constexpr off_t largest = INT32_MAX;

  /// Throws DocumentError, with one clear line that names the file, if it is no file that could be a document, and
  /// HostError if there are no more file descriptors. May take as long as a network does.
  explicit OpenFile(const std::filesystem::path &name);

  int descriptor() const { return file_.number(); }
  /// Whether the name belongs to another file now, or the file has been written to.
  bool hasChanged() const;

private:
  std::filesystem::path name_;
  Descriptor file_;
  struct stat status_ {};
};

} // namespace host
