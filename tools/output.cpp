// Output files are written beside their place and renamed when they are whole. Used for every page written.
#include "tools/output.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <unistd.h>

#include "tools/cleanup.h"
#include "tools/failure.h"

namespace tools {

namespace fs = std::filesystem;

OutputFile::OutputFile(fs::path place) : place_(std::move(place)) {
  if (std::error_code error; place_.has_parent_path() && !fs::create_directories(place_.parent_path(), error) && error)
    throw CommandFailure(exitOutput, place_.parent_path().string() + ": " + error.message());
  beside_ = place_;
  beside_ += "." + std::to_string(getpid()) + ".part";
  removeWhenKilled(beside_.c_str());
  stream_ = std::fopen(beside_.c_str(), "wb");
  if (stream_ == nullptr) {
    const int reason = errno;
    removeWhenKilled(nullptr);
    errno = reason;
    fail();
  }
}

OutputFile::~OutputFile() {
  if (stream_ == nullptr) return;
  std::fclose(stream_);
  unlink(beside_.c_str());
  removeWhenKilled(nullptr);
}

void OutputFile::write(std::string_view bytes) {
  errno = 0;
  if (std::fwrite(bytes.data(), 1, bytes.size(), stream_) != bytes.size()) fail();
}

void OutputFile::commit() {
  errno = 0;
  if (std::fflush(stream_) != 0 || std::ferror(stream_) != 0) fail();
  // Renamed while it is still open: until then the destructor removes it.
  if (std::rename(beside_.c_str(), place_.c_str()) != 0) fail();
  removeWhenKilled(nullptr);
  if (std::fclose(std::exchange(stream_, nullptr)) != 0) fail();
}

void OutputFile::fail() {
  const std::string reason = errno != 0 ? std::strerror(errno) : "cannot be written";
  throw CommandFailure(exitOutput, place_.string() + ": " + reason);
}

} // namespace tools
