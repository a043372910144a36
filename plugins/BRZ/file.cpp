// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// Reads files. Owns the bytes of the last one.
#include "file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>

namespace brz {
namespace {

char *s_bytes;

/// Returns the length read, which is less than `size` if the file has shrunk, or -1 if it cannot be read.
ssize_t readAll(int descriptor, char *bytes, size_t size) {
  size_t length = 0;
  while (length < size) {
    const ssize_t part = read(descriptor, bytes + length, size - length);
    if (part < 0 && errno == EINTR) continue;
    if (part < 0) return -1;
    if (part == 0) break;
    length += static_cast<size_t>(part);
  }
  return static_cast<ssize_t>(length);
}

int readOpened(int descriptor, size_t limit, std::string_view *content) {
  struct stat status = {};
  if (fstat(descriptor, &status) != 0) return errno;
  if (S_ISDIR(status.st_mode)) return EISDIR;
  if (!S_ISREG(status.st_mode)) return ENOTSUP;
  const auto size = static_cast<uint64_t>(status.st_size);
  if (size > limit) return EFBIG;
  s_bytes = static_cast<char *>(malloc(static_cast<size_t>(size) + 1)); // an empty file gets a block, too
  if (s_bytes == nullptr) return ENOMEM;
  const ssize_t length = readAll(descriptor, s_bytes, static_cast<size_t>(size));
  if (length < 0) return errno;
  *content = {s_bytes, static_cast<size_t>(length)};
  return 0;
}

} // namespace

int readFile(const char *file, size_t limit, std::string_view *content) {
  releaseFile();
  const int descriptor = open(file, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK); // so that a pipe does not block
  if (descriptor < 0) return errno;
  const int error = readOpened(descriptor, limit, content);
  close(descriptor);
  return error;
}

void releaseFile() {
  free(s_bytes);
  s_bytes = nullptr;
}

} // namespace brz
