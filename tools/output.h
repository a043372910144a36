// A file that is there whole or not at all.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string_view>

namespace tools {

class OutputFile {
public:
  /// Opens a file beside the place; makes the directories that lead there. Throws CommandFailure (exitOutput).
  explicit OutputFile(std::filesystem::path place);
  ~OutputFile(); ///< removes what is not committed
  OutputFile(const OutputFile &) = delete;
  OutputFile &operator=(const OutputFile &) = delete;

  FILE *stream() const { return stream_; }
  /// Throws CommandFailure when the bytes cannot be written.
  void write(std::string_view bytes);
  /// Puts the file in its place. Throws CommandFailure when anything could not be written.
  void commit();

private:
  [[noreturn]] void fail();

  std::filesystem::path place_, beside_;
  FILE *stream_ = nullptr;
};

} // namespace tools
