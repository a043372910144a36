// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/smallfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace viewer {
namespace {

namespace fs = std::filesystem;

constexpr size_t mostBytes = size_t{1} << 16; // of a file that is read

} // namespace

Descriptor::~Descriptor() {
  if (number >= 0) close(number);
}

fs::path absoluteVariable(const char *name) {
  const char *value = std::getenv(name);
  return value != nullptr && *value == '/' ? value : "";
}

std::string beginningOf(const fs::path &file) {
  const Descriptor open(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat kind {};
  if (open.number < 0 || fstat(open.number, &kind) != 0 || !S_ISREG(kind.st_mode)) return {};
  std::string bytes(mostBytes, '\0');
  size_t length = 0;
  for (ssize_t count = 1; count > 0 && length < bytes.size();
       length += static_cast<size_t>(std::max<ssize_t>(0, count)))
    count = read(open.number, bytes.data() + length, bytes.size() - length);
  bytes.resize(length);
  return bytes;
}

} // namespace viewer
