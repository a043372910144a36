// A file that is there complete or not at all.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string_view>

namespace tools {

class OutputFile {
public:
  /// Opens a new file of an unpredictable name in the directory of `target`, which must exist. A file that is there
  /// already stays as it is until commit(), and its permissions are taken over. Throws CommandFailure (exitOutput).
  explicit OutputFile(std::filesystem::path target);
  ~OutputFile(); ///< removes what is not committed
  OutputFile(const OutputFile &) = delete;
  OutputFile &operator=(const OutputFile &) = delete;

  FILE *stream() const { return stream_; }
  /// Throws CommandFailure when the bytes cannot be written.
  void write(std::string_view bytes);
  /// Puts the file on the disk and then in place of `target`. Throws CommandFailure when that cannot be done; then
  /// `target` is as it was before, unless the line says that only its directory could not be synchronized.
  void commit();

private:
  void syncDirectory() const;
  [[noreturn]] void fail() const;

  std::filesystem::path target_, temporary_;
  FILE *stream_ = nullptr;
  bool exists_ = false; ///< whether temporary_ is a file of ours
};

/// Makes a directory and those that lead to it, where they are missing. Throws CommandFailure (exitOutput).
void makeDirectories(const std::filesystem::path &directory);

} // namespace tools
