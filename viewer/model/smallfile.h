// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What the desktop says: variables that name folders, and small files.
#pragma once

#include <filesystem>
#include <string>

namespace viewer {

/// The value of a variable of the environment, if it is an absolute path; else empty.
std::filesystem::path absoluteVariable(const char *name);

/// The first 65,536 bytes of a regular file; nothing if it is none, or cannot be read. Does not wait for a pipe's other
/// end.
std::string beginningOf(const std::filesystem::path &file);

/// Closes a file at its end.
struct Descriptor {
  explicit Descriptor(int file) : number(file) {}
  ~Descriptor();
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
  const int number; ///< negative: none
};

} // namespace viewer
