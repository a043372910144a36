// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// An output file that appears only when it is complete.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string_view>

namespace tools {

class OutputFile {
public:
  /// Opens a new file of an unpredictable name in the directory of `target`, which must exist. An existing target stays
  /// unchanged until commit(); the new file gets its permissions. Throws CommandFailure (exitOutput).
  explicit OutputFile(std::filesystem::path target);
  ~OutputFile(); ///< removes the file if it is not committed
  OutputFile(const OutputFile &) = delete;
  OutputFile &operator=(const OutputFile &) = delete;

  FILE *stream() const { return stream_; }
  /// Throws CommandFailure when the bytes cannot be written.
  void write(std::string_view bytes);
  /// Synchronizes the file and renames it to `target`. Throws CommandFailure if that fails; then `target` is unchanged,
  /// unless the message says that the directory could not be synchronized.
  void commit();

private:
  void syncDirectory() const;
  [[noreturn]] void fail() const;

  std::filesystem::path target_, temporary_;
  FILE *stream_ = nullptr;
  bool exists_ = false; ///< whether temporary_ exists
};

/// Creates a directory and its missing parents. Throws CommandFailure (exitOutput).
void makeDirectories(const std::filesystem::path &directory);

} // namespace tools
