// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Output files are written under another name in the same directory, synchronized, and renamed: after a crash of the
// program or of the machine the earlier file or the new one exists. Used for every page and highlight file.
#include "tools/output.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

#include "tools/cleanup.h"
#include "tools/failure.h"

namespace tools {
namespace {

namespace fs = std::filesystem;

constexpr mode_t permissionBits = 0777, forNewFiles = 0666; // the umask applies to the second

fs::path directoryOf(const fs::path &file) { return file.has_parent_path() ? file.parent_path() : fs::path("."); }

// Short even if the target's name is long. Unpredictable, because others may have write access to the directory.
std::string temporaryName() {
  uint64_t number = 0;
  if (getrandom(&number, sizeof number, 0) != sizeof number) return {};
  char name[48];
  std::snprintf(name, sizeof name, ".tavrel-%016llx.part", static_cast<unsigned long long>(number));
  return name;
}

} // namespace

OutputFile::OutputFile(fs::path target) : target_(std::move(target)) {
  struct stat earlier {};
  const bool replaces = lstat(target_.c_str(), &earlier) == 0 && S_ISREG(earlier.st_mode);
  const mode_t mode = replaces ? earlier.st_mode & permissionBits : forNewFiles;
  const std::string name = temporaryName();
  if (name.empty()) fail();
  temporary_ = directoryOf(target_) / name;
  removeWhenKilled(temporary_.c_str());
  const int descriptor = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
  exists_ = descriptor >= 0;
  if (exists_ && (!replaces || fchmod(descriptor, mode) == 0)) stream_ = fdopen(descriptor, "wb");
  if (stream_ != nullptr) return;
  const int reason = errno;
  if (exists_) {
    close(descriptor);
    unlink(temporary_.c_str());
  }
  removeWhenKilled(nullptr);
  errno = reason;
  if (reason == ENOENT || reason == ENOTDIR) target_ = directoryOf(target_); // the directory is missing
  fail();
}

OutputFile::~OutputFile() {
  if (stream_ != nullptr) std::fclose(stream_);
  if (!exists_) return;
  unlink(temporary_.c_str());
  removeWhenKilled(nullptr);
}

void OutputFile::write(std::string_view bytes) {
  errno = 0;
  if (std::fwrite(bytes.data(), 1, bytes.size(), stream_) != bytes.size()) fail();
}

void OutputFile::commit() {
  errno = 0;
  if (std::fflush(stream_) != 0 || std::ferror(stream_) != 0) fail();
  if (fsync(fileno(stream_)) != 0) fail();
  if (std::fclose(std::exchange(stream_, nullptr)) != 0) fail();
  if (std::rename(temporary_.c_str(), target_.c_str()) != 0) fail();
  exists_ = false;
  removeWhenKilled(nullptr);
  syncDirectory();
}

// Without this the disk may keep the old name after a power failure.
void OutputFile::syncDirectory() const {
  const fs::path directory = directoryOf(target_);
  const int descriptor = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;                                    // a directory may be writable and not readable
  const bool synced = fsync(descriptor) == 0 || errno == EINVAL; // from file systems without directory synchronization
  const int reason = errno;
  close(descriptor);
  if (!synced)
    throw CommandFailure(exitOutput, directory.string() + ": cannot be synchronized: " + std::strerror(reason));
}

void OutputFile::fail() const {
  const std::string reason = errno != 0 ? std::strerror(errno) : "cannot be written";
  throw CommandFailure(exitOutput, target_.string() + ": " + reason);
}

void makeDirectories(const fs::path &directory) {
  std::error_code error;
  if (!directory.empty() && !fs::create_directories(directory, error) && error)
    throw CommandFailure(exitOutput, directory.string() + ": " + error.message());
}

} // namespace tools
